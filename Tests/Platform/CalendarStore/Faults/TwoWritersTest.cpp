// SPDX-License-Identifier: MIT
#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QDir>
#include <QProcess>
#include <QTest>

#include <ctime>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr int edits = 500; // by each of the two
const QStringList names { u"a"_s, u"b"_s, u"c"_s };

struct Span {
    qint64 from = 0;
    qint64 to = 0;

    bool overlaps(const Span &other) const { return from <= other.to && other.from <= to; }
};

// An edit that was acknowledged.
struct Edit {
    int number = 0;
    QString name; // of the item
    Span when;
};

// By the clock that the other program looks at.
qint64 nanoseconds()
{
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

std::vector<Edit> editsIn(const QByteArray &said)
{
    std::vector<Edit> found;
    for (const QByteArray &line : said.split('\n')) {
        const QByteArrayList words = line.split(' ');
        if (words.size() == 5)
            found.push_back({ words.at(1).toInt(), QFileInfo(QString::fromUtf8(words.at(2))).baseName(),
                { words.at(3).toLongLong(), words.at(4).toLongLong() } });
    }
    return found;
}

} // namespace

// Vantle and another program change the same items at the same time.
class TwoWritersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingThatWasAcknowledgedIsLost();
};

void TwoWritersTest::nothingThatWasAcknowledgedIsLost()
{
    const CalendarFolder folder;
    QStringList arguments { QString::number(edits) };
    for (const QString &name : names) {
        folder.write(u"c/%1.ics"_s.arg(name),
            calendarText(taskText(name.toLatin1(), name.toLatin1(), "DESCRIPTION:v0\r\nX-OTHER:f0\r\n")));
        arguments << folder.path(u"c/%1.ics"_s.arg(name));
    }
    const auto store = folder.open();
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    other.start(QStringLiteral(VANTLE_OTHER_WRITER), arguments);

    std::vector<Edit> ours;
    int conflicts = 0;
    for (int number = 1; number <= edits; ++number) {
        const QString &name = names.at((number * 7 / 3) % names.size());
        for (bool isSaved = false; !isSaved;) {
            const CalTaskPtr task = taskNamed(*store, name);
            QVERIFY(task && task->notes());
            task->setNotes(*task->notes() + u" v%1"_s.arg(number));
            const qint64 from = nanoseconds();
            const auto saved = store->saveTask(*task);
            isSaved = saved.isOk();
            if (isSaved) {
                ours.push_back({ number, name, { from, nanoseconds() } });
                continue;
            }
            // Refused, in words, as a conflict: never for any other reason.
            QCOMPARE(saved.error().code, StoreError::Code::Conflict);
            QVERIFY(saved.error().item == name && saved.error().calendar == u"c" && !saved.error().reason.isEmpty());
            ++conflicts;
        }
        QCoreApplication::processEvents();
    }
    QVERIFY(other.waitForFinished(120'000));
    QCOMPARE(other.exitStatus(), QProcess::NormalExit);

    const std::vector<Edit> theirs = editsIn(other.readAllStandardOutput());
    QCOMPARE(theirs.size(), size_t(edits));
    QHash<QString, QByteArrayList> marks;
    for (const QString &name : names)
        marks.insert(name, folder.read(u"c/%1.ics"_s.arg(name)).replace("\r\n ", "").replace("\r\n", " ").split(' '));
    for (const Edit &edit : theirs)
        QVERIFY2(
            marks.value(edit.name).contains("f" + QByteArray::number(edit.number)), "the other program's edit is lost");
    // The other program overwrites what comes between its last look and its renaming; that it can lose, and nobody
    // can help it. Nothing else may be missing.
    int overwritten = 0;
    for (const Edit &edit : ours) {
        if (marks.value(edit.name).contains("v" + QByteArray::number(edit.number)))
            continue;
        const bool isTheirFault = std::ranges::any_of(
            theirs, [&edit](const Edit &each) { return each.name == edit.name && each.when.overlaps(edit.when); });
        QVERIFY2(isTheirFault, qPrintable(u"edit %1 of ours is lost"_s.arg(edit.number)));
        ++overwritten;
    }
    qInfo("%d edits each, %d conflicts told, %d overwritten within the other program's own gap", edits, conflicts,
        overwritten);
    QVERIFY(conflicts > 0);
    const QStringList left = QDir(folder.path(u"c"_s)).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(left, (QStringList { u"a.ics"_s, u"b.ics"_s, u"c.ics"_s }));
}

VANTLE_TEST(TwoWritersTest)
#include "TwoWritersTest.moc"
