// SPDX-License-Identifier: MIT
#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QDir>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <ctime>
#include <numeric>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr int edits = 500; // of ours
const QStringList names { u"a"_s, u"b"_s, u"c"_s };

struct Span {
    qint64 from = 0;
    qint64 to = 0;

    bool overlaps(const Span &other) const { return from <= other.to && other.from <= to; }
};

// An edit that was acknowledged. Ours puts a mark behind the notes, the other program's into a line of its own.
struct Edit {
    int number = 0;
    QString name; // of the item
    Span when; // ours: the whole save; the other program's: from its look at the file to its renaming
    QByteArray base; // the last mark of ours in the text on which it was made
};

QByteArray markOf(const Edit &edit)
{
    return "v" + QByteArray::number(edit.number);
}

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
        if (words.size() == 6)
            found.push_back({ words.at(1).toInt(), QFileInfo(QString::fromUtf8(words.at(2))).baseName(),
                { words.at(3).toLongLong(), words.at(4).toLongLong() }, words.at(5) });
    }
    return found;
}

// Whether `theirs` took the place of one of ours with a text that was made before ours was there: from the text that
// it was made on, ours follow each other up to this one, and between the other program's last look and its renaming
// lies the whole of our save, which still found its own text in place. Whatever we do, only that program could know.
bool isOverwrittenUnseen(const Edit &ours, const Edit &theirs, const QHash<QByteArray, Edit> &allOfOurs)
{
    if (theirs.name != ours.name || !theirs.when.overlaps(ours.when))
        return false;
    const auto before = allOfOurs.constFind(ours.base);
    return theirs.base == ours.base || (before != allOfOurs.cend() && isOverwrittenUnseen(*before, theirs, allOfOurs));
}

} // namespace

// Vantle and another program change the same items at the same time.
class TwoWritersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingThatWasAcknowledgedIsLost_data();
    void nothingThatWasAcknowledgedIsLost();

private:
    // All edits, each until it is saved, beside the other program. Nothing when one fails otherwise than it may.
    static std::optional<std::vector<Edit>> saveAll(FolderCalendarStore &store, int &conflicts);
};

std::optional<std::vector<Edit>> TwoWritersTest::saveAll(FolderCalendarStore &store, int &conflicts)
{
    std::vector<Edit> ours;
    // Each attempt has a mark of its own: the other program can build upon one that is refused, as long as it stands.
    for (int number = 1; ours.size() < size_t(edits); ++number) {
        const QString &name = names.at((int(ours.size()) * 7 / 3) % names.size());
        const CalTaskPtr task = taskNamed(store, name);
        if (!task || !task->notes())
            return std::nullopt;
        Edit edit { number, name, { nanoseconds(), 0 }, task->notes()->section(u' ', -1).toLatin1() };
        task->setNotes(*task->notes() + u' ' + QString::fromLatin1(markOf(edit)));
        const auto saved = store.saveTask(*task);
        edit.when.to = nanoseconds();
        QCoreApplication::processEvents();
        if (saved) {
            ours.push_back(edit);
            continue;
        }
        // Refused, in words, as a conflict: never for any other reason.
        const StoreError &error = saved.error();
        if (error.code != StoreError::Code::Conflict || error.item != name || error.calendar != u"c"
            || error.reason.isEmpty()) {
            qWarning("%ls", qUtf16Printable(error.message()));
            return std::nullopt;
        }
        ++conflicts;
    }
    return ours;
}

void TwoWritersTest::nothingThatWasAcknowledgedIsLost_data()
{
    QTest::addColumn<QString>("look"); // how the other program looks whether the item has changed
    QTest::addColumn<int>("editsOfTheOther");

    QTest::newRow("looks before it writes, as vdirsyncer") << u"early"_s << 500;
    QTest::newRow("looks before it writes, on a slow disk") << u"slow"_s << 50;
    QTest::newRow("looks before it renames") << u"late"_s << 500;
}

void TwoWritersTest::nothingThatWasAcknowledgedIsLost()
{
    QFETCH(const QString, look);
    QFETCH(const int, editsOfTheOther);
    const CalendarFolder folder;
    QStringList arguments { look, QString::number(editsOfTheOther) };
    for (const QString &name : names) {
        folder.write(u"c/%1.ics"_s.arg(name),
            calendarText(taskText(name.toLatin1(), name.toLatin1(), "DESCRIPTION:v0\r\nX-OTHER:f0\r\n")));
        arguments << folder.path(u"c/%1.ics"_s.arg(name));
    }
    const auto store = folder.open();
    QHash<QString, int> told; // by item: edits that are said to be overwritten
    connect(store.get(), &FolderCalendarStore::overwritten, this, [&](const StoreError &error) { ++told[error.item]; });
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    other.start(QStringLiteral(VANTLE_OTHER_WRITER), arguments);

    int conflicts = 0;
    const auto ours = saveAll(*store, conflicts);
    QVERIFY(other.state() == QProcess::NotRunning || other.waitForFinished(120'000));
    QCOMPARE(other.exitStatus(), QProcess::NormalExit);
    QVERIFY(ours);

    const std::vector<Edit> theirs = editsIn(other.readAllStandardOutput());
    QCOMPARE(theirs.size(), size_t(editsOfTheOther));
    QHash<QString, QByteArrayList> marks;
    for (const QString &name : names)
        marks.insert(name, folder.read(u"c/%1.ics"_s.arg(name)).replace("\r\n ", "").replace("\r\n", " ").split(' '));
    // We never lose what the other program has written.
    for (const Edit &edit : theirs)
        QVERIFY2(marks.value(edit.name).contains("f" + QByteArray::number(edit.number)),
            qPrintable(u"edit %1 of the other program is lost"_s.arg(edit.number)));
    // What of ours is missing was there when it was acknowledged, and was overwritten by somebody who could not know
    // of it: each by an edit of its own, and each is told.
    QHash<QString, int> overwritten; // by item
    QHash<QByteArray, Edit> byMark;
    for (const Edit &edit : *ours)
        byMark.insert(markOf(edit), edit);
    for (const Edit &edit : *ours) {
        if (marks.value(edit.name).contains(markOf(edit)))
            continue;
        const auto isIt = [&](const Edit &each) { return isOverwrittenUnseen(edit, each, byMark); };
        QVERIFY2(std::ranges::any_of(theirs, isIt), qPrintable(u"edit %1 of ours is lost"_s.arg(edit.number)));
        ++overwritten[edit.name];
    }
    QTRY_COMPARE(told, overwritten);
    const int all = std::accumulate(overwritten.cbegin(), overwritten.cend(), 0);
    qInfo("%d edits of ours, %d of the other: %d conflicts told, %d overwritten within the other program's own gap, "
          "all of them told",
        edits, editsOfTheOther, conflicts, all);
    QVERIFY(conflicts + all > 0); // the two have met
    const QStringList left = QDir(folder.path(u"c"_s)).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(left, (QStringList { u"a.ics"_s, u"b.ics"_s, u"c.ics"_s }));
}

VANTLE_TEST(TwoWritersTest)
#include "TwoWritersTest.moc"
