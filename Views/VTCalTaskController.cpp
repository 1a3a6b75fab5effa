// SPDX-License-Identifier: MIT
#include "VTCalTaskController.h"

#include "KLVAccordionAccessibility.h"
#include "KLVAccordionView.h"
#include "KLVButton.h"
#include "KLVCheckBox.h"
#include "KLVImageView.h"
#include "KLVText.h"
#include "KLVTextField.h"
#include "VTRowFonts.h"
#include "VTRowWords.h"
#include "VTTaskRowLayout.h"
#include "ui_VTCalTask.h"

#include <CalCalendarStore.h>
#include <CalTask+VTHelpers.h>
#include <Clock.h>

#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const VTRowTemplate &rowTemplate()
{
    static const VTRowTemplate read = [] {
        QWidget interface;
        Ui::VTCalTask().setupUi(&interface);
        return VTRowTemplate(interface);
    }();
    return read;
}

QString priorityText(int priority)
{
    // RFC 5545, section 3.8.1.9: 1 to 4 are high, 6 to 9 low.
    constexpr int medium = 5;
    if (priority == 0)
        return {};
    if (priority < medium)
        return QCoreApplication::translate("Vantle", "high priority");
    if (priority == medium)
        return QCoreApplication::translate("Vantle", "medium priority");
    return QCoreApplication::translate("Vantle", "low priority");
}

} // namespace

VTCalTaskController::VTCalTaskController(const VTRowEnvironment &environment)
    : VTCalCalendarItemController(environment)
{
}

VTCalTaskController::~VTCalTaskController()
{
    removeObserver_forKeyPath(this, u"representedObject"_s);
}

CalTask &VTCalTaskController::task() const
{
    return dynamic_cast<CalTask &>(*representedObject());
}

KLVAccordionViewItemPtr VTCalTaskController::newItem() const
{
    return std::make_shared<VTCalTaskController>(environment());
}

std::shared_ptr<KLVView> VTCalTaskController::loadView()
{
    auto row = std::make_shared<KLVView>(u"VTCalTask"_s);
    if (!dynamic_cast<const CalTask *>(representedObject().get()))
        return row;
    connectOutlets(*row);
    fillIn();
    awakeFromNib();
    followReadingDirection(*row);
    return row;
}

void VTCalTaskController::connectOutlets(KLVView &row)
{
    m_doneCheckBox = row.addSubview<KLVCheckBox>(u"doneCheckBox"_s);
    m_titleField = row.addSubview<KLVTextField>(u"titleField"_s);
    m_priorityView = row.addSubview<KLVImageView>(u"priorityView"_s);
    m_dueDateField = row.addSubview<KLVTextField>(u"dueDateField"_s);
    m_completedLabel = row.addSubview<KLVTextField>(u"completedLabel"_s);
    m_completedField = row.addSubview<KLVTextField>(u"completedField"_s);
    m_urlLabel = row.addSubview<KLVTextField>(u"urlLabel"_s);
    m_urlButton = row.addSubview<KLVButton>(u"urlButton"_s);
    m_notesLabel = row.addSubview<KLVTextField>(u"notesLabel"_s);
    m_notesField = row.addSubview<KLVTextField>(u"notesField"_s);
}

void VTCalTaskController::fillIn()
{
    const VTRowFonts fonts((KLVMetrics(personsFont())));
    setUpTitle(*m_titleField, fonts.taskTitle);
    m_dueDateField->setHidden(!task().dueDate());
    if (task().dueDate()) {
        const QDate today = environment().clock.now().date();
        m_dueDateField->setStringValue(VTRowWords::due(*task().dueDate(), task().isDueDateOnly(), today, QLocale()));
    }

    setUpCaption(*m_completedLabel, QT_TRANSLATE_NOOP("Vantle", "completed"));
    m_completedField->setFont(fonts.value);
    m_completedField->setHidden(true);
    if (task().completedDate())
        m_completedField->setStringValue(
            VTRowWords::dayAndTime(*task().completedDate(), environment().clock.now().date(), QLocale()));
    setUpCaption(*m_urlLabel, QT_TRANSLATE_NOOP("Vantle", "url"));
    setUpLink(*m_urlButton);
    setUpCaption(*m_notesLabel, QT_TRANSLATE_NOOP("Vantle", "notes"));
    setUpNotes(*m_notesField);

    m_doneCheckBox->setAccessibleText(m_titleField->stringValue().value_or(QString()));
    m_doneCheckBox->setAction([this] { VTToogleCompletedStatus(task()); });
    showCompletion();
}

