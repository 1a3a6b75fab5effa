// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

// A word about how something is, behind a small sign: shape and colour say the
// same, so that neither is needed. Plain text on one line. What assistive
// technology reads is given by the caller; a change of it is told.
class KLVStatusLabel final : public QLabel
{
    Q_OBJECT

public:
    enum class Sign {
        None, // nothing is shown
        Good, // a disc
        Problem, // a triangle
        Waiting, // a ring
        Absent, // a dash
    };

    explicit KLVStatusLabel(QWidget *parent = nullptr);

    Sign sign() const { return m_sign; }
    void setStatus(Sign sign, const QString &word, const QString &accessibleText);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void takeFont();
    void drawSign(QPainter &painter, const QRectF &place, const QColor &color) const;

    Sign m_sign = Sign::None;
};
