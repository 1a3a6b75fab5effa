// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QPointer>
#include <QScrollArea>

class KLVAccordionView;
class KLVSlimScrollBar;

// The scroll area of one accordion.
//
// The accordion always has the viewport's width. A slim scroll bar lies over
// the margin of the rows at the end of the lines, which is kept free for it, so
// nothing moves when it comes or goes; it runs inside the ring of a selected row
// and under it. While the accordion has the keyboard, a hairline in the accent
// colour runs around the list.
class KLVAccordionScrollArea final : public QScrollArea
{
    Q_OBJECT

public:
    // The accordion becomes a child of this view.
    explicit KLVAccordionScrollArea(KLVAccordionView *accordion, QWidget *parent = nullptr);

    ~KLVAccordionScrollArea() override;

    KLVAccordionView *accordion() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void placeOverlays();
    void updateBar();
    QPainterPath ringsOverBar() const;
    void updateFocusFrame();

    QPointer<KLVAccordionView> m_accordion;
    KLVSlimScrollBar *m_bar;
    QWidget *m_focusFrame;
};
