// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

class KLVBarButton;

// A row of joined buttons with which a person walks through the days.
//
// Each segment has a tag, the number of days it goes by; the middle one takes
// the width that the others leave. The row is one stop of the tab key, and the
// left and right arrows walk inside it; each segment is a button of its own for
// the mouse and for assistive technology.
class KLVDateNavigator final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int tag READ tag WRITE setTag)
    Q_PROPERTY(int selectedSegment READ selectedSegment)

public:
    explicit KLVDateNavigator(QWidget *parent = nullptr);

    static constexpr int segmentCount = 5;
    static constexpr int middleSegment = 2;

    // The navigator's own; what it means is up to whoever sets it.
    int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }

    int tagForSegment(int segment) const;
    // The segment that was pressed last; the middle one at first.
    int selectedSegment() const { return m_selectedSegment; }

    QString labelForSegment(int segment) const;
    void setLabel_forSegment(const QString &label, int segment);

    // Puts the segments between two other stops of the tab key.
    void setTabOrderBetween(QWidget *previous, QWidget *next);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // A segment was pressed; selectedSegment() says which.
    void triggered();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void layOutSegments();
    void segmentClicked(int segment);
    void moveFocus(int from, int step);
    void setFocusStop(int segment);

    QList<KLVBarButton *> m_segments;
    int m_selectedSegment = middleSegment;
    int m_focusStop = middleSegment;
    int m_tag = 0;
};
