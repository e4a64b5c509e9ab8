#include "State/Records.h"
#include "Support/FileBrowserOrder.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestFileBrowserOrder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesComeAsAFileBrowserShowsThem_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        const std::pair<const char *, QLocale> locales[] = {{"C", QLocale::c()},
                                                            {"English", QLocale(QLocale::English)},
                                                            {"German", QLocale(QLocale::German)},
                                                            {"default", QLocale()}};
        const std::pair<QString, QString> pairs[] = {
            {u"Mix 2"_s, u"Mix 10"_s},     {u"2"_s, u"10"_s},
            {u"Mix 9 b"_s, u"Mix 10 a"_s}, {u"apple"_s, u"Banana"_s}, // no capitals first
            {u"Banana"_s, u"cherry"_s},    {u"Äpfel"_s, u"Birnen"_s}, // and no accents last
            {u"Mix"_s, u"Mix 1"_s},
        };
        for (const auto &[name, locale] : locales) {
            for (const auto &[first, second] : pairs)
                QTest::addRow("%s: %s before %s", name, qPrintable(first), qPrintable(second))
                    << locale << first << second;
        }
    }

    void namesComeAsAFileBrowserShowsThem() {
        QFETCH(QLocale, locale);
        QFETCH(QString, first);
        QFETCH(QString, second);
        const FileBrowserOrder order(locale);
        QVERIFY(order(first, second));
        QVERIFY(!order(second, first));
        QVERIFY(!order(first, first));
    }

    void playlistsAreSortedByNameAndEqualOnesStayInOrder() {
        const auto sorted = sortedByName(std::vector{playlistOf(u"1"_s, u"Mix 10"_s), playlistOf(u"2"_s, u"Mix 2"_s),
                                                     playlistOf(u"3"_s, u"A"_s), playlistOf(u"4"_s, u"Mix 2"_s),
                                                     playlistOf(u"5"_s, u"Mix 2"_s), playlistOf(u"0"_s, u"Mix 2"_s)});
        QStringList ids;
        for (const auto &playlist : sorted)
            ids.append(playlist.id);
        QCOMPARE(ids, (QStringList{u"3"_s, u"2"_s, u"4"_s, u"5"_s, u"0"_s, u"1"_s}));
    }
};

QTEST_GUILESS_MAIN(TestFileBrowserOrder)
#include "tst_filebrowserorder.moc"
