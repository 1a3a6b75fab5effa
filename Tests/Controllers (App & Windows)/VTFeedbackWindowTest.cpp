// SPDX-License-Identifier: MIT
#include <RecordingAlerts.h>
#include <RecordingWorkspace.h>
#include <ScriptedFileChooser.h>
#include <TestRegistry.h>
#include <VTAboutWindow.h>
#include <VTFeedbackWindow.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace
{

struct FeedbackFixture {
    explicit FeedbackFixture(const QString &crashReport = {})
        : window({ metadata, workspace, fileChooser, alerts }, u"Qt: 6\n"_s, crashReport)
    {
        window.show();
    }

    void click(const char *name) const
    {
        auto *const button = window.findChild<QPushButton *>(QLatin1String(name));
        if (!button || !button->isVisible())
            qFatal("No button %s", name);
        button->click();
    }
    void write(const char *name, const QString &text) const
    {
        window.findChild<QPlainTextEdit *>(QLatin1String(name))->setPlainText(text);
    }

    ApplicationMetadata metadata { .componentId = u"org.example.X"_s,
        .name = u"X"_s,
        .summary = u"A <b>day</b>"_s,
        .developer = u"The developers"_s,
        .licence = u"MIT"_s,
        .homepage = QUrl(u"https://example.org"_s),
        .issuePage = QUrl(u"https://example.org/new?kind=1"_s),
        .mailAddress = u"x@example.org"_s,
        .version = u"1.2"_s };
    RecordingWorkspace workspace;
    ScriptedFileChooser fileChooser;
    RecordingAlerts alerts;
    VTFeedbackWindow window;
};

} // namespace

class VTFeedbackWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingHappensWithoutAClick();
    void mailIsPrefilled();
    void issuePageIsPrefilled();
    void everythingSentCanBeEdited();
    void copyIsTheReport();
    void reportIsSaved();
    void failedSavingIsTold();
    void longReportIsCutAndCopied();
    void cutKeepsWholeCharacters();
    void crashReportIsShownAsPlainText();
    void waysThatAreNotNamedAreNotOffered();
    void tabLeavesTheFields();
    void aboutNamesTheProgram();
};

void VTFeedbackWindowTest::nothingHappensWithoutAClick()
{
    const QString before = QApplication::clipboard()->text();
    FeedbackFixture fixture;
    fixture.write("message", u"It is good"_s);

    QTest::keyClick(&fixture.window, Qt::Key_Return);
    QTest::keyClick(&fixture.window, Qt::Key_Escape);

    QVERIFY(!fixture.window.isVisible());
    QVERIFY(fixture.workspace.openedUrls.isEmpty());
    QCOMPARE(fixture.fileChooser.questions, 0);
    QCOMPARE(QApplication::clipboard()->text(), before);
}

void VTFeedbackWindowTest::mailIsPrefilled()
{
    const FeedbackFixture fixture;
    fixture.write("message", u"a + b & c = d?\n100 % é"_s);

    fixture.click("sendMail");

    QCOMPARE(fixture.workspace.openedUrls.size(), 1);
    const QUrl url = fixture.workspace.openedUrls.first();
    QCOMPARE(url.scheme(), u"mailto"_s);
    QCOMPARE(url.path(), u"x@example.org"_s);
    const QUrlQuery query(url);
    QCOMPARE(query.queryItemValue(u"subject"_s, QUrl::FullyDecoded), u"Feedback on X 1.2"_s);
    QCOMPARE(query.queryItemValue(u"body"_s, QUrl::FullyDecoded), u"a + b & c = d?\n100 % é\n\nQt: 6\n"_s);
    QVERIFY(!url.toEncoded().contains('+'));
}

void VTFeedbackWindowTest::issuePageIsPrefilled()
{
    const FeedbackFixture fixture(u"Ended by signal 11\n"_s);
    fixture.write("message", u"a + b & c #1"_s);

    fixture.click("openIssuePage");

    QCOMPARE(fixture.workspace.openedUrls.size(), 1);
    const QUrl url = fixture.workspace.openedUrls.first();
    QCOMPARE(url.host(), u"example.org"_s);
    const QUrlQuery query(url);
    QCOMPARE(query.queryItemValue(u"kind"_s), u"1"_s);
    QCOMPARE(query.queryItemValue(u"title"_s, QUrl::FullyDecoded), u"Crash of X 1.2"_s);
    QCOMPARE(query.queryItemValue(u"body"_s, QUrl::FullyDecoded), u"a + b & c #1\n\nEnded by signal 11\n\nQt: 6\n"_s);
}

void VTFeedbackWindowTest::everythingSentCanBeEdited()
{
    const FeedbackFixture fixture;
    fixture.write("details", u"only this"_s);

    QCOMPARE(fixture.window.report(), u"only this\n"_s);
}

