// SPDX-License-Identifier: MIT
#include "KLVBarButtonAccessibility.h"

#include "KLVBarButton.h"

#include <QAccessibleWidget>
#include <QMenu>

namespace
{

class BarButtonInterface final : public QAccessibleWidget
{
public:
    explicit BarButtonInterface(KLVBarButton *button)
        : QAccessibleWidget(button, QAccessible::Button)
    {
    }

    int childCount() const override { return menuInterface() ? 1 : 0; }
    QAccessibleInterface *child(int index) const override { return index == 0 ? menuInterface() : nullptr; }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child && child == menuInterface() ? 0 : -1;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = button()->menu() != nullptr;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString own = QAccessibleWidget::text(kind);
        return own.isEmpty() && kind == QAccessible::Name ? button()->text() : own;
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (widget()->isEnabled())
            names.append(pressAction());
        return names + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            button()->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    KLVBarButton *button() const { return static_cast<KLVBarButton *>(widget()); }
    QAccessibleInterface *menuInterface() const
    {
        return button()->menu() ? QAccessible::queryAccessibleInterface(button()->menu()) : nullptr;
    }
};

QAccessibleInterface *interfaceFor(const QString & /*className*/, QObject *object)
{
    auto *const button = qobject_cast<KLVBarButton *>(object);
    return button ? new BarButtonInterface(button) : nullptr; // QAccessible owns it
}

} // namespace

void KLVBarButtonAccessibility::install()
{
    QAccessible::installFactory(interfaceFor);
}
