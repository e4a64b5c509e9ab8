// In a German locale, on a desktop that says nothing of the language it wants.
#include "Views/SummaryTexts.h"
#include "Views/Translations.h"
#include "WindowBench.h"

#include <QLocale>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TranslationsTest : public QObject {
    Q_OBJECT

public:
    // Before the application, which reads it.
    static void initMain() {
        qunsetenv("ZELK_LANGUAGE");
        qunsetenv("LANGUAGE");
        qputenv("LC_ALL", "de_DE.UTF-8");
    }

private Q_SLOTS:
    void cleanup() { settleDown(); }

    void whoeverAsksForALanguageIsGivenItsBestNames_data() {
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QStringList>("system");
        QTest::addColumn<QStringList>("wanted");
        const QStringList german{u"de-AT"_s, u"de"_s, u"en-US"_s};
        QTest::newRow("nothing") << QString() << german << QStringList();
        QTest::newRow("English") << u"en"_s << german << QStringList();
        QTest::newRow("a kind of English") << u"en-GB"_s << german << QStringList();
        QTest::newRow("a language") << u"de"_s << QStringList{u"en"_s} << QStringList{u"de"_s};
        QTest::newRow("a country's") << u"de-AT"_s << QStringList() << QStringList{u"de_AT"_s, u"de"_s};
        QTest::newRow("as locales write it") << u"de_AT"_s << QStringList() << QStringList{u"de_AT"_s, u"de"_s};
        QTest::newRow("the desktop's") << u"system"_s << german << QStringList{u"de_AT"_s, u"de"_s};
        QTest::newRow("the desktop's second best")
            << u"system"_s << QStringList{u"fr"_s, u"de"_s, u"en"_s} << QStringList{u"fr"_s, u"de"_s};
        QTest::newRow("what the desktop likes less than English")
            << u"system"_s << QStringList{u"en-US"_s, u"de"_s} << QStringList();
        QTest::newRow("a desktop without a language") << u"system"_s << QStringList{u"C"_s} << QStringList();
        QTest::newRow("a desktop that says nothing") << u"system"_s << QStringList() << QStringList();
    }
    void whoeverAsksForALanguageIsGivenItsBestNames() {
        QFETCH(QString, asked);
        QFETCH(QStringList, system);
        QTEST(Translations::wanted(asked, system), "wanted");
    }

    void aGermanLocaleAloneChangesNoText() {
        QCOMPARE(QLocale::system().language(), QLocale::German);
        const WindowBench bench;
        QCOMPARE(bench.item("filterField")->property("placeholderText").toString(), u"Filter playlists"_s);
        QCOMPARE(SummaryTexts::previewCounts(1, 2), u"1 playlist · 2 tracks"_s);
        QCOMPARE(SummaryTexts::previewCounts(0, 1), u"0 playlists · 1 track"_s);
    }
};

QTEST_MAIN(TranslationsTest)
#include "tst_translations.moc"
