// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// A program as the desktop knows it.
struct DesktopEntry {
    QString id; // "org.gnome.Evolution.desktop"
    QStringList arguments; // of its Exec line, unquoted, with the field codes

    // What to run, with the address in the place that the entry has for one. Never empty.
    QStringList command(const QString &address = {}) const;
};

// Which programs are installed, and which of them the person chose for a kind
// of thing (Desktop Entry and MIME Applications specifications). Reads the
// desktop's files anew for each question: they change while Vantle runs.
class DesktopEntries final
{
public:
    // Best first. configurations hold mimeapps.list, applications the entries.
    struct Folders {
        QStringList configurations;
        QStringList applications;
        QStringList desktops; // names of the desktop that runs, "GNOME"

        // Of this person and session.
        static Folders ofPerson();
    };

    explicit DesktopEntries(Folders folders = Folders::ofPerson());

    // The program that opens this type, "x-scheme-handler/calendar": chosen by the person or
    // the desktop, else any that offers it.
    std::optional<DesktopEntry> handler(const QString &type) const;
    // Nothing for one that is hidden, damaged or whose program is not installed.
    std::optional<DesktopEntry> entry(const QString &id) const;

private:
    QStringList chosenIds(const QString &type) const;

    Folders m_folders;
};
