// SPDX-License-Identifier: MIT
#include "Beeper.h"

#include <QApplication>

void SystemBeeper::beep()
{
    QApplication::beep();
}
