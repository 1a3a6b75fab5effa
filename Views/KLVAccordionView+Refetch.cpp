// SPDX-License-Identifier: MIT
#include "KLVAccordionView.h"

#include <QScrollArea>
#include <QScrollBar>

void KLVAccordionView::beginRefetch()
{
    const QScrollArea *const scrollView = enclosingScrollView();
    const int offset = scrollView ? scrollView->verticalScrollBar()->value() : 0;
    m_refetch = Refetch { m_shownRows, selectedUids(), geometry(), offset };
    // The attribute and not setUpdatesEnabled(), which repaints everything when it is set back.
    setAttribute(Qt::WA_UpdatesDisabled);
}

void KLVAccordionView::endRefetch()
{
    if (!m_refetch)
        return;

    const Refetch refetch = *std::exchange(m_refetch, std::nullopt);
    if (const QScrollArea *const scrollView = enclosingScrollView();
        scrollView && selectedUids() == refetch.selectedUids)
        scrollView->verticalScrollBar()->setValue(refetch.scrollOffset);
    setAttribute(Qt::WA_UpdatesDisabled, false);

    // What stood on the screen before the first step is what counts.
    m_shownRows = refetch.shownRows;
    repaintWhatLooksDifferent();
    if (geometry().topLeft() != refetch.geometry.topLeft())
        update();
}
