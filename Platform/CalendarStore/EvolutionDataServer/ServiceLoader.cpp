// SPDX-License-Identifier: MIT
#include "ServiceLoader.h"

#include "ServicePlugin.h"

#include <ProblemLog.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Behind it stands the name of a part of the service and the version of its interface.
const QString servicePrefix = u"org.gnome.evolution.dataserver."_s;
const QString partWithCalendars = servicePrefix + u"Calendar"_s;

bool isCalendarPart(const QString &name)
{
    const QString version = name.mid(partWithCalendars.size());
    return name.startsWith(partWithCalendars) && !version.isEmpty()
        && std::ranges::all_of(version, [](QChar each) { return each.isDigit(); });
}

// Beside the program in a build folder, below the libraries where it is installed.
QString pathOfModule()
{
    const QDir here(QCoreApplication::applicationDirPath());
    for (const QString &folder : { u"."_s, u"" VANTLE_MODULE_FOLDER ""_s }) {
        const QString path = here.filePath(folder + u"/libvantle-evolution.so"_s);
        if (QFileInfo::exists(path))
            return QDir::cleanPath(path);
    }
    return {};
}

} // namespace

ServiceLoader::ServiceLoader(Clock &clock, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
{
}

ServiceLoader::~ServiceLoader() = default;

void ServiceLoader::start()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QMetaObject::invokeMethod(this, &ServiceLoader::missing, Qt::QueuedConnection);
        return;
    }
    m_answersToCome = 2;
    m_watcher
        = std::make_unique<QDBusServiceWatcher>(servicePrefix + u'*', bus, QDBusServiceWatcher::WatchForRegistration);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceRegistered, this,
        [this](const QString &name) { look({ name }); });
    QDBusConnection(bus).connect(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
        u"ActivatableServicesChanged"_s, this, SLOT(ask()));
    ask();
}

void ServiceLoader::ask()
{
    for (const QString &question : { u"ListActivatableNames"_s, u"ListNames"_s }) {
        const QDBusMessage message = QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, question);
        auto *const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
            const QDBusPendingReply<QStringList> reply = *answer;
            answer->deleteLater();
            if (!reply.isError())
                look(reply.value());
            wasAnswered();
        });
    }
}

void ServiceLoader::wasAnswered()
{
    if (m_answersToCome == 0)
        return;
    --m_answersToCome;
    if (m_answersToCome == 0 && !m_isFound)
        Q_EMIT missing();
}

void ServiceLoader::look(const QStringList &names)
{
    if (m_isFound || !std::ranges::any_of(names, isCalendarPart))
        return;
    m_isFound = true;
    if (m_watcher)
        m_watcher->setWatchedServices({});
    Q_EMIT found();
}

std::unique_ptr<CalendarStoreBackend> ServiceLoader::load()
{
    const QString path = pathOfModule();
    if (path.isEmpty()) {
        qCWarning(Items::storeLog) << "The module for the desktop's calendar service is not installed.";
        return nullptr;
    }
    QPluginLoader loader(path);
    // Types of its libraries cannot be taken back.
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    auto *const plugin = qobject_cast<ServicePlugin *>(loader.instance());
    if (!plugin) {
        qCWarning(Items::storeLog).noquote()
            << "The module for the desktop's calendar service cannot be used:" << loader.errorString();
        return nullptr;
    }
    return plugin->makeBackend(m_clock);
}
