// SPDX-License-Identifier: MIT
#include "VTAboutWindow.h"
#include "VTAppController.h"
#include "VTFeedbackWindow.h"
#include "VTMainMenu.h"
#include "VTMainWindow.h"

#include <CalendarApplication.h>
#include <DesktopFacts.h>
#include <Presence.h>

#include <QAction>

using namespace Qt::StringLiterals;

// What is said about the program itself, and the ways from it to others.

void VTAppController::connectProgramCommands()
{
    const VTMainMenu &menu = *m_window->menu();
    connect(menu.command("showPreferences"), &QAction::triggered, this, [this] { showPreferences(); });
    connect(menu.command("showAbout"), &QAction::triggered, this, [this] { showAbout(); });
    connect(menu.command("showFeedbackWindow"), &QAction::triggered, this, [this] { showFeedbackWindow(); });
    connect(menu.command("checkForUpdates"), &QAction::triggered, this, [this] { checkForUpdates(); });
    connect(menu.command("launchICal"), &QAction::triggered, this, [this] { launchICal(); });
    // Software centres come and go while Vantle runs.
    const auto offerUpdates = [this] {
        m_window->menu()->command("checkForUpdates")->setVisible(m_services.help.softwareCentre.isAvailable());
    };
    connect(&menu, &QMenu::aboutToShow, m_window.get(), offerUpdates);
}

void VTAppController::showAbout(QObject * /*sender*/)
{
    auto *window = m_window->findChild<VTAboutWindow *>();
    if (!window)
        window = new VTAboutWindow(m_services.help.metadata, m_services.window.workspace, m_window.get());
    presence().bringToFront(*window);
}

void VTAppController::showFeedbackWindow(QObject * /*sender*/)
{
    showReportWindow({});
}

void VTAppController::reportIfCrash()
{
    if (const auto report = m_services.help.crashReport.take())
        showReportWindow(*report);
}

// A message that is being written is kept; one that was closed begins anew.
void VTAppController::showReportWindow(const QString &crashReport)
{
    const QString name = crashReport.isEmpty() ? u"feedbackWindow"_s : u"crashReportWindow"_s;
    auto *window = m_window->findChild<VTFeedbackWindow *>(name);
    if (!window) {
        const ApplicationMetadata &metadata = m_services.help.metadata;
        const QString program = metadata.name + u": "_s + metadata.version + u'\n';
        window = new VTFeedbackWindow(
            { metadata, m_services.window.workspace, m_services.window.fileChooser, m_services.window.alerts },
            program + desktopFacts(), crashReport, m_window.get());
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    presence().bringToFront(*window);
}

void VTAppController::checkForUpdates(QObject * /*sender*/) const
{
    m_services.help.softwareCentre.showComponent(m_services.help.metadata.componentId);
}

void VTAppController::launchICal(QObject * /*sender*/) const
{
    if (m_services.window.calendarApplication)
        m_services.window.calendarApplication->activate();
}
