// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>

class SRRecorderControl;

// A recorder field as assistive technology meets it: a button, described by
// its combination in words, that records when it is pressed.
class SRRecorderAccessible final : public QAccessibleWidget
{
public:
    // Makes recorder fields known; any number of calls count as one.
    static void install();
    // What is said about the field is another thing than before.
    static void announceChange(SRRecorderControl &recorder);

    explicit SRRecorderAccessible(QWidget *recorder);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    QString localizedActionName(const QString &name) const override;
    QString localizedActionDescription(const QString &name) const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &name) const override;

private:
    SRRecorderControl &recorder() const;
};
