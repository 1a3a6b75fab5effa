// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

// A line across the window that says what the person should know of what is
// shown. Plain text, wrapped; there only while it has something to say. Its
// coming is told to assistive technology.
class KLVNotice final : public QLabel
{
    Q_OBJECT

public:
    explicit KLVNotice(QWidget *parent = nullptr);

    // An empty text hides it.
    void say(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void takeFont();
};
