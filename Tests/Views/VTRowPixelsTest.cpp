// SPDX-License-Identifier: MIT
#include "PixelChecks.h"
#include "RowFixture.h"
#include "TestRegistry.h"

#include <CrispImage.h>
#include <KLVAccordionScrollArea.h>
#include <KLVButton.h>
#include <KLVButtonMatrix.h>
#include <KLVCheckBox.h>
#include <KLVIconsView.h>
#include <KLVImageView.h>
#include <KLVMiniBadge.h>
#include <KLVTheme.h>
#include <VTCalEventController.h>
#include <VTCalTaskController.h>

#include <QPainter>
#include <QTest>
#include <QTranslator>

#include <map>

using namespace Qt::StringLiterals;

namespace
{

const QColor red(0xd6, 0x45, 0x5d);
const QColor yellow(0xff, 0xe0, 0x40);
const QColor alternate = QColor::fromRgbF(0.9294117647058824F, 0.9529411764705882F, 0.996078431372549F);

void addRatios()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1x") << 1.0;
    QTest::newRow("2x") << 2.0;
}

// What shows text of its own, with its rectangle in the row.
void collectTexts(const KLVView &view, const QPointF &origin, std::map<QString, QRectF> &texts)
{
    for (const auto &subview : view.subviews()) {
        if (subview->isHidden())
            continue;
        const QPointF corner = origin + subview->frame().topLeft();
        const bool isCheckBox = dynamic_cast<const KLVCheckBox *>(subview.get());
        if (!subview->accessibleText().isEmpty() && !isCheckBox)
            texts[subview->name()] = QRectF(corner, subview->frame().size());
        collectTexts(*subview, corner, texts);
    }
}

} // namespace
Q_DECLARE_METATYPE(Scheme)

// Rows as they come to the screen, against the stated numbers, in the usual
// font of 13 pixels and in a list 340 wide.
class VTRowPixelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_accordion.reset(); }

    void everyOtherRowHasTheAlternateColour_data() { addRatios(); }
    void everyOtherRowHasTheAlternateColour();
    void selectedRowHasItsRingAndTint_data() { addRatios(); }
    void selectedRowHasItsRingAndTint();
    void ringIsWholeWhereTheScrollBarIs_data();
    void ringIsWholeWhereTheScrollBarIs();
    void badgesStandAtTheRightMargin_data() { addRatios(); }
    void badgesStandAtTheRightMargin();
    void dotStandsAtTheLeftMargin_data() { addRatios(); }
    void dotStandsAtTheLeftMargin();
    void checkBoxIsTinted_data() { addRatios(); }
    void checkBoxIsTinted();
    void barsStandAtTheRightMargin_data() { addRatios(); }
    void barsStandAtTheRightMargin();
    void textCanBeRead_data();
    void textCanBeRead();
    void rowsAreMirrored_data();
    void rowsAreMirrored();
    void mirroredTextBeginsAtTheRight();
    void marksOfAttendeesStandAtTheReadingEdge_data();
    void marksOfAttendeesStandAtTheReadingEdge();
    void dotIsRoundInEveryFont();
    void longerCaptionsGetAWiderColumn();
    void nothingOverlapsInALargeFont_data();
    void nothingOverlapsInALargeFont();

private:
    QImage picture(qreal ratio) const;
    static QColor at(const QImage &image, double x, double y);
    void show(const KLVRepresentedObjects &objects) const { m_accordion->setRepresentedObjects(objects); }
    CalEventPtr fullEvent(const QColor &color) const;
    CalTaskPtr fullTask(const QColor &color) const;

    std::unique_ptr<RowFixture> m_fixture;
    std::unique_ptr<RowDelegate> m_delegate;
    std::unique_ptr<KLVAccordionView> m_accordion;
};

