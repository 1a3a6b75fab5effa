// SPDX-License-Identifier: MIT
#pragma once

#include <DesktopEntries.h>

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

// A desktop on which only those programs are installed that a test puts there.
// Each is a script that notes how it was called.
class InstalledPrograms final
{
public:
    InstalledPrograms()
        : m_path(qgetenv("PATH"))
    {
        // Their interpreter and what they run are the system's.
        qputenv("PATH", m_folder.filePath(QStringLiteral("bin")).toUtf8() + ':' + m_path);
    }
    ~InstalledPrograms()
    {
        letGo();
        qputenv("PATH", m_path);
    }
    InstalledPrograms(const InstalledPrograms &) = delete;
    InstalledPrograms &operator=(const InstalledPrograms &) = delete;

    // The entry opens those types. A call with `lastingArgument` among its arguments goes on until letGo(), or until
    // the programs are gone: their folder can go before a script has looked again.
    void install(const QString &id, const QString &program, const QStringList &types,
        const QString &lastingArgument = QStringLiteral("-"))
    {
        write(QStringLiteral("bin/") + program,
            QStringLiteral(
                "#!/bin/sh\n"
                "printf '%s' '%1' >> '%2'; for each; do printf ' %s' \"$each\" >> '%2'; done; echo >> '%2'\n"
                "case \" $* \" in *' %3 '*) while [ -e '%2' ] && [ ! -e '%4' ]; do sleep 0.02; done;; esac\n")
                .arg(program, callsPath(), lastingArgument, letGoPath()));
        QFile::setPermissions(m_folder.filePath(QStringLiteral("bin/") + program),
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        addEntry(id, program, types);
    }
    // Without its program.
    void addEntry(const QString &id, const QString &program, const QStringList &types)
    {
        write(QStringLiteral("applications/") + id,
            QStringLiteral("[Desktop Entry]\nType=Application\nName=x\nExec=%1 %U\n").arg(program));
        for (const QString &type : types)
            m_cache += type + u'=' + id + QStringLiteral(";\n");
        write(QStringLiteral("applications/mimeinfo.cache"), QStringLiteral("[MIME Cache]\n") + m_cache);
    }

    DesktopEntries entries() const
    {
        return DesktopEntries({ { m_folder.filePath(QStringLiteral("config")) },
            { m_folder.filePath(QStringLiteral("applications")) }, { QStringLiteral("Mock") } });
    }

    // How programs were called, in order: "evolution -c calendar".
    QStringList calls() const
    {
        QFile file(callsPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString text = QString::fromUtf8(file.readAll());
        return text.left(text.lastIndexOf(u'\n') + 1).split(u'\n', Qt::SkipEmptyParts);
    }
    void letGo() { write(QStringLiteral("let-go"), {}); }

    void write(const QString &name, const QString &text)
    {
        const QString path = m_folder.filePath(name);
        QFile file(path);
        if (!QDir().mkpath(path.section(u'/', 0, -2)) || !file.open(QIODevice::WriteOnly))
            qFatal("%s cannot be written", qPrintable(path));
        file.write(text.toUtf8());
    }

private:
    QString callsPath() const { return m_folder.filePath(QStringLiteral("calls")); }
    QString letGoPath() const { return m_folder.filePath(QStringLiteral("let-go")); }

    QTemporaryDir m_folder;
    QByteArray m_path;
    QString m_cache;
};
