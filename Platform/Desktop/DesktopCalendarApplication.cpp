// SPDX-License-Identifier: MIT
#include "DesktopCalendarApplication.h"

#include "ProgramStart.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QTimer>
#include <QUrl>

#include <array>
#include <chrono>
#include <ctime>

using namespace Qt::StringLiterals;

// How one of the programs is known.
struct DesktopCalendarApplication::Program {
    QString busName;
    QString desktopId;
};

namespace
{

using ElementKind = CalendarApplication::ElementKind;

// A program that has not come up by then gets no further step.
constexpr std::chrono::seconds patience { 60 };

QString typeOf(ElementKind kind)
{
    return kind == ElementKind::Event ? u"x-scheme-handler/calendar"_s : u"x-scheme-handler/task"_s;
}

// As evolution(1) takes it; the values may hold anything.
QString addressOf(const CalendarApplication::Element &element, const QString &source)
{
    const auto encoded = [](const QString &value) { return QString::fromLatin1(QUrl::toPercentEncoding(value)); };
    QString address = (element.kind == ElementKind::Event ? u"calendar"_s : u"task"_s) + u":///?source-uid="_s
        + encoded(source) + u"&comp-uid="_s + encoded(element.plainUid);
    if (!element.recurrenceId.isEmpty())
        address += u"&comp-rid="_s + encoded(element.recurrenceId);
    return address;
}

// The short date of the locale that programs started from here see: what GNOME Calendar reads.
QString localesDate(QDate date)
{
    std::tm parts {};
    parts.tm_year = date.year() - 1900;
    parts.tm_mon = date.month() - 1;
    parts.tm_mday = date.day();
    std::array<char, 64> text {};
    const std::size_t length = std::strftime(text.data(), text.size(), "%x", &parts);
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(length));
}

} // namespace

const DesktopCalendarApplication::Program &DesktopCalendarApplication::evolution()
{
    static const Program program { u"org.gnome.Evolution"_s, u"org.gnome.Evolution.desktop"_s };
    return program;
}

const DesktopCalendarApplication::Program &DesktopCalendarApplication::gnomeCalendar()
{
    static const Program program { u"org.gnome.Calendar"_s, u"org.gnome.Calendar.desktop"_s };
    return program;
}

