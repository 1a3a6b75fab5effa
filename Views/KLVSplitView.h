// SPDX-License-Identifier: MIT
#pragma once

#include <QSplitter>

class KLVSplitView;
class QPainter;

// How far a divider may go, and whether a pane may vanish. Divider 0 lies under
// the first pane. Positions are heights in points from the split view's top.
class KLVSplitViewDelegate
{
public:
    virtual ~KLVSplitViewDelegate() = default;

    virtual double splitView_constrainMinCoordinate_ofSubviewAt(
        KLVSplitView *view, double proposedMin, int dividerIndex)
        = 0;
    virtual double splitView_constrainMaxCoordinate_ofSubviewAt(
        KLVSplitView *view, double proposedMax, int dividerIndex)
        = 0;
    virtual bool splitView_canCollapseSubview(KLVSplitView *view, QWidget *subview) = 0;

protected:
    KLVSplitViewDelegate() = default;
    KLVSplitViewDelegate(const KLVSplitViewDelegate &) = default;
    KLVSplitViewDelegate &operator=(const KLVSplitViewDelegate &) = default;
};

// A split view of two panes, one above the other, whose divider carries a hairline.
//
// The divider is moved by mouse and keyboard inside the delegate's limits. Beyond
// half of what a pane is to keep at least, the pane collapses: nothing is left of it,
// and it comes back when the divider is moved away from the edge.
class KLVSplitView final : public QSplitter
{
    Q_OBJECT

public:
    explicit KLVSplitView(QWidget *parent = nullptr);

    static constexpr int dividerThickness = 8;

    // Not owned. Without one there are no limits.
    void setDelegate(KLVSplitViewDelegate *delegate) { m_delegate = delegate; }

    // Height of the first pane.
    int positionOfDivider() const;
    // As it is, without asking for limits: 0 collapses the first pane, the full height the second.
    void setPosition_ofDividerAt(double position, int dividerIndex);
    // Where the divider was when both panes were last to be seen.
    int openPosition() const { return m_openPosition; }
    // For a divider that is to be there as soon as both panes are to be seen.
    void setOpenPosition(int position) { m_openPosition = position; }

    // What a hand, or a key, wants; the limits decide.
    void dragDivider(double position);
    void moveDivider(int points);
    void collapseSubview(int index);
    // Both panes to be seen, the divider where it was before.
    void openSubviews();
    bool isSubviewCollapsed(int index) const;

    // The plain divider, and half a point of line along the rectangle's upper edge, from x 0.
    void drawDividerInRect(QPainter &painter, const QRectF &rect) const;

Q_SIGNALS:
    // A pane has collapsed or come back.
    void collapseDidChange();

protected:
    QSplitterHandle *createHandle() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Limits {
        double least;
        double most;
    };
    Limits limits() const;
    double space() const; // the highest position: the height less the divider
    bool canCollapse(int index) const;
    void noteCollapse();

    KLVSplitViewDelegate *m_delegate = nullptr;
    int m_openPosition = 0;
    int m_collapsed = -1; // index of the pane that is; -1 for none
};
