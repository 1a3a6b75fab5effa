// SPDX-License-Identifier: MIT
#include "SRRecorderAccessible.h"

#include "SRRecorderControl.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{

const QString clearAction = u"Clear"_s;

QString spokenCombination(const SRRecorderControl &recorder)
{
    return recorder.keyCombo().isClear() ? QCoreApplication::translate("Vantle", "(None)") : recorder.words();
}

QString spokenState(const SRRecorderControl &recorder)
{
    if (recorder.isRecording())
        return QCoreApplication::translate("Vantle", "Recording: %1").arg(recorder.displayedText());
    return spokenCombination(recorder);
}

} // namespace

void SRRecorderAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory([](const QString & /*className*/, QObject *object) -> QAccessibleInterface * {
            auto *recorder = qobject_cast<SRRecorderControl *>(object);
            return recorder ? new SRRecorderAccessible(recorder) : nullptr;
        });
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void SRRecorderAccessible::announceChange(SRRecorderControl &recorder)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent value(&recorder, spokenCombination(recorder));
    QAccessible::updateAccessibility(&value);
    QAccessibleEvent description(&recorder, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&description);
}

SRRecorderAccessible::SRRecorderAccessible(QWidget *recorder)
    : QAccessibleWidget(recorder, QAccessible::Button)
{
}

QString SRRecorderAccessible::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Value:
        return spokenCombination(recorder());
    case QAccessible::Description:
        return spokenState(recorder());
    case QAccessible::Help:
        return QCoreApplication::translate(
            "Vantle", "Press Space, then the keys. Escape leaves it as it was, Delete clears it.");
    default:
        return QAccessibleWidget::text(kind);
    }
}

QAccessible::State SRRecorderAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = recorder().isRecording();
    return state;
}

QStringList SRRecorderAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (recorder().isEnabled()) {
        names.prepend(pressAction());
        if (!recorder().keyCombo().isClear())
            names.append(clearAction);
    }
    return names;
}

QString SRRecorderAccessible::localizedActionName(const QString &name) const
{
    return name == clearAction ? QCoreApplication::translate("Vantle", "Clear")
                               : QAccessibleWidget::localizedActionName(name);
}

QString SRRecorderAccessible::localizedActionDescription(const QString &name) const
{
    if (name == pressAction())
        return QCoreApplication::translate("Vantle", "Records the next key combination");
    if (name == clearAction)
        return QCoreApplication::translate("Vantle", "Takes the key combination away");
    return QAccessibleWidget::localizedActionDescription(name);
}

void SRRecorderAccessible::doAction(const QString &name)
{
    if (!recorder().isEnabled())
        return;
    if (name == clearAction)
        recorder().clear();
    else if (name != pressAction())
        QAccessibleWidget::doAction(name);
    else if (recorder().isRecording())
        recorder().stopRecording();
    else
        recorder().startRecording();
}

QStringList SRRecorderAccessible::keyBindingsForAction(const QString &name) const
{
    if (name == pressAction())
        return { QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText) };
    if (name == clearAction)
        return { QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText) };
    return QAccessibleWidget::keyBindingsForAction(name);
}

SRRecorderControl &SRRecorderAccessible::recorder() const
{
    return *static_cast<SRRecorderControl *>(widget());
}
