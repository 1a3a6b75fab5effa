// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// A program that answers each line of its standard input with one line: "ok" or
// "error", a tab, and a text. Fields are separated by tabs; \n, \t and \\ stand
// for what they usually do. Ends with the object.
class AnsweringProgram final
{
public:
    // Ends the test program with a message when it does not start.
    AnsweringProgram(const QString &path, const QProcessEnvironment &environment);
    ~AnsweringProgram();
    AnsweringProgram(const AnsweringProgram &) = delete;
    AnsweringProgram &operator=(const AnsweringProgram &) = delete;

    struct Answer {
        bool isOk = false;
        QByteArray text; // or the message
    };
    // Waits for the answer. Ends the test program with a message when none comes.
    Answer request(const QStringList &fields);
    // The same for what is never refused.
    QByteArray demand(const QStringList &fields);

private:
    QProcess m_process;
};