// What looks different once the to-do is done: the tick, a dim title, and that it is overdue no more.
void VTCalTaskController::showCompletion()
{
    const VTRowFonts fonts((KLVMetrics(personsFont())));
    const bool isOverdue = !task().isCompleted() && task().dueDate()
        && VTRowWords::isOverdue(*task().dueDate(), task().isDueDateOnly(), environment().clock.now());
    m_doneCheckBox->cell().setIntegerValue(task().isCompleted() ? 1 : 0);
    m_titleField->setTextColor(task().isCompleted() ? KLVTextField::TextColor::Dim : KLVTextField::TextColor::Text);
    m_dueDateField->setFont(isOverdue ? fonts.overdue : fonts.due);
    m_dueDateField->setTextColor(isOverdue ? KLVTextField::TextColor::Overdue : KLVTextField::TextColor::Dim);
    if (accordionView())
        accordionView()->setNeedsDisplay(*this);
}

void VTCalTaskController::awakeFromNib()
{
    addObserver_forKeyPath_options_context(
        this, u"representedObject"_s, KeyValueOption::NewValue | KeyValueOption::OldValue);
    representedObject()->addObserver_forKeyPath_options_context(this, u"isCompleted"_s);

    const CalTaskPtr shown = std::dynamic_pointer_cast<CalTask>(representedObject());
    // The bars are made for the size that they are stated for; a larger font has them drawn larger.
    const QSizeF size = rowTemplate().size(u"priorityView"_s);
    const qreal scale = loadedFrames().value(u"priorityView"_s).width() / size.width();
    if (shown->calendar())
        m_priorityView->setImage(
            [shown, size, scale](qreal ratio) { return VTPriorityBars(*shown, size, ratio * scale); },
            QVariantList { tintColor(), shown->priority() });
    m_doneCheckBox->cell().setImageTintColor(tintColor());
    positionAndSizeFields();
}

void VTCalTaskController::observeValueForKeyPath_ofObject_change_context(
    const QString & /*keyPath*/, KeyValueObject *object, const KeyValueChange &change, void * /*context*/)
{
    if (object != static_cast<KeyValueObject *>(this)) {
        saveTask();
        showCompletion();
        if (accordionView())
            KLVAccordionAccessibility::checkedDidChange(*accordionView(), *this);
        return;
    }

    if (const auto oldTask = change.oldValue.value_or(QVariant()).value<KeyValueObjectPtr>())
        oldTask->removeObserver_forKeyPath(this, u"isCompleted"_s);
    if (const auto newTask = change.newValue.value_or(QVariant()).value<KeyValueObjectPtr>())
        newTask->addObserver_forKeyPath_options_context(this, u"isCompleted"_s, KeyValueOption::OldValue);
}

// A refusal is silent on purpose and nothing is tried again: the next refetch shows what is stored.
void VTCalTaskController::saveTask()
{
    StoreError error;
    environment().store.saveTask_error(std::dynamic_pointer_cast<CalTask>(representedObject()), &error);
}