void VTRowPixelsTest::init()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    m_fixture = std::make_unique<RowFixture>();
    m_delegate = std::make_unique<RowDelegate>(*m_fixture);
    m_accordion = std::make_unique<KLVAccordionView>();
    m_accordion->resize(340, 20);
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    m_accordion->setFont(font);
    m_accordion->setPalette(KLVTheme::lightPalette());
    m_accordion->setAlternativeBackgroundColor(alternate);
    m_accordion->setDelegate(m_delegate.get());
}

QImage VTRowPixelsTest::picture(qreal ratio) const
{
    QImage image = crispImage(QSizeF(m_accordion->size()), ratio);
    image.fill(Qt::magenta);
    m_accordion->render(&image, {}, {}, {});
    return image;
}

QColor VTRowPixelsTest::at(const QImage &image, double x, double y)
{
    const qreal ratio = image.devicePixelRatio();
    return image.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
}

CalEventPtr VTRowPixelsTest::fullEvent(const QColor &color) const
{
    const auto event
        = RowFixture::event(u"Design review"_s, ::at(20, 11), ::at(20, 12, 30), RowFixture::calendar(u"Work"_s, color));
    event->setLocation(u"Studio 2, Harbour house"_s);
    event->setUrl(QUrl(u"https://meet.example.org/review"_s));
    event->setNotes(u"Bring the printed boards. We decide on the row layout and the date bar."_s);
    event->setAttendees(QList<CalAttendee> {
        RowFixture::attendee(u"Ada Moreau"_s, u"mailto:ada@example.org"_s, CalAttendeeStatusAccepted),
        RowFixture::attendee(u"Jun Sato"_s, u"urn:jun"_s, CalAttendeeStatusNeedsAction) });
    return event;
}

CalTaskPtr VTRowPixelsTest::fullTask(const QColor &color) const
{
    const auto task = RowFixture::task(u"Send the invoice to Brandt"_s, RowFixture::calendar(u"Work"_s, color));
    task->setDueDate(::at(19, 18));
    task->setPriority(1);
    task->setUrl(QUrl(u"https://example.org/invoice"_s));
    task->setNotes(u"With the new address."_s);
    return task;
}

void VTRowPixelsTest::everyOtherRowHasTheAlternateColour()
{
    QFETCH(qreal, ratio);
    show({ RowFixture::event(u"One"_s, ::at(20, 9), ::at(20, 10), m_fixture->home),
        RowFixture::event(u"Two"_s, ::at(20, 9), ::at(20, 10), m_fixture->home),
        RowFixture::event(u"Three"_s, ::at(20, 9), ::at(20, 10), m_fixture->home) });

    const QImage image = picture(ratio);

    for (const double x : { 0.0, 150.0, 339.5 }) {
        QCOMPARE(at(image, x, 0), alternate.toRgb());
        QCOMPARE(at(image, x, 45.5), alternate.toRgb());
        QCOMPARE(at(image, x, 46), QColor(Qt::white));
        QCOMPARE(at(image, x, 91.5), QColor(Qt::white));
        QCOMPARE(at(image, x, 92), alternate.toRgb());
    }
    QCOMPARE(image.height(), static_cast<int>(138 * ratio));
}

void VTRowPixelsTest::selectedRowHasItsRingAndTint()
{
    QFETCH(qreal, ratio);
    const auto event = RowFixture::event(u"One"_s, ::at(20, 9), ::at(20, 10), m_fixture->work);
    show({ event });
    m_accordion->setSelectedObject(event);

    const QImage image = picture(ratio);

    const QColor tint = KLVTheme::blended(red, 0.15, Qt::white);
    QVERIFY(isNear(at(image, 170, 2), red));
    QVERIFY(isNear(at(image, 2, 23), red));
    QVERIFY(isNear(at(image, 337.5, 23), red));
    QVERIFY(isNear(at(image, 170, 43.5), red));
    QVERIFY(isNear(at(image, 170, 4.5), tint));
    QVERIFY(isNear(at(image, 335, 23), tint));
    QCOMPARE(at(image, 0, 0), QColor(Qt::white));
    QCOMPARE(at(image, 339.5, 45.5), QColor(Qt::white));
}

