#include "Contrast.h"
#include "Styling/Palette.h"
#include "Styling/Symbols.h"
#include "Styling/Tokens.h"
#include "Styling/TokensSingleton.h"

#include "Views/BannerLogic.h"
#include "Views/PlaylistGroupHeader.h"

#include <QDirIterator>
#include <QGuiApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TokensTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(symbols); }

    void playlistSources() {
        using Id = PlaylistSourceId;
        QCOMPARE(Tokens::Source::logoAsset(Id::apple), u"ServiceAppleMusic"_s);
        QCOMPARE(Tokens::Source::logoAsset(Id::spotify), u"ServiceSpotify"_s);
        QCOMPARE(Tokens::Source::accent(Id::apple), QColor(252, 60, 68));
        QCOMPARE(Tokens::Source::accent(Id::spotify), QColor(30, 215, 96));
        QCOMPARE(Tokens::Source::displayName(Id::apple), u"Apple Music"_s);
        QCOMPARE(Tokens::Source::displayName(Id::spotify), u"Spotify"_s);
        QCOMPARE(Tokens::Source::sfSymbol(Id::apple), u"music.note"_s);
        QCOMPARE(Tokens::Source::sfSymbol(Id::spotify), u"music.note.list"_s);
    }

    void downloadSources_data() {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QString>("asset");
        QTest::newRow("soulseek") << u"soulseek"_s << u"Soulseek"_s << QColor(45, 125, 210) << u"ServiceSoulseek"_s;
        QTest::newRow("bandcamp") << u"bandcamp"_s << u"Bandcamp"_s << QColor(29, 160, 195) << u"ServiceBandcamp"_s;
        QTest::newRow("soundcloud") << u"soundcloud"_s << u"SoundCloud"_s << QColor(255, 85, 0)
                                    << u"ServiceSoundCloud"_s;
        QTest::newRow("youtube") << u"youtube"_s << u"YouTube"_s << QColor(255, 0, 0) << u"ServiceYouTube"_s;
        QTest::newRow("unknown") << u"napkin"_s << u"Unknown"_s << QColor() << QString();
        QTest::newRow("another case") << u"YouTube"_s << u"Unknown"_s << QColor() << QString();
        QTest::newRow("absent") << QString() << u"Unknown"_s << QColor() << QString();
    }
    void downloadSources() {
        QFETCH(QString, raw);
        const auto style = Tokens::Source::downloadStyle(raw.isNull() ? std::nullopt : std::optional(raw));
        QTEST(style.label, "label");
        QTEST(style.color, "color");
        QTEST(style.asset.value_or(QString()), "asset");
    }

    void statusRoles_data() {
        QTest::addColumn<StatusRole>("role");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<Ink>("ink");
        QTest::newRow("queued") << StatusRole::queued << u"circle"_s << Ink::secondary;
        QTest::newRow("working") << StatusRole::working << u"arrow.triangle.2.circlepath"_s << Ink::accent;
        QTest::newRow("review") << StatusRole::review << u"exclamationmark.triangle.fill"_s << Ink::orange;
        QTest::newRow("done") << StatusRole::done << u"checkmark.circle.fill"_s << Ink::green;
        QTest::newRow("failed") << StatusRole::failed << u"xmark.circle.fill"_s << Ink::red;
        QTest::newRow("skipped") << StatusRole::skipped << u"minus.circle"_s << Ink::secondary;
        QTest::newRow("present") << StatusRole::present << u"checkmark.seal.fill"_s << Ink::green;
    }
    void statusRoles() {
        QFETCH(StatusRole, role);
        QTEST(Tokens::Status::symbol(role), "symbol");
        QTEST(Tokens::Status::color(role), "ink");
    }

    void phases_data() {
        QTest::addColumn<Phase>("phase");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("label");
        QTest::newRow("searching") << Phase::searching << u"magnifyingglass"_s << u"Searching"_s;
        QTest::newRow("downloading") << Phase::downloading << u"arrow.down.circle"_s << u"Downloading"_s;
        QTest::newRow("converting") << Phase::converting << u"waveform"_s << u"Converting"_s;
        QTest::newRow("tagging") << Phase::tagging << u"tag"_s << u"Tagging"_s;
        QTest::newRow("verifying") << Phase::verifying << u"checkmark.shield"_s << u"Verifying"_s;
    }
    void phases() {
        QFETCH(Phase, phase);
        QTEST(Tokens::PhaseStyle::symbol(phase), "symbol");
        QTEST(Tokens::PhaseStyle::label(phase), "label");
    }

    void textIsReadableOnEverySurface_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void textIsReadableOnEverySurface() {
        QFETCH(bool, dark);
        Palette palette;
        palette.setDark(dark);
        const QList<QColor> surfaces{palette.window,
                                     palette.sidebar,
                                     palette.card,
                                     over(palette.hover, palette.window),
                                     over(palette.selection, palette.window),
                                     over(palette.selection, palette.sidebar)};
        for (const Ink ink :
             {Ink::primary, Ink::secondary, Ink::accent, Ink::red, Ink::orange, Ink::yellow, Ink::green}) {
            for (const QColor &surface : surfaces)
                QVERIFY2(contrast(palette.ink(ink), surface) >= 4.495,
                         qPrintable(u"%1 on %2"_s.arg(palette.ink(ink).name(), surface.name())));
        }
        for (const QColor &surface :
             {palette.window, palette.sidebar, palette.card, over(palette.hover, palette.window)})
            QVERIFY(contrast(palette.tertiary, surface) >= 4.5);
        QVERIFY(contrast(palette.onAccent, palette.accentFill) >= 4.5);
        QVERIFY(contrast(palette.onAccent, palette.prominentRed) >= 4.5);
        QVERIFY(contrast(palette.red, over(palette.redTint, palette.window)) >= 4.5);
        QVERIFY(contrast(palette.red, over(palette.redTint, palette.card)) >= 4.5);
        QVERIFY(contrast(palette.orange, over(palette.orangeTint, palette.card)) >= 4.5);
    }

    void thePaletteFollowsTheApplication() {
        TokensSingleton tokens;
        QSignalSpy changed(tokens.color(), &Palette::changed);
        const bool before = tokens.color()->dark();
        QPalette opposite;
        opposite.setColor(QPalette::Window, before ? Qt::white : Qt::black);
        opposite.setColor(QPalette::WindowText, before ? Qt::black : Qt::white);
        QGuiApplication::setPalette(opposite);
        QTRY_COMPARE(tokens.color()->dark(), !before);
        QCOMPARE(changed.count(), 1);
        QGuiApplication::setPalette(QPalette());
        QTRY_COMPARE(tokens.color()->dark(), before);
    }

    void inksStandInTheOrderOfTheirNames() {
        const Palette palette;
        const QVariantList inks = palette.inks();
        for (const Ink ink :
             {Ink::primary, Ink::secondary, Ink::tertiary, Ink::accent, Ink::red, Ink::orange, Ink::yellow, Ink::green})
            QCOMPARE(inks.value(static_cast<int>(ink)).value<QColor>(), palette.ink(ink));
    }

    void everySymbolOfATableExists() {
        QStringList used;
        for (const auto source : allCases<SourceId>())
            used += Tokens::Source::logoAsset(source);
        for (const auto phase : allCases<Phase>())
            used += Tokens::PhaseStyle::symbol(phase);
        for (const auto status : allCases<Finish>())
            used += groupBadge(status)->symbol;
        for (const auto source : {PlaylistSourceId::apple, PlaylistSourceId::spotify})
            used += {Tokens::Source::logoAsset(source), Tokens::Source::sfSymbol(source)};
        for (const auto role : {StatusRole::queued, StatusRole::working, StatusRole::review, StatusRole::done,
                                StatusRole::failed, StatusRole::skipped, StatusRole::present})
            used += Tokens::Status::symbol(role);
        for (const auto kind : {SyncBanner::Kind::info, SyncBanner::Kind::warning, SyncBanner::Kind::error})
            used += bannerSymbol(kind);
        for (const QString &name : used)
            QVERIFY2(Symbols::contains(name), qPrintable(name));
    }

    void everySymbolNamedInAViewExists() {
        static const QRegularExpression named(u"(?:[sS]ymbol|\\bname)\\s*:\\s*\x22([^\x22]+)\x22"_s);
        int found = 0;
        for (const QString &folder : {u"/src/Views"_s, u"/src/Styling"_s}) {
            QDirIterator views(QStringLiteral(ZELK_SOURCE_DIR) + folder, {u"*.qml"_s}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (views.hasNext()) {
                QFile file(views.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                const QString text = QString::fromUtf8(file.readAll());
                for (const auto &match : named.globalMatch(text)) {
                    ++found;
                    QVERIFY2(Symbols::contains(match.captured(1)),
                             qPrintable(file.fileName() + u": "_s + match.captured(1)));
                }
            }
        }
        QVERIFY(found > 10);
    }

    void everySymbolDrawsInItsColour() {
        for (const QString &name : Symbols::names()) {
            const QImage image = Symbols::draw(name, QColor(10, 200, 30), 32);
            QVERIFY2(!image.isNull(), qPrintable(name));
            int opaque = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (qAlpha(image.pixel(x, y)) == 255) {
                        ++opaque;
                        QCOMPARE(image.pixelColor(x, y), QColor(10, 200, 30));
                    }
                }
            }
            QVERIFY2(opaque > 0, qPrintable(name));
        }
    }

    void anUnknownSymbolIsSaidInTheLog() {
        QTest::ignoreMessage(QtWarningMsg, "zelk: no symbol is named \"no.such.thing\"");
        Symbols::Provider provider;
        QVERIFY(provider.requestImage(u"no.such.thing/ff000000"_s, nullptr, {}).isNull());
    }

    void changingNumbersAreMeasuredByTheWidestDigit() {
        const TokensSingleton tokens;
        QCOMPARE(tokens.widest(u"17 / 42 done"_s), u"44 / 44 done"_s);
    }
};

QTEST_MAIN(TokensTest)
#include "tst_tokens.moc"
