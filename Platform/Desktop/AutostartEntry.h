// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QString>

// Whether the desktop starts Vantle when the person logs in: a file of the
// desktop's own, which its settings show and change as well (Desktop
// Application Autostart Specification).
//
// Reads the file anew for each question and keeps nothing.
class AutostartEntry final
{
public:
    // The file, and the program's command as a path or as a name on PATH.
    AutostartEntry(QString path, QString program);

    // Of this program, in the person's configuration home.
    static AutostartEntry ofThisProgram();

    // A file that is hidden, switched off or damaged starts nothing.
    bool isEnabled() const;
    // The old content or the whole new one is there at every instant.
    Result<void> setEnabled(bool isEnabled) const;

private:
    QByteArray content() const;

    QString m_path;
    QString m_program;
};