void VTRowPixelsTest::ringIsWholeWhereTheScrollBarIs_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void VTRowPixelsTest::ringIsWholeWhereTheScrollBarIs()
{
    QFETCH(Qt::LayoutDirection, direction);
    KLVAccordionView *const accordion = m_accordion.get();
    KLVAccordionScrollArea area(m_accordion.release()); // a child of the area from here on
    area.setLayoutDirection(direction);
    area.resize(340, 100);
    area.show();
    KLVRepresentedObjects events;
    for (const char *title : { "One", "Two", "Three", "Four" })
        events.append(RowFixture::event(QLatin1String(title), ::at(20, 9), ::at(20, 10), m_fixture->work));
    accordion->setRepresentedObjects(events);
    accordion->setSelectedObject(events.at(0));
    QCoreApplication::processEvents();

    const QImage image = area.grab().toImage();

    const auto mirrored = [&](int x) { return direction == Qt::RightToLeft ? 339 - x : x; };
    bool hasHandle = false;
    for (int x = 300; x < 326; ++x)
        QVERIFY(isNear(image.pixelColor(mirrored(x), 2), red));
    for (int x = 326; x < 337; ++x) {
        QVERIFY(x > 328 || isNear(image.pixelColor(mirrored(x), 2), red));
        hasHandle = hasHandle || !isNear(image.pixelColor(mirrored(x), 20), KLVTheme::blended(red, 0.15, Qt::white));
    }
    for (int y = 12; y < 34; ++y)
        QVERIFY(isNear(image.pixelColor(mirrored(338), y), red));
    QVERIFY(hasHandle);
}

// 46 x 16 at y 7, 4 apart, their right edge 12 from the row's.
void VTRowPixelsTest::badgesStandAtTheRightMargin()
{
    QFETCH(qreal, ratio);
    show({ RowFixture::event(u"One"_s, ::at(20, 9), ::at(20, 10), m_fixture->work) });

    const QImage image = picture(ratio);

    for (const double left : { 232.0, 282.0 }) {
        QVERIFY(isNear(at(image, left + 8, 7), red));
        QVERIFY(isNear(at(image, left + 8, 22.5), red));
        QVERIFY(isNear(at(image, left + 0.5, 15), red, 40)); // the end of a half circle
        QVERIFY(isNear(at(image, left + 45, 15), red, 40));
        QCOMPARE(at(image, left + 8, 6.5), alternate.toRgb());
        QCOMPARE(at(image, left + 8, 23), alternate.toRgb());
        QCOMPARE(at(image, left, 7), alternate.toRgb()); // beyond the round end
    }
    QCOMPARE(at(image, 280, 15), alternate.toRgb());
    QCOMPARE(at(image, 328.5, 15), alternate.toRgb());
}

void VTRowPixelsTest::dotStandsAtTheLeftMargin()
{
    QFETCH(qreal, ratio);
    show({ RowFixture::event(u"One"_s, ::at(20, 9), ::at(20, 10), m_fixture->work) });

    const QImage image = picture(ratio);

    QVERIFY(isNear(at(image, 17, 15), red));
    QVERIFY(isNear(at(image, 17, 10.5), red, 40));
    QVERIFY(isNear(at(image, 21, 15), red, 40));
    QCOMPARE(at(image, 17, 9), alternate.toRgb());
    QCOMPARE(at(image, 11, 15), alternate.toRgb());
    QCOMPARE(at(image, 12, 10), alternate.toRgb());
}

