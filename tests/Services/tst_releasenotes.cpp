#include "Services/ReleaseNotes.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestReleaseNotes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void markupBecomesText_data() {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *html, const char *text) {
            QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(text);
        };
        row("plain text", "One\n  two & three < four\n", "One\n  two & three < four");
        row("paragraphs", "<p>One\n two</p><p>Three</p>", "One two\n\nThree");
        row("a heading and a list", "<h2>New</h2><ul><li>One</li> <li>Two</li></ul>End", "New\n\n• One\n• Two\nEnd");
        row("breaks", "One<br>two<br/>three", "One\ntwo\nthree");
        row("emphasis", "<p>Much <b>faster</b>, <i>really</i>.</p>", "Much faster, really.");
        row("a link", "<a href=\"https://example.org\">more</a>", "more");
        row("a table", "<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>", "a b\nc");
        row("references", "<p>&lt;b&gt; &amp; &#65;&#x42; &mdash; &nosuch; &</p>", "<b> & AB — &nosuch; &");
        row("no characters at all", "<p>&#0;&#xD800;&#99999999;x</p>", "&#0;&#xD800;&#99999999;x");
        row("a picture", "<p>a<img src=\"file:///etc/passwd\">b</p>", "ab");
        row("a comment", "a<!-- <p>hidden</p> -->b", "ab");
        row("a script", "a<script>alert('<p>x</p>')</script>b", "ab");
        row("a style", "<style>@import url('https://example.org/x.css'); p{}</style>b", "b");
        row("a frame", "a<iframe src=\"https://example.org\">x</iframe>b", "ab");
        row("in capitals", "<P>One<SCRIPT>x</SCRIPT></P>", "One");
        row("a quoted end", "<p title=\"a > b\">One</p>", "One");
        row("less than", "<p>1 < 2</p>", "1 < 2");
        row("an open script", "a<script>b", "a");
        row("an open comment", "a<!-- b", "a");
        row("an open tag", "a<p b", "a");
        row("an open quote", "a<p title=\"b>c", "a");
        row("a lone end", "a</p>b", "a\n\nb");
        row("nothing", "", "");
        row("nothing but tags", "<html><head><title>x</title></head><body></body></html>", "");
    }
    void markupBecomesText() {
        QFETCH(const QString, html);
        QTEST(plainReleaseNotes(html), "text");
    }

    void theTextHasAnEnd() {
        QCOMPARE(plainReleaseNotes(QString(100'000, u'x')).size(), 20'000);
        QCOMPARE(plainReleaseNotes(u"<p>"_s + QString(100'000, u'x')).size(), 20'000);
    }

    void muchMarkupIsNoBurden() {
        QCOMPARE(plainReleaseNotes(u"<b>"_s.repeated(100'000) + u"x"_s), u"x"_s);
        QCOMPARE(plainReleaseNotes(u"<script/>"_s.repeated(100'000) + u"x"_s), u"x"_s);
    }
};

QTEST_GUILESS_MAIN(TestReleaseNotes)
#include "tst_releasenotes.moc"
