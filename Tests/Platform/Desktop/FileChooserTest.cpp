// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <FileChooser.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

class FileChooserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void chosenFileIsTheAnswer();
    void nameWithOddCharactersIsAnAddress();
    void givingUpIsNoAnswer();
    void onlyOneExistingFileCanBeChosen();
    void fileThatIsNotThereIsNotAccepted();
    void itKeepsInputFromTheWholeApplication();

private:
    std::optional<QUrl> choose(const std::function<void(QFileDialog &)> &whileShown)
    {
        m_shown = 0;
        QTimer::singleShot(0, qApp, [&] {
            auto *const dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            ++m_shown;
            dialog->setDirectory(m_folder.path());
            whileShown(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
        return SystemFileChooser().chooseFile(nullptr);
    }
    // As a person types a name and confirms it.
    static void type(QFileDialog &dialog, const QString &name)
    {
        auto *const field = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
        field->setText(name);
        QMetaObject::invokeMethod(&dialog, "accept");
    }

    QTemporaryDir m_folder;
    int m_shown = 0;
};

void FileChooserTest::initTestCase()
{
    // Its own dialog: there is no desktop here to bring one.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    for (const QString &name : { u"plan.pdf"_s, u"Über & über 100%.pdf"_s }) {
        QFile file(m_folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QDir(m_folder.path()).mkdir(u"folder"_s));
}

void FileChooserTest::chosenFileIsTheAnswer()
{
    const auto chosen = choose([](QFileDialog &dialog) { type(dialog, u"plan.pdf"_s); });

    QCOMPARE(m_shown, 1);
    QCOMPARE(chosen, QUrl::fromLocalFile(m_folder.filePath(u"plan.pdf"_s)));
}

void FileChooserTest::nameWithOddCharactersIsAnAddress()
{
    const auto chosen = choose([](QFileDialog &dialog) { type(dialog, u"Über & über 100%.pdf"_s); });

    QCOMPARE(chosen.value_or(QUrl()).toLocalFile(), m_folder.filePath(u"Über & über 100%.pdf"_s));
}

void FileChooserTest::givingUpIsNoAnswer()
{
    const auto chosen = choose([](QFileDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });

    QCOMPARE(m_shown, 1);
    QVERIFY(!chosen.has_value());
}

void FileChooserTest::onlyOneExistingFileCanBeChosen()
{
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptSave;

    choose([&](const QFileDialog &dialog) {
        mode = dialog.fileMode();
        acceptMode = dialog.acceptMode();
    });

    QCOMPARE(mode, QFileDialog::ExistingFile);
    QCOMPARE(acceptMode, QFileDialog::AcceptOpen);
}

void FileChooserTest::fileThatIsNotThereIsNotAccepted()
{
    bool wasRefused = false;

    const auto chosen = choose([&](QFileDialog &dialog) {
        // What the dialog says of it is a message of its own.
        QTimer::singleShot(0, qApp, [&] {
            QWidget *const message = QApplication::activeModalWidget();
            wasRefused = message && message != &dialog;
            if (wasRefused)
                message->close();
        });
        type(dialog, u"no such file"_s);
    });

    QVERIFY(wasRefused);
    QVERIFY(!chosen.has_value());
}

void FileChooserTest::itKeepsInputFromTheWholeApplication()
{
    Qt::WindowModality modality = Qt::NonModal;

    choose([&](const QFileDialog &dialog) { modality = dialog.windowModality(); });

    QCOMPARE(modality, Qt::ApplicationModal);
}

VANTLE_TEST(FileChooserTest)
#include "FileChooserTest.moc"