// 14 x 14 at (12, 5): 0.4 of the picture and 0.6 of the calendar's colour, a tick inside when done.
void VTRowPixelsTest::checkBoxIsTinted()
{
    QFETCH(qreal, ratio);
    const auto task = RowFixture::task(u"One"_s, m_fixture->work);
    m_accordion->setAlternativeBackgroundColor({});
    show({ task });
    const QImage open = picture(ratio);
    task->setIsCompleted(true);
    show({ task });
    const QImage done = picture(ratio);

    QImage box = KLVColoredButtonCell::image(QSizeF(14, 14), ratio);
    const QImage tinted = KLVColoredButtonCell::tintImage_tintColor(box, red);
    QImage expected(tinted.size(), QImage::Format_RGB32);
    expected.setDevicePixelRatio(ratio);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(QPointF(0, 0), tinted);
    bool hasTick = false;
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const QPoint place(x + static_cast<int>(12 * ratio), y + static_cast<int>(5 * ratio));
            QVERIFY(isNear(open.pixelColor(place), expected.pixelColor(x, y)));
            hasTick = hasTick || !isNear(done.pixelColor(place), expected.pixelColor(x, y));
        }
    }
    QVERIFY(hasTick);
    QCOMPARE(at(open, 11.5, 12), QColor(Qt::white));
    QCOMPARE(at(open, 26, 12), QColor(Qt::white));
}

// 16 x 12 at (312, 6): three bars, all full for a high priority.
void VTRowPixelsTest::barsStandAtTheRightMargin()
{
    QFETCH(qreal, ratio);
    const auto task = RowFixture::task(u"One"_s, m_fixture->work);
    task->setPriority(1);
    m_accordion->setAlternativeBackgroundColor({});
    show({ task });

    const QImage image = picture(ratio);

    QRect inked;
    for (int y = 0; y < static_cast<int>(24 * ratio); ++y) {
        for (int x = static_cast<int>(300 * ratio); x < image.width(); ++x) {
            if (!isNear(image.pixelColor(x, y), Qt::white))
                inked |= QRect(x, y, 1, 1);
        }
    }
    QCOMPARE(inked.left(), static_cast<int>(312 * ratio));
    QCOMPARE(inked.right() + 1, static_cast<int>(328 * ratio));
    QVERIFY(inked.top() >= static_cast<int>(6 * ratio) && inked.bottom() < static_cast<int>(18 * ratio));
    QVERIFY(inked.height() >= 9 * ratio);
}

void VTRowPixelsTest::textCanBeRead_data()
{
    QTest::addColumn<Scheme>("scheme");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("isSelected");

    const std::map<QByteArray, Scheme> schemes { { "light", Scheme::Light }, { "dark", Scheme::Dark },
        { "high contrast, light", Scheme::HighContrastLight }, { "high contrast, dark", Scheme::HighContrastDark } };
    for (const auto &[name, scheme] : schemes) {
        for (const QColor &color : { red, yellow, QColor(0x2e, 0x9e, 0x5b), QColor(0x20, 0x20, 0x60) }) {
            for (const bool isSelected : { false, true })
                QTest::addRow("%s, %s, %s", name.constData(), qPrintable(color.name()), isSelected ? "selected" : "not")
                    << scheme << color << isSelected;
        }
    }
}

// Badges 4 : 1, every other text 4.5 : 1; all of it 7 : 1 for people who asked for high contrast.
void VTRowPixelsTest::textCanBeRead()
{
    constexpr qreal ratio = 4;
    QFETCH(Scheme, scheme);
    QFETCH(QColor, color);
    QFETCH(bool, isSelected);
    m_accordion->setPalette(paletteOf(scheme));

    for (const KeyValueObjectPtr &object :
        KLVRepresentedObjects { fullEvent(color), fullTask(color), RowFixture::task(u"Plain"_s, m_fixture->home) }) {
        show({ object });
        m_accordion->setSelectedObjects(isSelected ? KLVRepresentedObjects { object } : KLVRepresentedObjects {});
        const QImage image = picture(ratio);
        std::map<QString, QRectF> texts;
        collectTexts(*m_accordion->accordionViewItems().first()->view(), {}, texts);
        QVERIFY(!texts.empty());
        for (const auto &[name, frame] : texts) {
            const QRectF inner = frame.intersected(QRectF(30, 0, 292, m_accordion->height()));
            const QRect pixels((inner.topLeft() * ratio).toPoint(),
                QSize(qRound(inner.width() * ratio), qRound(inner.height() * ratio)));
            const bool isBadge = name.endsWith(u"Badge"_s);
            // The round ends of a badge are not what its text stands on.
            const QImage part = image.copy(isBadge ? pixels.adjusted(32, 8, -32, -8) : pixels);
            const double wanted = wantedContrast(scheme, isBadge ? 4.0 : 4.5);
            const double measured = measuredContrast(part);
            QVERIFY2(measured >= wanted, qPrintable(u"%1: %2"_s.arg(name).arg(measured)));
        }
    }
}

