// SPDX-License-Identifier: MIT
#include "ZoneRegistry.h"

#include "EmbeddedZone.h"
#include "SystemZone.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QTimeZone>

#include <algorithm>
#include <optional>

#include <sys/stat.h>

namespace ICalendar
{

namespace
{

// Whether a name can be that of a file below the folder of zones, and of no other file.
bool isZoneFileName(const QString &name)
{
    if (name.isEmpty() || name.size() > 100 || name.startsWith(u'/') || name.startsWith(u'.'))
        return false;
    if (name.contains(QStringLiteral("..")) || name.startsWith(QStringLiteral("right/")))
        return false;
    return std::ranges::all_of(name, [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'/'
            || c == u'_' || c == u'-' || c == u'+' || c == u'.';
    });
}

ZonePtr zoneOfFileName(const QString &name)
{
    if (!isZoneFileName(name))
        return nullptr;
    return readZoneFile(zoneFolder() + u'/' + name);
}

// Each name behind one more slash of "/mozilla.org/20050126_1/Europe/Berlin", until there is a zone.
ZonePtr zoneBehindPrefix(const QString &tzid)
{
    QString rest = tzid;
    while (rest.contains(u'/')) {
        rest = rest.mid(rest.indexOf(u'/') + 1);
        // "Berlin" alone is no zone, and "GMT" at the end of a path is not what the path says.
        if (!rest.contains(u'/') && rest != QStringLiteral("UTC"))
            break;
        if (ZonePtr zone = zoneOfFileName(rest))
            return zone;
    }
    return nullptr;
}

ZonePtr makeSystemZone(const QString &tzid)
{
    if (ZonePtr zone = zoneOfFileName(tzid))
        return zone;
    if (tzid.contains(u'/'))
        return zoneBehindPrefix(tzid);
    const QByteArray iana = QTimeZone::windowsIdToDefaultIanaId(tzid.toUtf8());
    return iana.isEmpty() ? nullptr : zoneOfFileName(QString::fromLatin1(iana));
}

ZonePtr utcZone()
{
    static const ZonePtr zone = zoneFromPosixText("UTC0");
    return zone;
}

// What TZ or the system's setting says, as the system's own library reads it.
ZonePtr makeLocalZone(const std::optional<QByteArray> &setting)
{
    if (!setting) {
        const ZonePtr zone = readZoneFile(QStringLiteral("/etc/localtime"));
        return zone ? zone : utcZone();
    }
    QByteArray text = *setting;
    if (text.startsWith(':'))
        text = text.sliced(1);
    if (text.startsWith('/')) {
        const ZonePtr zone = readZoneFile(QString::fromLocal8Bit(text));
        return zone ? zone : utcZone();
    }
    if (ZonePtr zone = zoneOfFileName(QString::fromLocal8Bit(text)))
        return zone;
    const ZonePtr zone = zoneFromPosixText(text);
    return zone ? zone : utcZone();
}

// Tells whether the zone that was made is still the right one.
struct LocalZoneKey {
    std::optional<QByteArray> setting;
    qint64 modified = 0; // of /etc/localtime, nanoseconds
    quint64 file = 0;

    bool operator==(const LocalZoneKey &) const = default;
};

LocalZoneKey currentLocalZoneKey()
{
    LocalZoneKey key;
    if (qEnvironmentVariableIsSet("TZ")) {
        key.setting = qgetenv("TZ");
        return key;
    }
    struct stat status {
    };
    if (::stat("/etc/localtime", &status) == 0) {
        key.modified = static_cast<qint64>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
        key.file = status.st_ino;
    }
    return key;
}

} // namespace

class ZoneRegistry::Private
{
public:
    QHash<QByteArray, ZonePtr> embedded; // by text, null for one that makes no zone
    QHash<QString, ZonePtr> system; // by name as written
};

ZoneRegistry::ZoneRegistry()
    : d(std::make_unique<Private>())
{
}

ZoneRegistry::~ZoneRegistry() = default;

ZonePtr ZoneRegistry::embeddedZone(const QByteArray &vtimezone)
{
    // Texts are kept as keys: the same few definitions stand in thousands of files. Beyond a number that no
    // honest calendar has they are made anew each time, so that memory stays bounded.
    constexpr qsizetype mostKept = 2'000;
    constexpr qsizetype longestKept = 100'000;
    const auto found = d->embedded.constFind(vtimezone);
    if (found != d->embedded.constEnd())
        return *found;
    ZonePtr zone = readEmbeddedZone(vtimezone);
    if (d->embedded.size() < mostKept && vtimezone.size() <= longestKept)
        d->embedded.insert(QByteArray(vtimezone.constData(), vtimezone.size()), zone);
    return zone;
}

ZonePtr ZoneRegistry::systemZone(const QString &tzid)
{
    constexpr qsizetype mostKept = 5'000;
    const QString name = tzid.trimmed();
    const auto found = d->system.constFind(name);
    if (found != d->system.constEnd())
        return *found;
    ZonePtr zone = makeSystemZone(name);
    if (d->system.size() < mostKept)
        d->system.insert(name, zone);
    return zone;
}

ZonePtr ZoneRegistry::localZone()
{
    thread_local LocalZoneKey knownKey;
    thread_local ZonePtr knownZone;
    LocalZoneKey key = currentLocalZoneKey();
    if (!knownZone || key != knownKey) {
        knownZone = makeLocalZone(key.setting);
        knownKey = std::move(key);
    }
    return knownZone;
}

QByteArray ZoneRegistry::localZoneName()
{
    const QByteArray name = QTimeZone::systemTimeZoneId();
    return zoneOfFileName(QString::fromLatin1(name)) ? name : QByteArray();
}

} // namespace ICalendar
