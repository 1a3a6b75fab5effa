// SPDX-License-Identifier: MIT
#include "DesktopWorkspace.h"

#include "AccountSettings.h"
#include "PlainMessageBox.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype longestShownTarget = 600; // characters

bool opensWithoutQuestion(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == u"http"_s || scheme == u"https"_s || scheme == u"mailto"_s;
}

// Something that a file manager would start instead of showing it.
bool isProgram(const QUrl &url)
{
    if (!url.isLocalFile())
        return false;
    const QFileInfo file(url.toLocalFile());
    return file.suffix().compare(u"desktop"_s, Qt::CaseInsensitive) == 0 || (file.isFile() && file.isExecutable());
}

bool askInMessageBox(const QString &target)
{
    const QString question = QCoreApplication::translate("Vantle", "Open this link with another program?");
    PlainMessageBox box(QMessageBox::Question, question + u"\n\n"_s + target);
    box.setObjectName(u"openTargetQuestion"_s);
    const auto *open = box.addButton(QCoreApplication::translate("Vantle", "Open"), QMessageBox::AcceptRole);
    QPushButton *cancel = box.addCancel();
    box.setDefaultButton(cancel);
    box.setEscapeButton(cancel);
    box.exec();
    return box.clickedButton() == open;
}

} // namespace

DesktopWorkspace::DesktopWorkspace()
    : DesktopWorkspace(askInMessageBox, [](const QUrl &url) { return QDesktopServices::openUrl(url); })
{
}

DesktopWorkspace::DesktopWorkspace(Question question, Opener opener)
    : m_question(std::move(question))
    , m_opener(std::move(opener))
{
}

void DesktopWorkspace::openURL(const QUrl &url)
{
    if (!url.isValid())
        return;
    if (!opensWithoutQuestion(url) && !m_question(readableTarget(url)))
        return;

    // A program is never started from a calendar's link: the person gets to see the folder it lies in.
    if (isProgram(url))
        m_opener(QUrl::fromLocalFile(QFileInfo(url.toLocalFile()).path()));
    else
        m_opener(url);
}

bool DesktopWorkspace::openAccountSettings()
{
    return AccountSettings::open(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

QString readableTarget(const QUrl &url)
{
    // Percent notation leaves nothing but ASCII: no character that hides or turns the reading direction.
    QString target = url.toString(QUrl::FullyEncoded);
    if (target.size() <= longestShownTarget)
        return target;
    return target.left(longestShownTarget) + u"…"_s;
}
