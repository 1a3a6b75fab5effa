// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// What a crash left behind (see CrashHandler), for people.
class CrashReportFile final
{
public:
    explicit CrashReportFile(QString path);

    // crash-trace.txt in the state folder.
    static QString defaultPath();

    const QString &path() const { return m_path; }
    // The report of the run before, readable; nothing when it did not crash. Takes the file away, so that it is
    // offered once.
    std::optional<QString> take() const;

private:
    QString m_path;
};

// Names of C++ in the form in which they are written, places as distances within their module, the moment in local
// time. Lines that mean nothing stay as they are.
QString readableCrashReport(const QByteArray &trace);
