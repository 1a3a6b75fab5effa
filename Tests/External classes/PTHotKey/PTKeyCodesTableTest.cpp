// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <NamedKeyboardLayouts.h>
#include <PTKeyCodesTable.h>
#include <VirtualKeyCodes.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace
{

const QString shippedTable = u":/PTKeyCodes.plist"_s;

// Knows every text there is.
class ShoutingTranslator final : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char * /*disambiguation*/, int /*n*/) const override
    {
        return qstrcmp(context, "Vantle") == 0 ? QString::fromUtf8(text).toUpper() + u'!' : QString();
    }
};

bool write(const QString &path, const QByteArray &entries)
{
    QFile file(path);
    const QByteArray text = "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

class PTKeyCodesTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shippedTableIsOfTheNewStyle();
    void shippedTableNamesTheKey_data();
    void shippedTableNamesTheKey();
    void shippedTableListsTheWholeKeypad();
    void everyKeyIsNamedOrPrinted();
    void everyWordIsTranslated();
    void missingFileIsTriedAgain();
    void damagedFileCountsAsMissing();
    void tableIsReadOnce();
    void tableOfTheOldStyleStaysAsItIs();
};

void PTKeyCodesTableTest::shippedTableIsOfTheNewStyle()
{
    PTKeyCodesTable table(shippedTable);

    QCOMPARE(table.dictionary().value(u"version"_s), QVariant(1LL));
    QCOMPARE(table.dictionary().value(u"padKeyString"_s), QVariant(u"Pad"_s));
}

void PTKeyCodesTableTest::shippedTableNamesTheKey_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("36") << u"Return"_s;
    QTest::newRow("48") << u"Tab"_s;
    QTest::newRow("49") << u"Space"_s;
    QTest::newRow("51") << u"Backspace"_s;
    QTest::newRow("53") << u"Escape"_s;
    QTest::newRow("117") << u"Delete"_s;
    QTest::newRow("123") << u"Left"_s;
    QTest::newRow("124") << u"Right"_s;
    QTest::newRow("125") << u"Down"_s;
    QTest::newRow("126") << u"Up"_s;
    QTest::newRow("115") << u"Home"_s;
    QTest::newRow("119") << u"End"_s;
    QTest::newRow("116") << u"Page Up"_s;
    QTest::newRow("121") << u"Page Down"_s;
    const QList<int> functionKeys { 122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79,
        80, 90 };
    for (int i = 0; i < functionKeys.size(); ++i)
        QTest::newRow(QByteArray::number(functionKeys.at(i)).constData()) << u"F%1"_s.arg(i + 1);
}

void PTKeyCodesTableTest::shippedTableNamesTheKey()
{
    PTKeyCodesTable table(shippedTable);
    const QVariantMap names = table.dictionary().value(u"unmappedKeys"_s).toMap();

    QTEST(names.value(QString::fromLatin1(QTest::currentDataTag())).toString(), "name");
}

void PTKeyCodesTableTest::shippedTableListsTheWholeKeypad()
{
    PTKeyCodesTable table(shippedTable);
    const QVariantList padKeys = table.dictionary().value(u"padKeys"_s).toList();

    for (const int key : allVirtualKeys())
        QCOMPARE(padKeys.contains(QString::number(key)), isKeypadVirtualKey(key));
}

void PTKeyCodesTableTest::everyKeyIsNamedOrPrinted()
{
    PTKeyCodesTable table(shippedTable);
    const QVariantMap names = table.dictionary().value(u"unmappedKeys"_s).toMap();
    NamedKeyboardLayouts american({ .model = "pc105", .layout = "us", .variant = "" });
    NamedKeyboardLayouts japanese({ .model = "pc105", .layout = "jp", .variant = "" });
    const auto isPrinted = [](int key, KeyboardLayouts &layouts) {
        quint32 deadKeyState = 0;
        const QString text = layouts.currentLayout()->translate(key, layouts.keyboardType(), deadKeyState);
        return !text.trimmed().isEmpty();
    };

    // Either one or the other: a name in the table would hide what the layout prints.
    for (const int key : allVirtualKeys())
        QVERIFY2((isPrinted(key, american) || isPrinted(key, japanese)) != names.contains(QString::number(key)),
            QByteArray::number(key).constData());
}

void PTKeyCodesTableTest::everyWordIsTranslated()
{
    ShoutingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    PTKeyCodesTable table(shippedTable);
    const QVariantMap names = table.dictionary().value(u"unmappedKeys"_s).toMap();
    const QString padWord = table.dictionary().value(u"padKeyString"_s).toString();
    QCoreApplication::removeTranslator(&translator);

    static const QRegularExpression functionKey(u"^F[0-9]+$"_s);
    for (const QVariant &name : names)
        QVERIFY2(name.toString().endsWith(u'!') != functionKey.match(name.toString()).hasMatch(),
            qPrintable(name.toString()));
    QCOMPARE(names.value(u"36"_s).toString(), u"RETURN!"_s);
    QCOMPARE(padWord, u"PAD!"_s);
}

void PTKeyCodesTableTest::missingFileIsTriedAgain()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"table.plist"_s);
    PTKeyCodesTable table(path);
    QVERIFY(table.dictionary().isEmpty());

    QVERIFY(write(path, "<key>36</key><string>Return</string>"));

    QCOMPARE(table.dictionary().value(u"36"_s).toString(), u"Return"_s);
}

void PTKeyCodesTableTest::damagedFileCountsAsMissing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"table.plist"_s);
    QVERIFY(write(path, "<key>36</key><string>Ret"));

    QVERIFY(PTKeyCodesTable(path).dictionary().isEmpty());
}

void PTKeyCodesTableTest::tableIsReadOnce()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"table.plist"_s);
    QVERIFY(write(path, "<key>36</key><string>Return</string>"));
    PTKeyCodesTable table(path);
    table.dictionary();

    QVERIFY(write(path, "<key>36</key><string>Enter</string>"));

    QCOMPARE(table.dictionary().value(u"36"_s).toString(), u"Return"_s);
}

void PTKeyCodesTableTest::tableOfTheOldStyleStaysAsItIs()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"table.plist"_s);
    QVERIFY(write(path, "<key>36</key><string>Return</string>"));

    QCOMPARE(PTKeyCodesTable(path).dictionary().keys(), QStringList { u"36"_s });
}

VANTLE_TEST(PTKeyCodesTableTest)
#include "PTKeyCodesTableTest.moc"
