// SPDX-License-Identifier: MIT
#pragma once

#include <QTextDocument>

// What a person reads in a tool tip: Qt takes it for markup when it looks like markup, else for plain text.
inline QString seenInToolTip(const QString &toolTip)
{
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}
