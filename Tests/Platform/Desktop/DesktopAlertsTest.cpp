// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <DesktopAlerts.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

class DesktopAlertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageIsShownAsItStands();
    void itWaitsUntilItWasRead_data();
    void itWaitsUntilItWasRead();
    void itStandsOverTheActiveWindow();
    void itKeepsInputFromTheWholeApplication();

private:
    // Shows an alert, and what to do with it while it is there.
    static int runWith(const QString &message, const std::function<void(QMessageBox &)> &whileShown)
    {
        int shown = 0;
        QTimer::singleShot(0, qApp, [&] {
            auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            ++shown;
            whileShown(*box);
            if (box->isVisible())
                box->close();
        });
        SystemAlerts().runModal(message);
        return shown;
    }
};

void DesktopAlertsTest::messageIsShownAsItStands()
{
    const QString message
        = u"“<b>Lunch</b> &amp; more” in the calendar “<img src=x>” was not saved.\nThe disk is full."_s;
    QString text;
    Qt::TextFormat format = Qt::AutoText;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QStringList buttons;

    const int shown = runWith(message, [&](const QMessageBox &box) {
        text = box.text();
        format = box.textFormat();
        icon = box.icon();
        for (const QAbstractButton *button : box.buttons())
            buttons.append(button->text());
    });

    QCOMPARE(shown, 1);
    QCOMPARE(text, message);
    QCOMPARE(format, Qt::PlainText);
    QCOMPARE(icon, QMessageBox::Warning);
    QCOMPARE(buttons.size(), 1);
}

void DesktopAlertsTest::itWaitsUntilItWasRead_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("escape") << Qt::Key_Escape;
}

void DesktopAlertsTest::itWaitsUntilItWasRead()
{
    QFETCH(const Qt::Key, key);
    bool wasClosedByKey = false;

    runWith(u"It was not saved."_s, [&](QMessageBox &box) {
        QTest::keyClick(&box, key);
        wasClosedByKey = !box.isVisible();
    });

    QVERIFY(wasClosedByKey);
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
}

void DesktopAlertsTest::itStandsOverTheActiveWindow()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QWidget *over = nullptr;

    runWith(u"It was not saved."_s, [&](const QMessageBox &box) { over = box.parentWidget(); });

    QCOMPARE(over, &window);
}

void DesktopAlertsTest::itKeepsInputFromTheWholeApplication()
{
    QPushButton other;
    other.show();
    bool wasPressed = false;
    connect(&other, &QPushButton::clicked, this, [&] { wasPressed = true; });
    Qt::WindowModality modality = Qt::NonModal;

    runWith(u"It was not saved."_s, [&](const QMessageBox &box) {
        modality = box.windowModality();
        QTest::mouseClick(other.windowHandle(), Qt::LeftButton);
    });

    QCOMPARE(modality, Qt::ApplicationModal);
    QVERIFY(!wasPressed);
}

VANTLE_TEST(DesktopAlertsTest)
#include "DesktopAlertsTest.moc"
