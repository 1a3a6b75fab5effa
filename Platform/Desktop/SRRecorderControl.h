// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>

class KeyboardLayouts;
class QAbstractButton;
class SRRecorderControl;

// A key by its place and the modifiers held with it, in the Cocoa encoding.
struct SRKeyCombo {
    quint64 flags = 0;
    qint64 code = -1; // virtual key code; -1 for no key

    bool isClear() const { return code < 0; }
    bool operator==(const SRKeyCombo &other) const = default;
};

class SRRecorderDelegate
{
public:
    SRRecorderDelegate(const SRRecorderDelegate &) = delete;
    SRRecorderDelegate &operator=(const SRRecorderDelegate &) = delete;

    virtual void shortcutRecorder_keyComboDidChange(SRRecorderControl *recorder, const SRKeyCombo &keyCombo) = 0;

protected:
    SRRecorderDelegate() = default;
    virtual ~SRRecorderDelegate() = default;
};

// A field in which a key combination is recorded by pressing it.
//
// A click, Space or Return begins the recording. It ends with the combination;
// with Escape, another click or the loss of focus, which change nothing; or
// with Delete or Backspace, which clear the field. Tab moves on.
//
// Reports every combination that it is given, by the person and by the
// program, also the one it has already: whoever registers it can try again.
//
// While it records it holds the whole keyboard where the desktop lets it, so
// that combinations which other programs listen for can be recorded too.
class SRRecorderControl final : public QWidget
{
    Q_OBJECT

public:
    // What the key is called in the layout in use.
    using KeyName = std::function<QString(qint64 virtualKey)>;

    // Follows the layouts, which outlive it.
    SRRecorderControl(KeyboardLayouts &layouts, KeyName keyName, QWidget *parent = nullptr);
    ~SRRecorderControl() override;

    // Null for none. The caller keeps ownership and outlives the control or takes itself away.
    void setDelegate(SRRecorderDelegate *delegate) { m_delegate = delegate; }

    SRKeyCombo keyCombo() const { return m_keyCombo; }
    // Taken as it is; the rules below are for what a person records.
    void setKeyCombo(const SRKeyCombo &keyCombo);

    quint64 allowedFlags() const { return m_allowedFlags; }
    void setAllowedFlags(quint64 allowedFlags);
    // Whether a key without modifiers may be recorded, and Escape. Both are forbidden at first.
    void setAllowsKeyOnly_escapeKeysRecord(bool allowsKeyOnly, bool escapeKeysRecord);

    bool isRecording() const { return m_isRecording; }

    // "⌥⌃V" and "Alt+Ctrl+V"; empty for no key.
    QString glyphs() const;
    QString words() const;
    // What stands in the field.
    QString displayedText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    void startRecording();
    // The combination stays as it was.
    void stopRecording();
    void clear();

Q_SIGNALS:
    void recordingDidBegin();
    void recordingDidEnd();
    // What stands in the field is another text than before.
    void displayDidChange();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Hint { None, NeedsModifier, KeyNotUsable };

    void recordKeyPress(const QKeyEvent &event);
    void takeKeyCombo(const SRKeyCombo &keyCombo);
    void giveHint(Hint hint);
    void updateDisplay();
    void layOutClearButton();
    qreal unit() const;

    KeyName m_keyName;
    SRRecorderDelegate *m_delegate = nullptr;
    QAbstractButton *m_clearButton;
    SRKeyCombo m_keyCombo;
    quint64 m_allowedFlags;
    bool m_allowsKeyOnly = false;
    bool m_escapeKeysRecord = false;

    bool m_isRecording = false;
    bool m_isPressInside = false; // of the mouse
    bool m_isLevel3Held = false; // AltGr
    quint64 m_heldFlags = 0; // while recording
    Hint m_hint = Hint::None;
    QString m_announcedText;
};
