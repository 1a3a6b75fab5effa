// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionSpinBox;

// The look of ordinary controls where the desktop brings no style of its own:
// Qt's plain style, with buttons, fields, pop-ups, indicators, tables, menus,
// tool tips, scroll bars and the pictures of message boxes drawn calm and flat, in
// the colours of the palette.
//
// All measures follow the application's font. Whoever has the keyboard shows it
// by a ring in the accent colour.
class KLVStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    KLVStyle();

    // Puts it in the place of Qt's plain style. A style that the desktop brings stays; false then.
    static bool dressApplication();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    QRect subElementRect(
        SubElement element, const QStyleOption *option, const QWidget *widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl subControl,
        const QWidget *widget = nullptr) const override;
    QSize sizeFromContents(
        ContentsType type, const QStyleOption *option, const QSize &size, const QWidget *widget) const override;
    int pixelMetric(
        PixelMetric metric, const QStyleOption *option = nullptr, const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr, const QWidget *widget = nullptr,
        QStyleHintReturn *returnData = nullptr) const override;
    QIcon standardIcon(
        StandardPixmap kind, const QStyleOption *option = nullptr, const QWidget *widget = nullptr) const override;

    using QProxyStyle::polish;
    using QProxyStyle::unpolish;
    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Shapes (KLVStyle.cpp)
    static void drawField(QPainter &painter, const QStyleOption &option, const QColor &face);
    static void drawRing(QPainter &painter, const QStyleOption &option, const QRectF &rect, qreal radius);
    static void drawArrow(QPainter &painter, const QRectF &rect, const QColor &color, Qt::ArrowType type);

    // Buttons and indicators (KLVStyle+Buttons.cpp)
    static void drawButtonFace(QPainter &painter, const QStyleOption &option, bool isDefault);
    void drawButtonLabel(QPainter &painter, const QStyleOptionButton &option, const QWidget *widget) const;
    static void drawCheckIndicator(QPainter &painter, const QStyleOption &option);
    static void drawRadioIndicator(QPainter &painter, const QStyleOption &option);
    static QSize buttonSize(const QStyleOptionButton &option, const QWidget *widget);

    // Fields, tables and scroll bars (KLVStyle+Fields.cpp)
    void drawComboBox(QPainter &painter, const QStyleOptionComboBox &option, const QWidget *widget) const;
    void drawComboBoxLabel(QPainter &painter, const QStyleOptionComboBox &option, const QWidget *widget) const;
    void drawSpinBox(QPainter &painter, const QStyleOptionSpinBox &option, const QWidget *widget) const;
    void drawScrollBar(QPainter &painter, const QStyleOptionComplex &option, const QWidget *widget) const;
    static void drawFrame(QPainter &painter, const QStyleOption &option, const QWidget *widget);
    static void drawHeaderSection(QPainter &painter, const QStyleOption &option);
    static QRect comboBoxRect(const QStyleOptionComplex &option, SubControl subControl, const QWidget *widget);
    static QRect spinBoxRect(const QStyleOptionSpinBox &option, SubControl subControl);
    QRect scrollBarRect(const QStyleOptionSlider &option, SubControl subControl, const QWidget *widget) const;

    // Menus (KLVStyle+Menus.cpp)
    static void drawMenuPanel(QPainter &painter, const QStyleOption &option);
    void drawMenuItem(QPainter &painter, const QStyleOptionMenuItem &option, const QWidget *widget) const;
    static void drawMenuItemFace(QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect);
    static void drawMenuItemMark(QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect);
    void drawMenuItemTexts(
        QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect, int textOffset) const;
    static QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents, const QWidget *widget);
};