void VTRowPixelsTest::rowsAreMirrored_data()
{
    QTest::addColumn<bool>("isEvent");
    QTest::newRow("event") << true;
    QTest::newRow("to-do") << false;
}

void VTRowPixelsTest::rowsAreMirrored()
{
    QFETCH(bool, isEvent);
    const KeyValueObjectPtr object = isEvent ? KeyValueObjectPtr(fullEvent(red)) : KeyValueObjectPtr(fullTask(red));
    show({ object });
    std::map<QString, QRectF> frames;
    for (const auto &view : m_accordion->accordionViewItems().first()->view()->subviews())
        frames[view->name()] = view->frame();

    m_accordion->setLayoutDirection(Qt::RightToLeft);
    show({ object });

    for (const auto &view : m_accordion->accordionViewItems().first()->view()->subviews()) {
        const QRectF before = frames.at(view->name());
        QCOMPARE(view->frame().left(), 340 - before.right());
        QCOMPARE(view->frame().size(), before.size());
        QVERIFY(view->isRightToLeft());
    }
}

void VTRowPixelsTest::mirroredTextBeginsAtTheRight()
{
    m_accordion->setLayoutDirection(Qt::RightToLeft);
    show({ RowFixture::event(u"Tea"_s, ::at(20, 9), ::at(20, 10), m_fixture->work) });

    const QImage image = picture(1);

    const auto isInked = [&](int left, int right) {
        for (int x = left; x < right; ++x) {
            for (int y = 7; y < 23; ++y) {
                if (!isNear(image.pixelColor(x, y), alternate, 30))
                    return true;
            }
        }
        return false;
    };
    QVERIFY(isInked(290, 310)); // the title's last letters, right beside the dot
    QVERIFY(isInked(318, 328)); // the dot
    QVERIFY(isInked(12, 58)); // a badge
    QVERIFY(!isInked(112, 250));
}

void VTRowPixelsTest::marksOfAttendeesStandAtTheReadingEdge_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

