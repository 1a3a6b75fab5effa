// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <PropertyList.h>
#include <UserDefaults.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <unistd.h>

using Fuzzing::require;

namespace
{

const QVariantMap &factoryValues()
{
    static const QVariantMap values
        = readPropertyListDictionary(QStringLiteral(VANTLE_FACTORY_SETTINGS)).value(); // none are no target
    return values;
}

// As in the program, where the settings are read below a running application: a value in the file can
// claim to be a picture.
void ensureApplication()
{
    static int count = 1;
    static char name[] = "fuzz_Settings";
    static char *arguments[] = { name, nullptr };
    static const QGuiApplication application(count, arguments);
}

// A name that no earlier input had: Qt keeps what it read from a name.
QString freshPath()
{
    static quint64 number = 0;
    return QDir::temp().filePath(QStringLiteral("settings-%1-%2.conf").arg(::getpid()).arg(number++));
}

} // namespace

// Whatever the settings file holds, every setting has a value of its type, can be changed, and changes no other.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    ensureApplication();
    Fuzzing::Input input(data, size);
    const QString path = freshPath();
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(input.text()) == input.text().size(), "the disk has room");
    file.close();

    const QString changed = factoryValues().keys().at(input.choice(static_cast<int>(factoryValues().size())));
    QVariantMap before;
    {
        UserDefaults defaults(path);
        defaults.registerDefaults(factoryValues());
        for (const QString &key : factoryValues().keys()) {
            before.insert(key, defaults.objectForKey(key));
            require(before.value(key).isValid(), "every setting has a value");
            (void)defaults.integerForKey(key);
            (void)defaults.arrayForKey(key);
        }
        defaults.setInteger_forKey(1, changed);
        require(bool(defaults.synchronize()), "a damaged file can be written");
    }
    UserDefaults defaults(path);
    defaults.registerDefaults(factoryValues());
    for (const QString &key : factoryValues().keys()) {
        if (key != changed)
            require(defaults.objectForKey(key) == before.value(key), "other settings stay as they are");
    }
    require(QFile::remove(path), "the file is there");
    return 0;
}
