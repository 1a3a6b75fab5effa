// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class KLVCheckBoxTable;
class KLVDatePicker;
class QPushButton;

// The side of the window: which calendars are shown, and a date to go to. Says
// nothing of what they do. Its width is fixed.
class KLVCalendarsDrawer final : public QWidget
{
    Q_OBJECT

public:
    explicit KLVCalendarsDrawer(QWidget *parent = nullptr);

    KLVCheckBoxTable *calendarsTable() const { return m_calendarsTable; }
    QPushButton *allButton() const { return m_allButton; }
    QPushButton *noneButton() const { return m_noneButton; }
    // Leads to where the desktop asks for passwords; hidden until it is needed.
    QPushButton *accountSettingsButton() const { return m_accountSettingsButton; }
    KLVDatePicker *textDatePicker() const { return m_textDatePicker; }

    // Puts its controls behind that widget in the order of the tab key.
    void setTabOrderAfter(QWidget *previous);

    // How wide it is for the person's font, in pixels.
    static int statedWidth();

    // Escape in the date picker.
    Q_INVOKABLE void cancelOperation();

Q_SIGNALS:
    void cancelled();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPushButton *addButton(const QString &text, const QString &objectName);

    KLVCheckBoxTable *m_calendarsTable;
    QPushButton *m_allButton;
    QPushButton *m_noneButton;
    QPushButton *m_accountSettingsButton;
    KLVDatePicker *m_textDatePicker;
};