// One under the other: the marks differ in width, the names begin where they end.
void VTRowPixelsTest::marksOfAttendeesStandAtTheReadingEdge()
{
    QFETCH(Qt::LayoutDirection, direction);
    m_accordion->setLayoutDirection(direction);
    const CalEventPtr event = fullEvent(red);
    event->setAttendees(
        QList<CalAttendee> { RowFixture::attendee(u"..."_s, u"mailto:a@example.org"_s, CalAttendeeStatusDeclined) });
    show({ event });
    m_accordion->setSelectedObject(event);

    const QImage image = picture(1);

    const KLVView &row = *m_accordion->accordionViewItems().first()->view();
    const auto &item = dynamic_cast<const VTCalEventController &>(*m_accordion->accordionViewItems().first());
    const QRectF frame = row.frameOfDescendant(*item.attendeesMatrix()->cellAtRow(0));
    const QColor ground = image.pixelColor(170, qRound(frame.bottom()) + 2);
    // Dots lie on the base line; what reaches above them is the mark.
    QRect mark;
    for (int y = qRound(frame.top()); y < qRound(frame.center().y()); ++y) {
        for (int x = qRound(frame.left()); x < qRound(frame.right()); ++x) {
            if (!isNear(image.pixelColor(x, y), ground, 60))
                mark |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(!mark.isEmpty());
    if (direction == Qt::RightToLeft)
        QVERIFY(frame.right() - mark.right() <= 4);
    else
        QVERIFY(mark.left() - frame.left() <= 4);
}

void VTRowPixelsTest::dotIsRoundInEveryFont()
{
    QFont font(u"Inter"_s);
    for (const int pixelSize : { 9, 13, 20, 26 }) {
        font.setPixelSize(pixelSize);
        m_accordion->setFont(font);
        show({ fullEvent(red) });

        const auto &row = dynamic_cast<const VTCalEventController &>(*m_accordion->accordionViewItems().first());

        QCOMPARE(row.calendarDot()->frame().height(), row.calendarDot()->frame().width());
    }
}

void VTRowPixelsTest::longerCaptionsGetAWiderColumn()
{
    class LongCaptions final : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(
            const char * /*context*/, const char *source, const char * /*disambiguation*/, int /*n*/) const override
        {
            return qstrcmp(source, "attendees") == 0 ? u"all the attendees"_s : QString();
        }
    };
    LongCaptions translator;
    QCoreApplication::installTranslator(&translator);

    show({ fullEvent(red), fullTask(red) });
    const auto &items = m_accordion->accordionViewItems();
    const auto &event = dynamic_cast<const VTCalEventController &>(*items.first());
    const auto &task = dynamic_cast<const VTCalTaskController &>(*items.last());
    QCoreApplication::removeTranslator(&translator);

    const KLVTextField &caption = *event.attendeesLabel();
    QVERIFY(caption.frame().width() >= QFontMetricsF(caption.font()).horizontalAdvance(u"all the attendees"_s));
    QCOMPARE(event.attendeesMatrix()->frame().left(), caption.frame().right() + 10);
    QCOMPARE(event.attendeesMatrix()->frame().right(), 328.0);
    QCOMPARE(task.notesField()->frame().left(), event.notesField()->frame().left());
}

void VTRowPixelsTest::nothingOverlapsInALargeFont_data()
{
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("width");
    QTest::newRow("usual, smallest window") << 13 << 280;
    QTest::newRow("150 %") << 20 << 420;
    QTest::newRow("200 %, smallest window") << 26 << 560;
    QTest::newRow("usual, wide") << 13 << 600;
}

// What a selected row shows keeps to its own place, whatever the font and the width.
void VTRowPixelsTest::nothingOverlapsInALargeFont()
{
    QFETCH(int, pixelSize);
    QFETCH(int, width);
    QFont font(u"Inter"_s);
    font.setPixelSize(pixelSize);
    m_accordion->setFont(font);
    m_accordion->resize(width, 20);

    for (const KeyValueObjectPtr &object : KLVRepresentedObjects { fullEvent(red), fullTask(red) }) {
        show({ object });
        m_accordion->setSelectedObject(object);
        const KLVView *const row = m_accordion->accordionViewItems().first()->view();
        std::vector<const KLVView *> shown;
        for (const auto &view : row->subviews()) {
            if (!view->isHidden())
                shown.push_back(view.get());
        }
        const auto place = [&](const KLVView &view) {
            QRectF frame = view.frame();
            // Text in a wrapped field ends 40 points before its frame does.
            if (view.name() == u"titleField"_s || view.name() == u"notesField"_s)
                frame.setWidth(frame.width() - 40);
            return frame;
        };
        for (const KLVView *one : shown) {
            QVERIFY2(place(*one).left() >= 0 && place(*one).right() <= width
                    && one->frame().bottom() <= row->frame().height(),
                qPrintable(one->name()));
            for (const KLVView *other : shown) {
                const QRectF both = place(*one).intersected(place(*other));
                QVERIFY2(one == other || both.width() <= 0.5 || both.height() <= 0.5,
                    qPrintable(one->name() + u" and "_s + other->name()));
            }
        }
    }
}

VANTLE_TEST(VTRowPixelsTest)
#include "VTRowPixelsTest.moc"
