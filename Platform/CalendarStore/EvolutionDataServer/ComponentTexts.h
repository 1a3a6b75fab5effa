// SPDX-License-Identifier: MIT
#pragma once

#include "GLibTypes.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

namespace Service
{

// One event or to-do of the service, as text.
struct ComponentText {
    QByteArray text; // from BEGIN to END
    // Names the occurrence that an override stands for, in the service's form; empty for others.
    QByteArray recurrenceId;

    bool operator==(const ComponentText &) const = default;
};

QByteArray textOf(ICalComponent *component);
ComponentText componentText(ICalComponent *component);
// As the library writes it once it has read it.
ComponentText rewritten(const ComponentText &component);
// What it says, in sorted lines, whichever form it has: without what is only noted of its changes, and without what
// the service adds for itself.
QByteArrayList contentOf(const ComponentText &component);
// Components that say the same have the same version.
QByteArray versionOf(const QList<ComponentText> &components);
// Whether other components of the same uid may stand beside it.
bool isOfSeries(ICalComponent *component);
// The names of the time zones that a component is written in, each once.
QByteArrayList zonesOf(const QByteArray &text);

// What the service keeps under one uid, as one text that can be read and patched: the same for the same
// components, in whichever order they come. `zones` are whole VTIMEZONEs.
QByteArray calendarText(QList<ComponentText> components, const QByteArrayList &zones);

// Such a text taken apart again, perhaps after it was patched.
struct CalendarParts {
    explicit CalendarParts(const QByteArray &text);

    QByteArrayList zones;
    QList<ComponentText> components;

    // Null for a text that the library does not understand.
    static Owned<ICalComponent> parsed(const QByteArray &text);
};

// Whether the components are that version. The service tells of the same component in one text here and in another one
// there: they differ by how often the library has read it and written it again, which changes odd values.
bool isVersion(const QByteArray &version, QList<ComponentText> components);

} // namespace Service
