#include "Support/ManualClock.h"
#include "Views/TypeAhead.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A list that somebody types in; the keyboard stands where typing has led.
struct List {
    QStringList names{u"Crates"_s, QString(), u"Gigs 2025"_s, u"garage"_s, u"Goa Trance"_s, u"Peak Time"_s, u"peaks"_s};
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    TypeAhead typeAhead{clock};
    int current = -1;

    int type(const QString &text) {
        const int found =
            typeAhead.find(text, current, static_cast<int>(names.size()), [this](int index) { return names[index]; });
        if (found >= 0)
            current = found;
        return found;
    }
};

} // namespace

class TypeAheadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lettersMakeOneBeginning() {
        List list;
        QCOMPARE(list.type(u"p"_s), 5);
        QCOMPARE(list.type(u"e"_s), 5); // what stands here has it too
        QCOMPARE(list.type(u"A"_s), 5);
        QCOMPARE(list.type(u"k"_s), 5);
        QCOMPARE(list.type(u"s"_s), 6);
    }

    void aPauseBeginsAnew() {
        List list;
        QCOMPARE(list.type(u"g"_s), 2);
        list.clock->advance(999ms);
        QCOMPARE(list.type(u"o"_s), 4);
        list.clock->advance(999ms);
        QCOMPARE(list.type(u"c"_s), -1); // "goc"
        list.clock->advance(1s);
        QCOMPARE(list.type(u"c"_s), 0);
    }

    void oneLetterAgainAndAgainGoesThroughItsNames() {
        List list;
        for (const int expected : {2, 3, 4, 2})
            QCOMPARE(list.type(u"g"_s), expected);
    }

    void aFirstLetterGoesOnFromHereAndRoundTheEnd() {
        List list;
        list.current = 5;
        QCOMPARE(list.type(u"p"_s), 6);
        list.clock->advance(1s);
        QCOMPARE(list.type(u"p"_s), 5);
        list.clock->advance(1s);
        QCOMPARE(list.type(u"c"_s), 0);
    }

    void aBlankGoesOnButBeginsNothing() {
        List list;
        QCOMPARE(list.type(u" "_s), -1);
        list.current = 6;
        for (const auto &letter : {u"p"_s, u"e"_s, u"a"_s, u"k"_s})
            list.type(letter);
        QCOMPARE(list.type(u" "_s), 5);
        QCOMPARE(list.type(u"t"_s), 5);
        QCOMPARE(list.type(u" "_s), -1); // no name goes on so
        QCOMPARE(list.type(u"i"_s), 5);  // and it was not typed
    }

    void whatIsNoLetterLeadsNowhere_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("Delete") << u"\u007f"_s;
        QTest::newRow("Escape") << u"\u001b"_s;
        QTest::newRow("a letter that begins no name") << u"z"_s;
    }
    void whatIsNoLetterLeadsNowhere() {
        QFETCH(QString, text);
        List list;
        QCOMPARE(list.type(text), -1);
    }

    void anEmptyListHasNothingToFind() {
        List list;
        list.names.clear();
        QCOMPARE(list.type(u"p"_s), -1);
    }
};

QTEST_APPLESS_MAIN(TypeAheadTest)
#include "tst_typeahead.moc"