DesktopCalendarApplication::DesktopCalendarApplication(
    SourceLookup sourceOf, DesktopEntries entries, const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_sourceOf(std::move(sourceOf))
    , m_entries(std::move(entries))
    , m_bus(bus)
    , m_patience(new QTimer(this))
{
    m_patience->setSingleShot(true);
    connect(m_patience, &QTimer::timeout, this, &DesktopCalendarApplication::forget);
}

DesktopCalendarApplication::~DesktopCalendarApplication() = default;

const DesktopCalendarApplication::Program *DesktopCalendarApplication::program(ElementKind kind) const
{
    if (entryOf(evolution(), kind))
        return &evolution();
    if (kind == ElementKind::Event && entryOf(gnomeCalendar(), kind))
        return &gnomeCalendar();
    return nullptr;
}

// Evolution is taken where it opens the addresses, under whichever of its names it is installed.
std::optional<DesktopEntry> DesktopCalendarApplication::entryOf(const Program &program, ElementKind kind) const
{
    if (&program == &gnomeCalendar())
        return m_entries.entry(program.desktopId);
    auto handler = m_entries.handler(typeOf(kind));
    return handler && handler->id.contains(u"evolution"_s, Qt::CaseInsensitive) ? handler : std::nullopt;
}

bool DesktopCalendarApplication::isInstalled() const
{
    return program(ElementKind::Event) != nullptr;
}

bool DesktopCalendarApplication::hasCalendar(const QString &calendarUid) const
{
    return !m_sourceOf(calendarUid, ElementKind::Event).isEmpty()
        || !m_sourceOf(calendarUid, ElementKind::Todo).isEmpty();
}

bool DesktopCalendarApplication::hasElement(const Element &element) const
{
    return program(element.kind) && !element.plainUid.isEmpty()
        && !m_sourceOf(element.calendarUid, element.kind).isEmpty();
}

void DesktopCalendarApplication::activate()
{
    const Program *chosen = program(ElementKind::Event);
    if (!chosen)
        return;
    const QStringList command = entryOf(*chosen, ElementKind::Event)->command();
    perform(*chosen, chosen == &evolution() ? command + QStringList { u"-c"_s, u"calendar"_s } : command, {});
}

void DesktopCalendarApplication::showElement(const Element &element)
{
    const Program *chosen = program(element.kind);
    const QString source = m_sourceOf(element.calendarUid, element.kind);
    if (!chosen || source.isEmpty())
        return;
    const DesktopEntry entry = *entryOf(*chosen, element.kind);
    if (chosen == &evolution()) {
        // An address alone opens nothing in a program that it starts.
        perform(*chosen, entry.command() + QStringList { u"-c"_s, u"calendar"_s },
            entry.command(addressOf(element, source)));
        return;
    }

    // An event is opened only within the days that are shown.
    QString name = source + u':' + element.plainUid;
    if (!element.recurrenceId.isEmpty())
        name += u':' + element.recurrenceId;
    const QStringList open = entry.command() + QStringList { u"--uuid"_s, name };
    if (element.day.isValid())
        perform(*chosen, entry.command() + QStringList { u"--date"_s, localesDate(element.day) }, open);
    else
        perform(*chosen, entry.command(), open);
}

// The first command is for a program that does not run, or that has to be led somewhere; the second goes
// to the one that runs then.
void DesktopCalendarApplication::perform(const Program &program, const QStringList &first, const QStringList &second)
{
    forget();
    m_steps = new QObject(this);
    m_second = second;
    m_patience->start(patience);
    // Later in any case, so that a wish that follows at once takes the place of this one.
    if (!m_bus.isConnected()) {
        auto *later = new QTimer(m_steps);
        later->setSingleShot(true);
        connect(later, &QTimer::timeout, m_steps, [this, &program, first] { startFirst(program, first); });
        later->start();
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question.setArguments({ program.busName });
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), m_steps);
    connect(watcher, &QDBusPendingCallWatcher::finished, m_steps, [this, &program, first](auto *call) {
        const QDBusPendingReply<bool> reply = *call;
        if (reply.isValid() && reply.value() && &program == &evolution() && !m_second.isEmpty())
            startSecond();
        else
            startFirst(program, first);
    });
}

// Over when the program is on the bus, or when the command has handed itself to the one that is.
void DesktopCalendarApplication::startFirst(const Program &program, const QStringList &first)
{
    if (m_bus.isConnected()) {
        auto *arrival
            = new QDBusServiceWatcher(program.busName, m_bus, QDBusServiceWatcher::WatchForRegistration, m_steps);
        connect(arrival, &QDBusServiceWatcher::serviceRegistered, m_steps, [this] { startSecond(); });
    }
    auto *start = new ProgramStart(m_steps);
    connect(start, &ProgramStart::ended, m_steps, [this] { startSecond(); });
    // A program that cannot be started is one that is not found: nothing is told.
    if (!start->start(first))
        forget();
}

void DesktopCalendarApplication::startSecond()
{
    const QStringList second = m_second;
    forget();
    if (second.isEmpty())
        return;
    ProgramStart start;
    [[maybe_unused]] const auto failure = start.start(second);
}

void DesktopCalendarApplication::forget()
{
    m_patience->stop();
    m_second.clear();
    // From one of its own signals, so it goes later, and is deaf until then.
    if (m_steps) {
        for (QObject *step : m_steps->children())
            step->disconnect(m_steps);
        m_steps->deleteLater();
    }
    m_steps = nullptr;
}
