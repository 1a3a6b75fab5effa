// SPDX-License-Identifier: MIT
#include "VTFeedbackWindow.h"

#include "VTSheetForm.h"

#include <DesktopAlerts.h>
#include <FileChooser.h>
#include <KLVMetrics.h>
#include <KLVReadingDirection.h>
#include <Workspace.h>

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <QUrlQuery>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal statedWidth = 520;
constexpr qreal sideMargin = 18;
constexpr qreal endMargin = 16;
constexpr qreal rowGap = 8;
constexpr qreal gapBetweenButtons = 8;
constexpr qreal statedHeight = 480;
constexpr qreal leastHeightOfField = 48;

// Programs and servers take addresses up to about 8,000 bytes.
constexpr qsizetype mostBytesOfBody = 6000;

int pixels(qreal points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

} // namespace

VTFeedbackWindow::VTFeedbackWindow(
    const Services &services, const QString &details, const QString &crashReport, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_isCrash(!crashReport.isEmpty())
{
    setObjectName(m_isCrash ? u"crashReportWindow"_s : u"feedbackWindow"_s);
    setWindowTitle(m_isCrash ? QCoreApplication::translate("Vantle", "Crash Report")
                             : QCoreApplication::translate("Vantle", "Feedback"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(pixels(sideMargin), pixels(endMargin), pixels(sideMargin), pixels(endMargin));
    column->setSpacing(pixels(rowGap));

    auto *introduction = new QLabel(this);
    introduction->setObjectName(u"introduction"_s);
    introduction->setTextFormat(Qt::PlainText);
    introduction->setWordWrap(true);
    KLVFollowReadingDirection(*introduction);
    introduction->setText(m_isCrash ? QCoreApplication::translate("Vantle",
                              "Vantle ended unexpectedly the last time. You can tell the developers about it: "
                              "nothing is sent unless you send it.")
                                    : QCoreApplication::translate("Vantle",
                                        "Tell the developers what is missing or goes wrong, or what you like. "
                                        "Nothing is sent unless you send it."));
    column->addWidget(introduction);

    m_message = addField("message", QCoreApplication::translate("Vantle", "&Message"));
    m_message->setPlaceholderText(m_isCrash
            ? QCoreApplication::translate("Vantle", "What did you do when it happened?")
            : QCoreApplication::translate("Vantle", "What did you do, and what did you expect?"));
    m_details = addField("details", QCoreApplication::translate("Vantle", "&Details, which you can change"));
    m_details->setPlainText(m_isCrash ? QString(crashReport + u'\n' + details) : details);
    addButtons();
    setMinimumWidth(pixels(statedWidth));
    resize(QSize(pixels(statedWidth), pixels(statedHeight)).boundedTo(screen()->availableSize()));
    m_message->setFocus();

    auto *close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QDialog::reject);
}

QPlainTextEdit *VTFeedbackWindow::addField(const char *name, const QString &caption)
{
    auto *label = new QLabel(caption, this);
    VTSheetForm::setUpNote(*label);
    auto *field = new QPlainTextEdit(this);
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(QString(caption).remove(u'&'));
    field->setTabChangesFocus(true);
    field->setMinimumHeight(pixels(leastHeightOfField));
    label->setBuddy(field);
    auto *column = static_cast<QVBoxLayout *>(layout());
    column->addWidget(label);
    column->addWidget(field, m_message ? 2 : 1);
    return field;
}

void VTFeedbackWindow::addButtons()
{
    auto *row = new QHBoxLayout;
    row->setSpacing(pixels(gapBetweenButtons));
    const auto add = [this, row](const char *name, const QString &text, auto perform) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, perform);
        row->addWidget(button);
        return button;
    };
    add("copyReport", QCoreApplication::translate("Vantle", "&Copy"), &VTFeedbackWindow::copyReport);
    add("saveReport", QCoreApplication::translate("Vantle", "&Save…"), &VTFeedbackWindow::saveReport);
    row->addStretch(1);
    // Only ways that the program's own description names.
    add("openIssuePage", QCoreApplication::translate("Vantle", "&Issue Page…"), &VTFeedbackWindow::openIssuePage)
        ->setVisible(!m_services.metadata.issuePage.isEmpty());
    add("sendMail", QCoreApplication::translate("Vantle", "&E-Mail…"), &VTFeedbackWindow::sendMail)
        ->setVisible(!m_services.metadata.mailAddress.isEmpty());
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
}

QString VTFeedbackWindow::report() const
{
    const QString message = m_message->toPlainText().trimmed();
    const QString details = m_details->toPlainText().trimmed();
    return message.isEmpty() ? QString(details + u'\n') : QString(message + u"\n\n"_s + details + u'\n');
}

QString VTFeedbackWindow::fitting(const QString &text, qsizetype mostBytes)
{
    const auto size = [](const QString &part) { return QUrl::toPercentEncoding(part).size(); };
    if (size(text) <= mostBytes)
        return text;
    qsizetype fits = 0;
    qsizetype tooLong = text.size();
    while (tooLong - fits > 1) {
        const qsizetype middle = (fits + tooLong) / 2;
        (size(text.left(middle)) <= mostBytes ? fits : tooLong) = middle;
    }
    return text.left(fits > 0 && text.at(fits - 1).isHighSurrogate() ? fits - 1 : fits);
}

QString VTFeedbackWindow::subject() const
{
    const QString program = m_services.metadata.name + u' ' + m_services.metadata.version;
    return m_isCrash ? QCoreApplication::translate("Vantle", "Crash of %1").arg(program)
                     : QCoreApplication::translate("Vantle", "Feedback on %1").arg(program);
}

QString VTFeedbackWindow::bodyForAddress() const
{
    QString whole = report();
    const QString body = fitting(whole, mostBytesOfBody);
    if (body == whole)
        return whole;
    copyReport();
    return QCoreApplication::translate("Vantle", "[The whole report is in the clipboard: please paste it here.]")
        + u"\n\n"_s + body;
}

void VTFeedbackWindow::copyReport() const
{
    QApplication::clipboard()->setText(report());
}

void VTFeedbackWindow::saveReport()
{
    const auto chosen
        = m_services.fileChooser.chooseNewFile(this, m_isCrash ? u"vantle-crash.txt"_s : u"vantle-feedback.txt"_s);
    if (!chosen)
        return;
    QSaveFile file(chosen->toLocalFile());
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(report().toUtf8()) >= 0 && file.commit();
    if (!isWritten) {
        m_services.alerts.runModal(
            QCoreApplication::translate("Vantle", "The report could not be saved.") + u'\n' + file.errorString());
    }
}

void VTFeedbackWindow::sendMail()
{
    // Blanks must not become plus signs, which mail programs show as they are.
    const auto encoded = [](const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); };
    m_services.workspace.openURL(QUrl(u"mailto:%1?subject=%2&body=%3"_s.arg(
        m_services.metadata.mailAddress, encoded(subject()), encoded(bodyForAddress()))));
}

void VTFeedbackWindow::openIssuePage()
{
    QUrl page = m_services.metadata.issuePage;
    const auto encoded = [](const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); };
    QUrlQuery query(page);
    query.addQueryItem(u"title"_s, encoded(subject()));
    query.addQueryItem(u"body"_s, encoded(bodyForAddress()));
    page.setQuery(query);
    m_services.workspace.openURL(page);
}
