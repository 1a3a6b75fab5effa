// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <map>
#include <string>

namespace
{

std::map<std::string, TestRegistry::Factory> &factories()
{
    static std::map<std::string, TestRegistry::Factory> map;
    return map;
}

// No test sees the person's own settings and calendars, or leaves anything behind.
void moveHomesTo(const QTemporaryDir &folder)
{
    qputenv("HOME", folder.filePath(QStringLiteral("home")).toUtf8());
    qputenv("XDG_CONFIG_HOME", folder.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", folder.filePath(QStringLiteral("data")).toUtf8());
    qputenv("XDG_CACHE_HOME", folder.filePath(QStringLiteral("cache")).toUtf8());
    qputenv("XDG_STATE_HOME", folder.filePath(QStringLiteral("state")).toUtf8());
}

} // namespace

bool TestRegistry::add(const char *className, Factory factory)
{
    return factories().emplace(className, std::move(factory)).second;
}

// Runs one class: the first argument is its name, the others are QTest's.
int main(int argc, char **argv)
{
    const auto found = argc > 1 ? factories().find(argv[1]) : factories().end();
    if (found == factories().end()) {
        std::fprintf(stderr, "usage: %s CLASS [QTest options]\nclasses:\n", argv[0]);
        for (const auto &[name, factory] : factories())
            std::fprintf(stderr, "  %s\n", name.c_str());
        return 2;
    }

    const QTemporaryDir homes;
    moveHomesTo(homes);
    const QApplication application(argc, argv);
    QStringList arguments = QApplication::arguments();
    arguments.removeAt(1);
    const auto test = found->second();
    return QTest::qExec(test.get(), arguments);
}
