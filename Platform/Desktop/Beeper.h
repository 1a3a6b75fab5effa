// SPDX-License-Identifier: MIT
#pragma once

// Tells by sound that a command cannot act.
class Beeper
{
public:
    Beeper() = default;
    virtual ~Beeper() = default;
    Beeper(const Beeper &) = delete;
    Beeper &operator=(const Beeper &) = delete;

    virtual void beep() = 0;
};

class SystemBeeper final : public Beeper
{
public:
    void beep() override;
};
