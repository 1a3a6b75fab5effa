// SPDX-License-Identifier: MIT
#include "SaveJournal.h"

#include "FileReading.h"
#include "Limits.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

constexpr int formVersion = 1;
const QString entryEnding = u".save"_s;
// Both texts, encoded.
constexpr qint64 largestEntry = Limits::itemFileBytes * 3;

QString encoded(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

QByteArray decoded(const QJsonValue &value)
{
    return QByteArray::fromBase64(value.toString().toLatin1());
}

QByteArray textOf(const JournaledSave &save)
{
    QJsonObject content { { u"version"_s, formVersion }, { u"path"_s, save.path }, { u"after"_s, encoded(save.after) },
        { u"titlePrefix"_s, encoded(save.titlePrefix) } };
    if (save.before)
        content.insert(u"before"_s, encoded(*save.before));
    return QJsonDocument(content).toJson(QJsonDocument::Compact) + '\n';
}

// Nothing for what another version of the program may understand.
std::optional<JournaledSave> saveOf(const QByteArray &text)
{
    const QJsonObject content = QJsonDocument::fromJson(text).object();
    if (content[u"version"].toInt() != formVersion || !QDir::isAbsolutePath(content[u"path"].toString()))
        return std::nullopt;
    JournaledSave save;
    save.path = content[u"path"].toString();
    save.after = decoded(content[u"after"]);
    save.titlePrefix = decoded(content[u"titlePrefix"]);
    if (content.contains(u"before"_s))
        save.before = decoded(content[u"before"]);
    return save;
}

} // namespace

SaveJournal::SaveJournal(FileCalls &calls, QString folder)
    : m_calls(calls)
    , m_folder(std::move(folder))
{
}

SaveJournal::~SaveJournal()
{
    end();
}

Result<void, WritingFault> SaveJournal::begin(const JournaledSave &save)
{
    end();
    QDir().mkpath(m_folder);
    m_lock = locked(Lock::Shared);
    if (!m_lock->isOpen())
        return WritingFault { WritingFault::Kind::Failed, qt_error_string(errno) };
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces) + entryEnding;
    constexpr mode_t ownerAlone = S_IRUSR | S_IWUSR;
    if (auto written = ItemFileWriter(m_calls).create(pathOf(name), textOf(save), ownerAlone); !written) {
        m_lock.reset();
        return written;
    }
    m_name = name;
    m_current = save;
    return {};
}

void SaveJournal::end()
{
    if (m_current)
        QFile::remove(pathOf(m_name));
    abandon();
}

QString SaveJournal::abandon()
{
    m_current.reset();
    m_lock.reset();
    return std::exchange(m_name, {});
}

void SaveJournal::forget(const QString &name)
{
    if (!name.isEmpty())
        QFile::remove(pathOf(name));
}

void SaveJournal::forEachLeftOver(
    const QString &root, const QDateTime &now, const std::function<bool(const JournaledSave &save)> &deal)
{
    const QStringList names = QDir(m_folder).entryList({ u'*' + entryEnding }, QDir::Files, QDir::Name);
    if (names.isEmpty())
        return;
    const auto lock = locked(Lock::Exclusive);
    if (!lock->isOpen())
        return;
    ItemFileWriter::removeLeftovers(m_folder, now);
    const QString begin = QDir::cleanPath(QDir(root).absolutePath()) + u'/';
    for (const QString &name : names) {
        const auto content = readRegularFile(pathOf(name), largestEntry);
        const auto save = content ? saveOf(content.value().bytes) : std::nullopt;
        if (save && save->path.startsWith(begin) && deal(*save))
            QFile::remove(pathOf(name));
    }
}

QString SaveJournal::defaultFolder()
{
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home))
        home = QDir::homePath() + u"/.local/state"_s;
    return home + u"/vantle/saves"_s;
}

std::unique_ptr<FileDescriptor> SaveJournal::locked(Lock kind) const
{
    const QByteArray path = QFile::encodeName(pathOf(u"lock"_s));
    auto file = std::make_unique<FileDescriptor>(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    // Nobody waits: whoever has it may be a process that hangs.
    if (file->isOpen() && ::flock(file->number(), (kind == Lock::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0)
        return std::make_unique<FileDescriptor>(-1);
    return file;
}

QString SaveJournal::pathOf(const QString &name) const
{
    return m_folder + u'/' + name;
}

} // namespace FolderStore
