// SPDX-License-Identifier: MIT
#pragma once

#include "SwitchableKeyboardLayouts.h"

#include <SRRecorderControl.h>

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QVBoxLayout>

// A window with a recorder field between two line edits, and all that the field reported.
class RecorderWindow final : public QWidget, public SRRecorderDelegate
{
public:
    RecorderWindow()
    {
        auto *column = new QVBoxLayout(this);
        auto *label = new QLabel(QStringLiteral("&New event"), this);
        for (QWidget *row : std::initializer_list<QWidget *> { before, label, recorder, after })
            column->addWidget(row);
        label->setBuddy(recorder);
        recorder->setDelegate(this);
    }

    // The layouts are gone before children are.
    ~RecorderWindow() override { delete recorder; }
    RecorderWindow(const RecorderWindow &) = delete;
    RecorderWindow &operator=(const RecorderWindow &) = delete;

    void shortcutRecorder_keyComboDidChange(SRRecorderControl *reporter, const SRKeyCombo &keyCombo) override
    {
        reporters.append(reporter);
        reports.append(keyCombo);
    }

    // "y" is "z" after switchToGerman(); all other keys are called by their number.
    void switchToGerman() { layouts.switchTo(makeLayout(QStringLiteral("Z"))); }

    SwitchableKeyboardLayouts layouts { makeLayout(QStringLiteral("Y")) };
    QLineEdit *before = new QLineEdit(this);
    QPointer<SRRecorderControl> recorder = new SRRecorderControl(
        layouts, [this](qint64 virtualKey) { return nameOf(virtualKey); }, this);
    QLineEdit *after = new QLineEdit(this);
    QList<SRRecorderControl *> reporters;
    QList<SRKeyCombo> reports;

private:
    static KeyboardLayoutPtr makeLayout(const QString &nameOfKey16)
    {
        return std::make_shared<PlainKeyboardLayout>(
            QStringLiteral("Plain"), QHash<qint64, QString> { { 9, QStringLiteral("V") }, { 16, nameOfKey16 } });
    }
    QString nameOf(qint64 virtualKey)
    {
        quint32 deadKeyState = 0;
        const QString text = layouts.currentLayout()->translate(virtualKey, layouts.keyboardType(), deadKeyState);
        return text.isEmpty() ? QString::number(virtualKey) : text;
    }
};
