// SPDX-License-Identifier: MIT
#include "RowFixture.h"

#include <KLVDrawings.h>
#include <KLVTheme.h>
#include <VTCalEventController.h>
#include <VTCalTaskController.h>

using namespace Qt::StringLiterals;

namespace
{

std::vector<std::unique_ptr<CalendarStoreBackend>> backends(std::unique_ptr<RecordingTaskBackend> backend)
{
    std::vector<std::unique_ptr<CalendarStoreBackend>> list;
    list.push_back(std::move(backend));
    return list;
}

} // namespace

RowFixture::RowFixture()
    : RowFixture(std::make_unique<RecordingTaskBackend>())
{
}

RowFixture::RowFixture(std::unique_ptr<RecordingTaskBackend> taskBackend)
    : backend(taskBackend.get())
    , store(backends(std::move(taskBackend)))
    , clock(at(20, 10))
    , shownDate(at(20, 10))
    , home(calendar(u"Home"_s, QColor(0x2f, 0x7d, 0xe1)))
    , work(calendar(u"Work"_s, QColor(0xd6, 0x45, 0x5d)))
{
    backend->calendarList = { home, work };
}

CalCalendarPtr RowFixture::calendar(const QString &title, const QColor &color)
{
    return std::make_shared<CalCalendar>(CalCalendar::Values { title.toLower(), title, color });
}

CalEventPtr RowFixture::event(
    const QString &title, const QDateTime &start, const QDateTime &end, const CalCalendarPtr &calendar)
{
    auto event = std::make_shared<CalEvent>();
    event->setUid(u"event "_s + title);
    event->setTitle(title);
    event->setStartDate(start);
    event->setEndDate(end);
    event->setCalendar(calendar);
    return event;
}

CalTaskPtr RowFixture::task(const QString &title, const CalCalendarPtr &calendar)
{
    auto task = std::make_shared<CalTask>();
    task->setUid(u"task "_s + title);
    task->setTitle(title);
    task->setCalendar(calendar);
    CalItemOrigin origin;
    origin.plainUid = task->uid();
    task->setOrigin(origin);
    return task;
}

QDateTime RowFixture::at(int day, int hour, int minute)
{
    return { QDate(2026, 11, day), QTime(hour, minute) };
}

CalAttendee RowFixture::attendee(const QString &name, const QString &address, const QString &status)
{
    return { name, QUrl(address), status };
}

KLVAccordionViewItemPtr RowDelegate::accordionView_itemForRepresentedObject(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr &object)
{
    if (dynamic_cast<const CalEvent *>(object.get()))
        return std::make_shared<VTCalEventController>(m_fixture.environment());
    return std::make_shared<VTCalTaskController>(m_fixture.environment());
}

bool RowDelegate::accordionView_mouseDown_forRepresentedObject(
    KLVAccordionView *view, const KLVMouseEvent &event, const KeyValueObjectPtr &object)
{
    presses.append({ object, event });
    if (selectsOnPress && object) {
        view->setSelectedObject(object);
        view->setFocus();
    }
    return true;
}

void RowDelegate::accordionView_drawSelectedBackgroundForItem_frame(
    KLVAccordionView *view, const KeyValueObjectPtr & /*object*/, const QRectF &frame)
{
    const auto *item = dynamic_cast<const CalCalendarItem *>(view->selectedObjects().first().get());
    KLVDrawings::drawSelectedBackground(*view->graphicsContext(), frame, item->calendar()->color());
}

void RowDelegate::accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView *view, const QRectF &frame)
{
    KLVDrawings::drawPlaceholder(*view->graphicsContext(), KLVTheme(view->palette()), placeholder, frame, view->font());
}
