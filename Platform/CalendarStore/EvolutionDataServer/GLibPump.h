// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

namespace Service
{

// Lets what the library tells come in where the event loop is not GLib's: nothing would ever arrive there by itself.
class GLibPump final
{
public:
    GLibPump();

private:
    QTimer m_timer;
};

} // namespace Service
