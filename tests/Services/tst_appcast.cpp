#include "Services/Appcast.h"
#include "Services/UpdateError.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray head =
    R"(<?xml version="1.0" encoding="utf-8"?><rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel><title>zelk</title>)";
const QByteArray tail = "</channel></rss>";
const QByteArray signature = QByteArray(64, 's');

QByteArray enclosure(const QByteArray &more = {}, const QByteArray &length = "10") {
    return R"(<enclosure url="https://example.org/zelk-2.tar.gz" length=")" + length + R"(" sparkle:edSignature=")" +
           signature.toBase64() + R"(" type="application/octet-stream" )" + more + "/>";
}

QByteArray item(const QByteArray &content) {
    return "<item><title>New</title>" + content + "</item>";
}

std::vector<AppcastItem> read(const QByteArray &items) {
    return readAppcast(head + items + tail);
}

const QByteArray forWindows = R"(sparkle:os="windows")";
const QByteArray forLinux = R"(sparkle:os="linux")";
const QByteArray versionsWithin = R"(sparkle:version="200" sparkle:shortVersionString="2.0")";
const QByteArray oldVersionWithin = R"(sparkle:version="1")";
const QByteArray unsignedEnclosure = R"(<enclosure url="https://example.org/z" length="1"/>)";

QByteArray enclosureSigned(const QByteArray &text) {
    return R"(<enclosure url="https://example.org/z" length="1" sparkle:edSignature=")" + text + R"("/>)";
}

const QByteArray version2 = "<sparkle:version>2.0</sparkle:version>";

const QByteArray bomb =
    R"(<?xml version="1.0"?><!DOCTYPE rss [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;"><!ENTITY c "&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;">]><rss><channel><title>&c;</title></channel></rss>)";
const QByteArray outsider =
    R"(<?xml version="1.0"?><!DOCTYPE rss [<!ENTITY x SYSTEM "file:///etc/passwd">]><rss><channel><title>&x;</title></channel></rss>)";
const QByteArray innocentType = "<?xml version=\"1.0\"?><!DOCTYPE rss><rss><channel/></rss>";
const QByteArray unclosed = "<rss><channel><item>";

} // namespace

