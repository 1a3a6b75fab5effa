// SPDX-License-Identifier: MIT
#include "WindowManager.h"

#include "VirtualDisplay.h"

#include <X11/Xcb.h>
#include <X11KeyboardLayouts.h>

#include <QTest>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000; // several test programs may start at once

// Window managers write themselves down on the root window when they are ready.
bool isManaged(xcb_connection_t *x)
{
    constexpr char name[] = "_NET_SUPPORTING_WM_CHECK";
    const XcbMemory<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, sizeof(name) - 1, name), nullptr));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const XcbMemory<xcb_get_property_reply_t> property(atom
            ? xcb_get_property_reply(x, xcb_get_property(x, 0, root, atom->atom, XCB_ATOM_WINDOW, 0, 1), nullptr)
            : nullptr);
    return property && property->type == XCB_ATOM_WINDOW;
}

} // namespace

WindowManager::~WindowManager()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(patienceInMilliseconds);
}

bool WindowManager::start(const VirtualDisplay &display)
{
    const XcbConnectionPtr x(xcb_connect(display.name().constData(), nullptr));
    m_process.setProcessEnvironment(display.environment());
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(u"openbox"_s, {});
    const bool isReady = QTest::qWaitFor([&x] { return isManaged(x.get()); }, patienceInMilliseconds);
    if (!isReady)
        m_failure = u"openbox did not start: %1 %2"_s.arg(
            m_process.errorString(), QString::fromLocal8Bit(m_process.readAllStandardError()));
    return isReady;
}
