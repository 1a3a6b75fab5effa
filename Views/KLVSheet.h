// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

// A window attached to another one: it hangs from that window's upper edge,
// goes where it goes, keeps input away from it and has the keyboard for as long as
// it is open. A second sheet can be attached to the first.
//
// Return and Escape reach the sheet's controller from every control, as
// "insertNewline" and "cancelOperation" (see KLVKeyBindings); a text of several
// lines keeps Return for itself and gives Ctrl+Return away. What they mean, and
// whether the sheet closes, is the controller's.
class KLVSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit KLVSheet(QWidget *parent = nullptr);

    // Where the two messages go. Not owned.
    void setController(QObject *controller);

    // Shows the sheet over the window, which must be there. The window takes part in where the
    // sheet is and in what it looks like, not in its life.
    void beginSheet(QWidget *window);
    // Takes the sheet off its window and hides it. Nothing happens when it is not open.
    void endSheet();
    // The window under the sheet; null while it is closed.
    QWidget *sheetParent() const { return m_window; }

    // Asks the controller to cancel: also the window manager's close command ends here.
    void reject() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void listenToControls();
    bool interpretKey(const QKeyEvent &event, QWidget *control);
    void fit();
    void place();
    void takeKeyboardBack();

    QPointer<QWidget> m_window;
    bool m_isBegun = false; // also while it is out of sight together with its window
};