class TestAppcast : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anItemIsReadInFull() {
        const auto items = read(
            item("<sparkle:version>200</sparkle:version><sparkle:shortVersionString>2.0</sparkle:shortVersionString>"
                 "<description><![CDATA[<p>Faster.</p>]]></description>"
                 "<sparkle:releaseNotesLink>https://example.org/notes.html</sparkle:releaseNotesLink>" +
                 enclosure()));
        const AppcastItem expected{.version = u"200"_s,
                                   .shortVersion = u"2.0"_s,
                                   .url = QUrl(u"https://example.org/zelk-2.tar.gz"_s),
                                   .length = 10,
                                   .signature = signature,
                                   .notes = u"<p>Faster.</p>"_s,
                                   .notesUrl = QUrl(u"https://example.org/notes.html"_s)};
        QCOMPARE(items.size(), std::size_t(1));
        QVERIFY(items[0] == expected);
    }

    void theVersionsMayBeAttributesOfTheEnclosure() {
        const auto items = read(item(enclosure(versionsWithin)));
        QCOMPARE(items.at(0).version, u"200"_s);
        QCOMPARE(items.at(0).shortVersion, u"2.0"_s);
    }

    void elementsGoBeforeAttributesInAnyOrder() {
        const QByteArray attribute = enclosure(oldVersionWithin);
        QCOMPARE(read(item(attribute + version2)).at(0).version, u"2.0"_s);
        QCOMPARE(read(item(version2 + attribute)).at(0).version, u"2.0"_s);
    }

    void withoutAShortVersionTheOrderedOneIsShown() {
        QCOMPARE(read(item(version2 + enclosure())).at(0).shortVersion, u"2.0"_s);
    }

    void aVersionIsOneShortLine() {
        const auto items =
            read(item("<sparkle:version>2.0\n\n" + QByteArray(200, '1') + "</sparkle:version>" + enclosure()));
        QCOMPARE(items.at(0).version.size(), 64);
        QVERIFY(!items.at(0).version.contains(u'\n'));
    }

    void itemsOfNoUseAreLeftOut_data() {
        QTest::addColumn<QByteArray>("useless");
        QTest::newRow("no enclosure") << version2;
        QTest::newRow("no version") << enclosure();
        QTest::newRow("an unordered version") << "<sparkle:version>newest</sparkle:version>" + enclosure();
        QTest::newRow("no length") << version2 + enclosure({}, "");
        QTest::newRow("length 0") << version2 + enclosure({}, "0");
        QTest::newRow("a negative length") << version2 + enclosure({}, "-4");
        QTest::newRow("a length that is no number") << version2 + enclosure({}, "10 MB");
        QTest::newRow("a channel") << version2 + "<sparkle:channel>beta</sparkle:channel>" + enclosure();
        QTest::newRow("another system") << version2 + enclosure(forWindows);
        QTest::newRow("a version without the namespace") << "<version>2.0</version>" + enclosure();
        QTest::newRow("an enclosure for a difference only")
            << version2 + "<sparkle:deltas>" + enclosure() + "</sparkle:deltas>";
    }
    void itemsOfNoUseAreLeftOut() {
        QFETCH(const QByteArray, useless);
        QVERIFY(read(item(useless)).empty());
        QCOMPARE(read(item(useless) + item(version2 + enclosure())).size(), std::size_t(1));
    }

    void anItemForThisSystemIsTaken() { QCOMPARE(read(item(version2 + enclosure(forLinux))).size(), std::size_t(1)); }

    void aSignatureOfAnotherSizeOrFormIsNone() {
        QVERIFY(read(item(version2 + enclosureSigned("!!!!"))).at(0).signature.isEmpty());
        QVERIFY(read(item(version2 + enclosureSigned(QByteArray(63, 's').toBase64()))).at(0).signature.isEmpty());
        QVERIFY(read(item(version2 + unsignedEnclosure)).at(0).signature.isEmpty());
    }

    void aFeedWithoutItemsIsEmpty() { QVERIFY(read({}).empty()); }

    void whatIsNoFeedIsRefused_data() {
        QTest::addColumn<QByteArray>("xml");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no XML") << QByteArray("404 not found");
        QTest::newRow("a page") << QByteArray("<html><body/></html>");
        QTest::newRow("no channel") << QByteArray("<rss/>");
        QTest::newRow("cut off") << unclosed;
        QTest::newRow("cut off after an item") << head + item(version2 + enclosure());
        QTest::newRow("more behind its end") << head + tail + "<rss/>";
        QTest::newRow("an undeclared namespace")
            << QByteArray("<rss><channel><item><sparkle:version/></item></channel></rss>");
        QTest::newRow("an entity of its own") << QByteArray("<rss><channel><title>&mine;</title></channel></rss>");
        QTest::newRow("entities that grow") << bomb;
        QTest::newRow("an entity from outside") << outsider;
        QTest::newRow("a document type") << innocentType;
        QTest::newRow("bytes that are no text")
            << QByteArray("<rss><channel><title>\xff\xfe\x80</title></channel></rss>");
    }
    void whatIsNoFeedIsRefused() {
        QFETCH(const QByteArray, xml);
        try {
            readAppcast(xml);
            QFAIL("It was read.");
        } catch (const UpdateError &error) {
            QCOMPARE(error.problem(), UpdateProblem::unreadableFeed);
        }
    }

    void deepNestingIsSkippedInPeace() {
        const QByteArray deep = QByteArray("<a>").repeated(50'000) + QByteArray("</a>").repeated(50'000);
        QCOMPARE(read(deep + item(deep + version2 + enclosure())).size(), std::size_t(1));
    }

    void theNewestStrictlyNewerItemIsChosenWhereverItStands() {
        const auto named = [](const char *version) { return AppcastItem{.version = QString::fromLatin1(version)}; };
        const std::vector<AppcastItem> items{named("1.5"), named("2.10"), named("2.9"), named("0.9")};
        QCOMPARE(newestAbove(u"1.0"_s, items)->version, u"2.10"_s);
        QCOMPARE(newestAbove(u"2.9.5"_s, items)->version, u"2.10"_s);
        QVERIFY(!newestAbove(u"2.10"_s, items));
        QVERIFY(!newestAbove(u"2.10.0"_s, items));
        QVERIFY(!newestAbove(u"3"_s, items));
        QVERIFY(!newestAbove(u"1.0"_s, {}));
    }

    void ofEqualsTheFirstIsChosen() {
        const std::vector<AppcastItem> items{{.version = u"2.0"_s, .shortVersion = u"first"_s},
                                             {.version = u"2.0.0"_s, .shortVersion = u"second"_s}};
        QCOMPARE(newestAbove(u"1.0"_s, items)->shortVersion, u"first"_s);
    }
};

QTEST_GUILESS_MAIN(TestAppcast)
#include "tst_appcast.moc"
