// SPDX-License-Identifier: MIT
#include "KLVPopUpButtonAccessibility.h"

#include "KLVAccessiblePart.h"
#include "KLVPopUpButton.h"

#include <QAccessibleWidget>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace
{

// An entry, by its place.
class EntryInterface final : public KLVAccessiblePart
{
public:
    EntryInterface(KLVPopUpButton &popUp, int row)
        : m_popUp(&popUp)
        , m_row(row)
    {
    }

    bool isValid() const override { return m_popUp && m_row < m_popUp->count(); }
    QAccessibleInterface *parent() const override
    {
        return m_popUp ? QAccessible::queryAccessibleInterface(m_popUp.data()) : nullptr;
    }
    QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        if (kind == QAccessible::Name)
            return m_popUp->itemText(m_row);
        return kind == QAccessible::Description ? m_popUp->itemData(m_row, Qt::AccessibleDescriptionRole).toString()
                                                : QString();
    }
    // Closed, it is where the button is.
    QRect rect() const override { return parent() ? parent()->rect() : QRect(); }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        state.invisible = !m_popUp || !m_popUp->isVisible();
        state.disabled = !canBeChosen();
        state.selectable = canBeChosen();
        state.selected = isValid() && m_popUp->currentIndex() == m_row;
        return state;
    }

    QStringList actionNames() const override { return canBeChosen() ? QStringList(pressAction()) : QStringList(); }
    void doAction(const QString &name) override
    {
        if (actionNames().contains(name))
            m_popUp->choose(m_row);
    }

private:
    bool canBeChosen() const { return isValid() && m_popUp->isEnabled() && m_popUp->isItemEnabled(m_row); }

    QPointer<KLVPopUpButton> m_popUp;
    int m_row;
};

class PopUpInterface final : public QAccessibleWidget
{
public:
    explicit PopUpInterface(KLVPopUpButton *popUp)
        : QAccessibleWidget(popUp, QAccessible::ComboBox)
    {
    }

    int childCount() const override { return popUp()->count(); }
    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        return m_entries.part(index, [this, index] { return new EntryInterface(*popUp(), index); });
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return KLVAccessiblePart::indexOf(child, *this);
    }
    QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? popUp()->currentText() : QAccessibleWidget::text(kind);
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
        if (popUp()->isEnabled())
            names.append(showMenuAction());
        return names + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override
    {
        if (name == showMenuAction() && popUp()->isEnabled())
            popUp()->showPopup();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    KLVPopUpButton *popUp() const { return static_cast<KLVPopUpButton *>(widget()); }

    mutable KLVAccessibleParts<int> m_entries;
};

QAccessibleInterface *interfaceFor(const QString & /*className*/, QObject *object)
{
    auto *const popUp = qobject_cast<KLVPopUpButton *>(object);
    return popUp ? new PopUpInterface(popUp) : nullptr; // QAccessible owns it
}

} // namespace

void KLVPopUpButtonAccessibility::install()
{
    QAccessible::installFactory(interfaceFor);
}

void KLVPopUpButtonAccessibility::currentDidChange(KLVPopUpButton &popUp)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&popUp);
    QAccessibleInterface *const entry = interface ? interface->child(popUp.currentIndex()) : nullptr;
    if (!entry)
        return;
    QAccessible::State change;
    change.selected = true;
    QAccessibleStateChangeEvent stateEvent(entry, change);
    QAccessible::updateAccessibility(&stateEvent);
    QAccessibleEvent selection(entry, QAccessible::Selection);
    QAccessible::updateAccessibility(&selection);
}
