// SPDX-License-Identifier: MIT
#include "CalendarServiceNeighbour.h"

#include "CalendarServiceSession.h"

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 60000; // longer than the program's own

QByteArray escaped(const QString &text)
{
    return text.toUtf8().replace('\\', "\\\\").replace("\r\n", "\\n").replace('\n', "\\n").replace('\t', "\\t");
}

QByteArray unescaped(const QByteArray &text)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != '\\' || i + 1 == text.size()) {
            result += text.at(i);
            continue;
        }
        ++i;
        result += text.at(i) == 'n' ? '\n' : text.at(i) == 't' ? '\t' : text.at(i);
    }
    return result;
}

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
{
    m_process.setProcessEnvironment(session.environment());
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(QStringLiteral(VANTLE_NEIGHBOUR), {});
    if (!m_process.waitForStarted(patienceInMilliseconds))
        qFatal("The other program did not start: %s", qUtf8Printable(m_process.errorString()));
}

CalendarServiceNeighbour::~CalendarServiceNeighbour()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(patienceInMilliseconds)) {
        m_process.kill();
        m_process.waitForFinished(patienceInMilliseconds);
    }
}

CalendarServiceNeighbour::Answer CalendarServiceNeighbour::request(const QStringList &fields)
{
    QByteArrayList words;
    for (const QString &field : fields)
        words.append(escaped(field));
    m_process.write(words.join('\t') + '\n');
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patienceInMilliseconds))
            qFatal("The other program does not answer to: %s", words.join(' ').constData());
    }
    const QByteArray line = m_process.readLine().chopped(1);
    const qsizetype tab = line.indexOf('\t');
    return { line.left(tab) == "ok", unescaped(line.mid(tab + 1)) };
}

QByteArray CalendarServiceNeighbour::demand(const QStringList &fields)
{
    const Answer answer = request(fields);
    if (!answer.isOk)
        qFatal("The calendar service refuses \"%s\": %s", qUtf8Printable(fields.join(u' ')), answer.text.constData());
    return answer.text;
}

void CalendarServiceNeighbour::addCalendar(
    const QString &source, CalItemKind kind, const QString &name, const QString &colour)
{
    demand({ u"add-calendar"_s, source, wordFor(kind), name, colour });
}

void CalendarServiceNeighbour::addReadOnlyCalendar(
    const QString &source, CalItemKind kind, const QString &name, const QString &file)
{
    demand({ u"add-file"_s, source, wordFor(kind), name, u"#999999"_s, file, digitFor(false) });
}

void CalendarServiceNeighbour::setWritable(const QString &source, bool isWritable)
{
    demand({ u"set-writable"_s, source, digitFor(isWritable) });
}

void CalendarServiceNeighbour::addCalDav(
    const QString &source, CalItemKind kind, const QString &name, const QString &url, const QString &user)
{
    demand({ u"add-caldav"_s, source, wordFor(kind), name, u"#33aa55"_s, url, user });
}

void CalendarServiceNeighbour::removeSource(const QString &source)
{
    demand({ u"remove-source"_s, source });
}

void CalendarServiceNeighbour::rename(const QString &source, const QString &name)
{
    demand({ u"rename"_s, source, name });
}

void CalendarServiceNeighbour::recolour(const QString &source, const QString &colour)
{
    demand({ u"recolour"_s, source, colour });
}

void CalendarServiceNeighbour::setEnabled(const QString &source, bool isEnabled)
{
    demand({ u"enable"_s, source, digitFor(isEnabled) });
}

void CalendarServiceNeighbour::setDefault(const QString &source)
{
    demand({ u"set-default"_s, source });
}

void CalendarServiceNeighbour::put(const QString &source, const QByteArray &components)
{
    demand({ u"put"_s, source,
        u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"_s + QString::fromUtf8(components) + u"END:VCALENDAR\r\n"_s });
}

QByteArray CalendarServiceNeighbour::text(const QString &source, const QString &uid)
{
    return demand({ u"get"_s, source, uid });
}

QStringList CalendarServiceNeighbour::list(const QString &source)
{
    return QString::fromUtf8(demand({ u"list"_s, source })).split(u'\n', Qt::SkipEmptyParts);
}

void CalendarServiceNeighbour::remove(const QString &source, const QString &uid)
{
    demand({ u"remove"_s, source, uid });
}

void CalendarServiceNeighbour::authenticate(const QString &source, const QString &user, const QString &password)
{
    demand({ u"authenticate"_s, source, user, password });
}

void CalendarServiceNeighbour::awaitConnection(const QString &source)
{
    demand({ u"await-connection"_s, source });
}

void CalendarServiceNeighbour::refresh(const QString &source)
{
    demand({ u"refresh"_s, source });
}