void VTFeedbackWindowTest::copyIsTheReport()
{
    const FeedbackFixture fixture;
    fixture.write("message", u"Hello"_s);

    fixture.click("copyReport");

    QCOMPARE(QApplication::clipboard()->text(), fixture.window.report());
}

void VTFeedbackWindowTest::reportIsSaved()
{
    const QTemporaryDir folder;
    FeedbackFixture fixture(u"Ended by signal 11\n"_s);
    fixture.fileChooser.answer = QUrl::fromLocalFile(folder.filePath(u"report.txt"_s));

    fixture.click("saveReport");

    QFile file(folder.filePath(u"report.txt"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), fixture.window.report());
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTFeedbackWindowTest::failedSavingIsTold()
{
    const QTemporaryDir folder;
    FeedbackFixture fixture;
    fixture.fileChooser.answer = QUrl::fromLocalFile(folder.filePath(u"none/report.txt"_s));

    fixture.click("saveReport");

    QCOMPARE(fixture.alerts.messages.size(), 1);
    QVERIFY(fixture.alerts.messages.first().startsWith(u"The report could not be saved.\n"_s));
}

void VTFeedbackWindowTest::longReportIsCutAndCopied()
{
    const FeedbackFixture fixture(u"frame é\n"_s.repeated(3000));

    fixture.click("sendMail");

    const QUrl url = fixture.workspace.openedUrls.value(0);
    QVERIFY(url.toEncoded().size() < 8000);
    const QString body = QUrlQuery(url).queryItemValue(u"body"_s, QUrl::FullyDecoded);
    QVERIFY(body.startsWith(u"[The whole report is in the clipboard"_s));
    QCOMPARE(QApplication::clipboard()->text(), fixture.window.report());
}

void VTFeedbackWindowTest::cutKeepsWholeCharacters()
{
    const QString face = u"😀"_s; // twelve bytes in an address

    QCOMPARE(VTFeedbackWindow::fitting(face + face, 24), QString(face + face));
    QCOMPARE(VTFeedbackWindow::fitting(face + face, 23), face);
    QCOMPARE(VTFeedbackWindow::fitting(face, 11), QString());
    QCOMPARE(VTFeedbackWindow::fitting(u"abc"_s, 2), u"ab"_s);
}

void VTFeedbackWindowTest::crashReportIsShownAsPlainText()
{
    const FeedbackFixture fixture(u"<b>frame</b>\n"_s);

    QVERIFY(fixture.window.report().contains(u"<b>frame</b>"_s));
    QVERIFY(fixture.window.findChild<QLabel *>(u"introduction"_s)->text().contains(u"unexpectedly"_s));
    for (const QLabel *label : fixture.window.findChildren<QLabel *>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
}

void VTFeedbackWindowTest::waysThatAreNotNamedAreNotOffered()
{
    RecordingWorkspace workspace;
    ScriptedFileChooser fileChooser;
    RecordingAlerts alerts;
    const ApplicationMetadata metadata;
    VTFeedbackWindow window({ metadata, workspace, fileChooser, alerts }, {}, {});
    window.show();

    QVERIFY(!window.findChild<QPushButton *>(u"sendMail"_s)->isVisible());
    QVERIFY(!window.findChild<QPushButton *>(u"openIssuePage"_s)->isVisible());
    QVERIFY(window.findChild<QPushButton *>(u"copyReport"_s)->isVisible());
}

void VTFeedbackWindowTest::tabLeavesTheFields()
{
    FeedbackFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(&fixture.window));
    QCOMPARE(fixture.window.focusWidget()->objectName(), u"message"_s);

    QStringList names;
    for (int step = 0; step < 5; ++step) {
        QTest::keyClick(fixture.window.focusWidget(), Qt::Key_Tab);
        names << fixture.window.focusWidget()->objectName();
    }

    QCOMPARE(
        names, (QStringList { u"details"_s, u"copyReport"_s, u"saveReport"_s, u"openIssuePage"_s, u"sendMail"_s }));
}

void VTFeedbackWindowTest::aboutNamesTheProgram()
{
    FeedbackFixture fixture;
    VTAboutWindow about(fixture.metadata, fixture.workspace);
    about.show();

    const auto text = [&about](const char *name) { return about.findChild<QLabel *>(QLatin1String(name))->text(); };
    QCOMPARE(text("name"), u"X"_s);
    QCOMPARE(text("version"), u"Version 1.2"_s);
    QCOMPARE(text("summary"), u"A <b>day</b>"_s);
    QCOMPARE(text("licence"), u"Licence: MIT"_s);
    for (const QLabel *label : about.findChildren<QLabel *>())
        QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    about.findChild<QPushButton *>(u"homepage"_s)->click();
    QCOMPARE(fixture.workspace.openedUrls, QList<QUrl> { fixture.metadata.homepage });
    QTest::keyClick(&about, Qt::Key_Escape);
    QVERIFY(!about.isVisible());
}

VANTLE_TEST(VTFeedbackWindowTest)
#include "VTFeedbackWindowTest.moc"
