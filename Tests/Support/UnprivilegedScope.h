// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QStringList>

#include <unistd.h>

// Permissions mean nothing to the administrator, so what is to be refused by them is
// tried as nobody in particular. `ownedPaths` are theirs from then on: all that is to be
// reached, folders on the way included.
class UnprivilegedScope final
{
public:
    explicit UnprivilegedScope(const QStringList &ownedPaths)
        : m_wasRoot(::geteuid() == 0)
    {
        constexpr uid_t nobody = 65534;
        if (!m_wasRoot)
            return;
        for (const QString &path : ownedPaths) {
            if (::chown(QFile::encodeName(path).constData(), nobody, nobody) != 0)
                qFatal("The test cannot give away %s", qPrintable(path));
        }
        if (::seteuid(nobody) != 0)
            qFatal("The test cannot become nobody");
    }
    ~UnprivilegedScope()
    {
        if (m_wasRoot && ::seteuid(0) != 0)
            qFatal("The test cannot become administrator again");
    }
    UnprivilegedScope(const UnprivilegedScope &) = delete;
    UnprivilegedScope &operator=(const UnprivilegedScope &) = delete;

private:
    bool m_wasRoot;
};
