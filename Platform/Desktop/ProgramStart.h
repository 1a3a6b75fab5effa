// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

#include <memory>

// Another program, started to live on its own: it stays when Vantle ends, and
// what it prints goes nowhere.
class ProgramStart final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~ProgramStart() override;

    // The command is a program, as a path or a name on PATH, and its arguments. Once in the object's life.
    Result<void> start(const QStringList &command);

Q_SIGNALS:
    void ended();

private:
    int m_process = -1; // descriptor of the process; -1 for none
    std::unique_ptr<QSocketNotifier> m_end;
};
