// SPDX-License-Identifier: MIT
#include "CalTask+VTHelpers.h"

#include "CalCalendarItem+VTHelper.h"
#include "CrispImage.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{

constexpr int barCount = 4;
constexpr float gapBetweenBars = 1.5F;
constexpr float fadedAlpha = 0.3F;

// Whether the bar at that place from the bottom is the first one that the priority does not reach.
bool isFirstFadedBar(int bar, int priority)
{
    constexpr int lastPriorities[barCount] = { 0, 9, 5, 1 };
    return priority == lastPriorities[bar];
}

} // namespace

bool VTPriorityIsNone(const CalTask &task)
{
    return task.priority() == 0;
}

bool VTDueDateIsSet(const CalTask &task)
{
    return task.dueDate().has_value();
}

bool VTDueDateIsNotSet(const CalTask &task)
{
    return !VTDueDateIsSet(task);
}

CalTaskPtr VTDeepCopy(const CalTask &task)
{
    auto copy = std::make_shared<CalTask>(task);
    copyAlarmsInto(*copy, task.alarms());
    return copy;
}

void VTUpdatePropertiesFromTask(CalTask &task, const CalTask &source)
{
    // A copy, for the source may be the to-do itself. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const CalAlarmList alarms = source.alarms();

    task.setCalendar(source.calendar());
    task.setTitle(source.title());
    task.setUrl(source.url());
    task.setNotes(source.notes());
    task.setCompletedDate(source.completedDate());
    task.setIsDueDateOnly(source.isDueDateOnly()); // part of what the due date says
    task.setDueDate(source.dueDate());
    task.setIsCompleted(source.isCompleted());
    task.setPriority(source.priority());
    task.removeAlarms(task.alarms());
    task.addAlarms(alarms);
}

bool VTIsUrlAvailable(const CalTask &task)
{
    return task.url() && task.url()->scheme().compare("mailitem"_L1, Qt::CaseInsensitive) != 0;
}

void VTToogleCompletedStatus(CalTask &task)
{
    task.setIsCompleted(!task.isCompleted());
}

QImage VTPriorityBars(const CalTask &task, const QSizeF &size, qreal devicePixelRatio)
{
    QImage image = crispImage(size, devicePixelRatio);
    if (image.isNull() || !task.calendar())
        return image;

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing); // edges between pixels stay where they are
    QColor color = task.calendar()->color();
    const auto barHeight = static_cast<float>(0.65 * size.height() / 3.0);
    double bottom = 0; // grows upwards from the image's bottom edge
    for (int bar = 0; bar < barCount; ++bar) {
        if (isFirstFadedBar(bar, task.priority()))
            color.setAlphaF(fadedAlpha);
        painter.fillRect(
            QRectF(0, size.height() - bottom - barHeight, size.width(), static_cast<qreal>(barHeight)), color);
        bottom += static_cast<double>(barHeight + gapBetweenBars);
    }
    return image;
}
