// SPDX-License-Identifier: MIT
#include "KLVMenuButtonAccessibility.h"

#include "KLVBarButton.h"

#include <QAccessibleWidget>
#include <QMenu>

namespace
{

class MenuButtonInterface final : public QAccessibleWidget
{
public:
    explicit MenuButtonInterface(KLVBarButton *button)
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
        state.hasPopup = true;
        return state;
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
    return button && button->menu() ? new MenuButtonInterface(button) : nullptr; // QAccessible owns it
}

} // namespace

void KLVMenuButtonAccessibility::install()
{
    QAccessible::installFactory(interfaceFor);
}
