// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <DesktopWorkspace.h>

#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class DesktopWorkspaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void webAndMailLinksOpenAtOnce_data();
    void webAndMailLinksOpenAtOnce();
    void everyOtherSchemeIsAskedForFirst_data();
    void everyOtherSchemeIsAskedForFirst();
    void refusedQuestionOpensNothing();
    void invalidLinkOpensNothing();
    void localProgramIsNeverStarted_data();
    void localProgramIsNeverStarted();
    void deceivingCharactersAreSpelledOut();
    void veryLongTargetIsCutInTheQuestion();
    void questionShowsTheTargetAsPlainText();

private:
    DesktopWorkspace workspace()
    {
        return { [this](const QString &target) {
                    m_questions.append(target);
                    return m_answer;
                },
            [this](const QUrl &url) {
                m_opened.append(url);
                return true;
            } };
    }

    QStringList m_questions;
    QList<QUrl> m_opened;
    bool m_answer = true;
};

void DesktopWorkspaceTest::init()
{
    m_questions.clear();
    m_opened.clear();
    m_answer = true;
}

void DesktopWorkspaceTest::webAndMailLinksOpenAtOnce_data()
{
    QTest::addColumn<QUrl>("url");

    QTest::newRow("http") << QUrl(u"http://example.org/a"_s);
    QTest::newRow("https") << QUrl(u"https://example.org/"_s);
    QTest::newRow("capital letters") << QUrl(u"HTTPS://example.org/"_s);
    QTest::newRow("mailto") << QUrl(u"mailto:ada@example.org"_s);
}

void DesktopWorkspaceTest::webAndMailLinksOpenAtOnce()
{
    QFETCH(const QUrl, url);

    workspace().openURL(url);

    QCOMPARE(m_opened, QList<QUrl> { url });
    QVERIFY(m_questions.isEmpty());
}

void DesktopWorkspaceTest::everyOtherSchemeIsAskedForFirst_data()
{
    QTest::addColumn<QUrl>("url");

    QTest::newRow("file") << QUrl(u"file:///etc/passwd"_s);
    QTest::newRow("javascript") << QUrl(u"javascript:alert(1)"_s);
    QTest::newRow("data") << QUrl(u"data:text/html,x"_s);
    QTest::newRow("custom") << QUrl(u"zoommtg://join?x=1"_s);
    QTest::newRow("network share") << QUrl(u"file://server/share/a.txt"_s);
}

void DesktopWorkspaceTest::everyOtherSchemeIsAskedForFirst()
{
    QFETCH(const QUrl, url);

    workspace().openURL(url);

    QCOMPARE(m_questions, QStringList { url.toString() });
    QCOMPARE(m_opened, QList<QUrl> { url });
}

void DesktopWorkspaceTest::refusedQuestionOpensNothing()
{
    m_answer = false;

    workspace().openURL(QUrl(u"zoommtg://join"_s));

    QVERIFY(m_opened.isEmpty());
}

void DesktopWorkspaceTest::invalidLinkOpensNothing()
{
    workspace().openURL(QUrl());

    QVERIFY(m_questions.isEmpty());
    QVERIFY(m_opened.isEmpty());
}

void DesktopWorkspaceTest::localProgramIsNeverStarted_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isExecutable");

    QTest::newRow("script") << u"run.sh"_s << true;
    QTest::newRow("desktop file") << u"evil.DESKTOP"_s << false;
}

void DesktopWorkspaceTest::localProgramIsNeverStarted()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isExecutable);
    const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    if (isExecutable)
        QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser));

    workspace().openURL(QUrl::fromLocalFile(file.fileName()));

    QCOMPARE(m_questions.size(), 1);
    QCOMPARE(m_opened, QList<QUrl> { QUrl::fromLocalFile(folder.path()) });
}

void DesktopWorkspaceTest::deceivingCharactersAreSpelledOut()
{
    const QUrl url = QUrl::fromEncoded("custom:a%0Ab%E2%80%AEgpj.exe");

    const QString target = readableTarget(url);

    QVERIFY(!target.contains(u'\n'));
    QVERIFY(!target.contains(QChar(0x202e)));
    QVERIFY(target.contains(u"%E2%80%AE"_s));
}

void DesktopWorkspaceTest::veryLongTargetIsCutInTheQuestion()
{
    const QUrl url(u"custom:"_s + QString(100'000, u'x'));

    QVERIFY(readableTarget(url).size() < 1000);
    QVERIFY(readableTarget(url).endsWith(u"…"_s));
}

void DesktopWorkspaceTest::questionShowsTheTargetAsPlainText()
{
    DesktopWorkspace workspace;
    bool wasSeen = false;
    QTimer::singleShot(0, this, [&wasSeen] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(box->text().contains(u"custom:"_s));
        const auto labels = box->findChildren<QLabel *>();
        for (const QLabel *label : labels)
            QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
        wasSeen = true;
        QTest::keyClick(box, Qt::Key_Escape);
    });

    workspace.openURL(QUrl(u"custom:<b>bold</b>"_s));

    QVERIFY(wasSeen);
}

VANTLE_TEST(DesktopWorkspaceTest)
#include "DesktopWorkspaceTest.moc"