// The frames of the interface file at this width and font, before the content moves them.
VTRowFrames VTCalTaskController::loadedFrames() const
{
    constexpr double titleGap = 8.0;
    constexpr double narrowing = 40.0;
    constexpr double titleTop = 4.0;

    const KLVMetrics metrics(personsFont());
    const VTRowFonts fonts(metrics);
    const double rowHeight = rowTemplate().height();
    VTRowFrames frames = rowTemplate().frames(rowWidth(), metrics);
    widenCaptions(frames);

    const double firstLine = titleTop + KLVText::lineHeight(fonts.taskTitle) / 2;
    for (const QString &name : { u"doneCheckBox"_s, u"priorityView"_s }) {
        QRectF &frame = frames[name];
        frame.setHeight(metrics.length(frame.height()));
        frame = VTRowGeometry::centred(frame, rowHeight, firstLine);
    }
    QRectF &title = frames[u"titleField"_s];
    const double columnWidth = frames.value(u"priorityView"_s).x() - titleGap - title.x();
    title.setWidth(columnWidth + narrowing);
    frames[u"dueDateField"_s].setWidth(columnWidth);
    frames[u"dueDateField"_s].setHeight(metrics.height(frames.value(u"dueDateField"_s).height(), fonts.due));

    frames[u"completedField"_s].setHeight(metrics.height(frames.value(u"completedField"_s).height(), fonts.value));
    frames[u"completedLabel"_s].setHeight(frames.value(u"completedField"_s).height());
    frames[u"urlButton"_s].setHeight(metrics.height(frames.value(u"urlButton"_s).height(), fonts.value));
    // The caption stands where its value's line does, whatever the size: the layout lifts it by 3.
    frames[u"urlLabel"_s].setHeight(frames.value(u"urlButton"_s).height() - 6.0);
    frames[u"notesLabel"_s].setHeight(
        std::max(frames.value(u"notesLabel"_s).height(), KLVText::lineHeight(fonts.value)));
    return frames;
}

void VTCalTaskController::positionAndSizeFields()
{
    const VTRowFrames frames = loadedFrames();
    m_titleField->setFrame(frames.value(u"titleField"_s));
    m_notesField->setFrame(frames.value(u"notesField"_s));

    VTTaskRowContent content;
    if (task().notes())
        content.notesHeight = snugVerticalFitForTextField(*m_notesField);
    content.hasUrl = VTIsUrlAvailable(task());
    content.hasCompletedDate = task().completedDate().has_value();
    if (task().title())
        content.titleHeight = snugVerticalFitForTextField(*m_titleField);
    content.hasDueDate = task().dueDate().has_value();

    const VTRowLayout layout = layOutTaskRow(frames, content);
    setSelectedHeight(layout.selectedHeight);
    setUnselectedHeight(layout.unselectedHeight);

    // The title area keeps its distance from the top, the details theirs from the bottom of the
    // selected row; from here on everything is pinned to the top.
    const auto place = [&](std::initializer_list<KLVView *> views, double height) {
        for (KLVView *view : views)
            view->setFrame(VTRowGeometry::flipped(layout.frames.value(view->name()), height));
    };
    place({ m_doneCheckBox, m_titleField, m_priorityView, m_dueDateField }, rowTemplate().height());
    place({ m_completedLabel, m_completedField, m_urlLabel, m_urlButton, m_notesLabel, m_notesField },
        static_cast<double>(layout.selectedHeight));

    if (content.hasCompletedDate)
        addDetail({ m_completedLabel, m_completedField });
    if (content.hasUrl)
        addDetail({ m_urlLabel, m_urlButton });
    if (content.notesHeight)
        addDetail({ m_notesLabel, m_notesField });
}

QString VTCalTaskController::accessibleText() const
{
    if (!m_titleField || !representedObject())
        return {};
    QStringList parts { m_titleField->stringValue().value_or(QString()),
        m_dueDateField->stringValue().value_or(QString()), priorityText(task().priority()) };
    if (task().calendar())
        parts.append(KLVText::singleLine(task().calendar()->title()));
    if (task().isCompleted())
        parts.append(QCoreApplication::translate("Vantle", "completed"));
    parts.removeAll(QString());
    return parts.join(u", "_s);
}
