// SPDX-License-Identifier: MIT
#include "CalendarServiceNeighbour.h"

#include "CalendarServiceSession.h"

using namespace Qt::StringLiterals;

namespace
{

QString wordFor(CalItemKind kind)
{
    return kind == CalItemKind::Task ? u"tasks"_s : u"events"_s;
}

QString digitFor(bool value)
{
    return value ? u"1"_s : u"0"_s;
}

} // namespace

CalendarServiceNeighbour::CalendarServiceNeighbour(const CalendarServiceSession &session)
    : m_program(QStringLiteral(VANTLE_NEIGHBOUR), session.environment())
{
}

void CalendarServiceNeighbour::addCalendar(
    const QString &source, CalItemKind kind, const QString &name, const QString &colour)
{
    m_program.demand({ u"add-calendar"_s, source, wordFor(kind), name, colour });
}

void CalendarServiceNeighbour::addReadOnlyCalendar(
    const QString &source, CalItemKind kind, const QString &name, const QString &file)
{
    m_program.demand({ u"add-file"_s, source, wordFor(kind), name, u"#999999"_s, file, digitFor(false) });
}

void CalendarServiceNeighbour::setWritable(const QString &source, bool isWritable)
{
    m_program.demand({ u"set-writable"_s, source, digitFor(isWritable) });
}

void CalendarServiceNeighbour::addCalDav(
    const QString &source, CalItemKind kind, const QString &name, const QString &url, const QString &user)
{
    m_program.demand({ u"add-caldav"_s, source, wordFor(kind), name, u"#33aa55"_s, url, user });
}

void CalendarServiceNeighbour::removeSource(const QString &source)
{
    m_program.demand({ u"remove-source"_s, source });
}

void CalendarServiceNeighbour::rename(const QString &source, const QString &name)
{
    m_program.demand({ u"rename"_s, source, name });
}

void CalendarServiceNeighbour::recolour(const QString &source, const QString &colour)
{
    m_program.demand({ u"recolour"_s, source, colour });
}

void CalendarServiceNeighbour::setEnabled(const QString &source, bool isEnabled)
{
    m_program.demand({ u"enable"_s, source, digitFor(isEnabled) });
}

void CalendarServiceNeighbour::setDefault(const QString &source)
{
    m_program.demand({ u"set-default"_s, source });
}

void CalendarServiceNeighbour::put(const QString &source, const QByteArray &components)
{
    m_program.demand({ u"put"_s, source,
        u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"_s + QString::fromUtf8(components) + u"END:VCALENDAR\r\n"_s });
}

QByteArray CalendarServiceNeighbour::text(const QString &source, const QString &uid)
{
    return m_program.demand({ u"get"_s, source, uid });
}

QStringList CalendarServiceNeighbour::list(const QString &source)
{
    return QString::fromUtf8(m_program.demand({ u"list"_s, source })).split(u'\n', Qt::SkipEmptyParts);
}

void CalendarServiceNeighbour::remove(const QString &source, const QString &uid)
{
    m_program.demand({ u"remove"_s, source, uid });
}

void CalendarServiceNeighbour::authenticate(const QString &source, const QString &user, const QString &password)
{
    m_program.demand({ u"authenticate"_s, source, user, password });
}

void CalendarServiceNeighbour::awaitConnection(const QString &source)
{
    m_program.demand({ u"await-connection"_s, source });
}

void CalendarServiceNeighbour::refresh(const QString &source)
{
    m_program.demand({ u"refresh"_s, source });
}
