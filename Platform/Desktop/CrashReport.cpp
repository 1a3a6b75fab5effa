// SPDX-License-Identifier: MIT
#include "CrashReport.h"

#include "StateFolder.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <cxxabi.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 largestFile = 512 * 1024; // bytes; more of it is not read

struct Module {
    quint64 begin = 0;
    quint64 end = 0;
    quint64 offset = 0; // of its begin within the file
    QString name;
};

// "7f0a-7f0b r-xp 00001000 fd:00 42   /usr/lib/libx.so"
std::optional<Module> moduleOf(const QString &line)
{
    const QStringList fields = line.simplified().split(u' ');
    if (fields.size() < 6)
        return std::nullopt;
    const QStringList range = fields.first().split(u'-');
    bool isNumber = range.size() == 2;
    Module module;
    for (auto [text, number] : { std::pair(range.first(), &module.begin), std::pair(range.last(), &module.end),
             std::pair(fields.at(2), &module.offset) }) {
        bool isOk = false;
        *number = text.toULongLong(&isOk, 16);
        isNumber = isNumber && isOk;
    }
    module.name = fields.mid(5).join(u' ').section(u'/', -1);
    return isNumber ? std::optional(module) : std::nullopt;
}

QString demangled(const QString &symbol)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(symbol.toUtf8().constData(), nullptr, nullptr, &status), &std::free);
    return status == 0 && name ? QString::fromUtf8(name.get()) : symbol;
}

QString hexadecimal(quint64 value)
{
    return u"0x"_s + QString::number(value, 16);
}

// "0x7f0a _ZN3FooC1Ev+0x12" as "Foo::Foo() + 0x12 (libx.so + 0x1012)".
QString readableFrame(const QString &frame, const QList<Module> &modules)
{
    const QString address = frame.section(u' ', 0, 0);
    const QString symbol = frame.section(u' ', 1);
    bool isNumber = false;
    const quint64 place = address.toULongLong(&isNumber, 16);
    if (!isNumber)
        return frame;
    QString text = symbol.isEmpty()
        ? u"?"_s
        : QString(demangled(symbol.section(u'+', 0, -2)) + u" + "_s + symbol.section(u'+', -1));
    const auto module = std::ranges::find_if(
        modules, [place](const Module &each) { return place >= each.begin && place < each.end; });
    text += module == modules.end()
        ? QString(u" ("_s + address + u')')
        : QString(u" ("_s + module->name + u" + "_s + hexadecimal(place - module->begin + module->offset) + u')');
    return text;
}

QString signalName(int number)
{
    const char *name = sigabbrev_np(number);
    return name ? u"SIG"_s + QString::fromLatin1(name) : QString();
}

} // namespace

CrashReportFile::CrashReportFile(QString path)
    : m_path(std::move(path))
{
}

QString CrashReportFile::defaultPath()
{
    return stateFolder() + u"/crash-trace.txt"_s;
}

std::optional<QString> CrashReportFile::take() const
{
    QFile file(m_path);
    // A FIFO or a device under that name would block or never end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray trace = file.read(largestFile);
    file.close();
    // One that cannot be taken away would be offered at every start.
    if (!file.remove() || trace.trimmed().isEmpty())
        return std::nullopt;
    return readableCrashReport(trace);
}

QString readableCrashReport(const QByteArray &trace)
{
    const QStringList lines = QString::fromUtf8(trace).split(u'\n', Qt::SkipEmptyParts);
    QList<Module> modules;
    for (const QString &line : lines) {
        if (line.startsWith(u"module "_s)) {
            if (const auto module = moduleOf(line.section(u' ', 1)))
                modules << *module;
        }
    }

    QStringList report;
    int frames = 0;
    for (const QString &line : lines) {
        const QString key = line.section(u' ', 0, 0);
        const QString value = line.section(u' ', 1);
        if (key == u"frame"_s)
            report << u"%1  %2"_s.arg(frames++, 3).arg(readableFrame(value, modules));
        else if (key == u"signal"_s)
            report << u"Ended by signal %1 %2"_s.arg(value, signalName(value.toInt())).trimmed();
        else if (key == u"sender"_s)
            report << u"Sent by process %1"_s.arg(value);
        else if (key == u"time"_s)
            report << u"At %1"_s.arg(QDateTime::fromSecsSinceEpoch(value.toLongLong()).toString(Qt::ISODate));
        else if (key == u"address"_s)
            report << u"Touching address %1"_s.arg(value);
        else if (key != u"module"_s)
            report << line;
    }
    return report.join(u'\n') + u'\n';
}
