#include "Accessible.h"
#include "Styling/Format.h"
#include "Styling/GlassSurface.h"
#include "Styling/Measures.h"
#include "Styling/Tokens.h"
#include "Views/ViewEngine.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

// The small views that recur, each on its own.
class AtomsTest : public QObject {
    Q_OBJECT

    QQmlEngine m_engine;
    QQuickWindow m_window;

    std::unique_ptr<QQuickItem> make(const QString &view, const QVariantMap &properties) {
        QQmlComponent component(&m_engine, QUrl(u"qrc:/qt/qml/zelk/Styling/%1.qml"_s.arg(view)));
        std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
        if (!item)
            qFatal("%s", qPrintable(component.errorString()));
        item->setParentItem(m_window.contentItem());
        return item;
    }
    static QList<QQuickItem *> all(QQuickItem *root, const char *type) {
        QList<QQuickItem *> found;
        for (QQuickItem *child : root->childItems()) {
            if (child->inherits(type) && child->isVisible())
                found += child;
            found += all(child, type);
        }
        return found;
    }
    static QFont fontOf(QQuickItem *item) { return all(item, "QQuickText").value(0)->property("font").value<QFont>(); }
    std::unique_ptr<QQuickItem> source(const std::optional<QString> &raw) {
        Tokens::Source::DownloadSourceStyle style;
        if (raw)
            style = Tokens::Source::downloadStyle(raw);
        return make(
            u"SourceBadge"_s,
            {{u"label"_s, style.label}, {u"symbol"_s, style.asset.value_or(QString())}, {u"brand"_s, style.color}});
    }

private Q_SLOTS:
    void initTestCase() {
        QAccessible::setActive(true);
        prepareViewEngine(m_engine);
        m_window.show();
    }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aQualityBadgeIsAFactOnAChip() {
        const auto badge = make(u"QualityBadge"_s, {{u"text"_s, u"320 kbps"_s}});
        QVERIFY(badge->isVisible());
        QCOMPARE(spoken(badge.get()), u"Quality 320 kbps"_s);
        auto *surface = qobject_cast<GlassSurface *>(badge.get());
        QVERIFY(surface);
        QCOMPARE(surface->role(), GlassSurface::Chip);
        QCOMPARE(surface->radius(), 6);
        QQuickItem *text = all(badge.get(), "QQuickText").value(0);
        QCOMPARE(text->position(), QPointF(6, 1));
        QCOMPARE(badge->implicitWidth(), text->implicitWidth() + 12);
        QCOMPARE(badge->implicitHeight(), text->implicitHeight() + 2);
        QCOMPARE(fontOf(badge.get()).pixelSize(), 10);
        QCOMPARE(fontOf(badge.get()).weight(), QFont::DemiBold);
    }

    void withoutAFactThereIsNoBadge() {
        const QString none = Format::quality(std::nullopt).value_or(QString());
        QVERIFY(!make(u"QualityBadge"_s, {{u"text"_s, none}})->isVisible());
    }

    void badgesStandInTheirOrder_data() {
        QTest::addColumn<std::optional<TrackMeta>>("meta");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("nothing") << std::optional<TrackMeta>() << QStringList();
        QTest::newRow("both") << std::optional(TrackMeta{u"mp3"_s, u"320"_s, {}})
                              << QStringList{u"Quality MP3"_s, u"Quality 320 kbps"_s};
        QTest::newRow("lossless") << std::optional(TrackMeta{u"flac"_s, u"900"_s, {}})
                                  << QStringList{u"Quality FLAC"_s};
        QTest::newRow("the other lossless") << std::optional(TrackMeta{u"alac"_s, u"900"_s, {}})
                                            << QStringList{u"Quality ALAC"_s, u"Quality 900 kbps"_s};
    }
    void badgesStandInTheirOrder() {
        QFETCH(std::optional<TrackMeta>, meta);
        const auto row = make(u"QualityBadges"_s, {{u"badges"_s, Format::qualityBadges(meta)}});
        m_window.contentItem()->ensurePolished();
        row->ensurePolished();
        QStringList said;
        double end = -1;
        for (QQuickItem *badge : all(row.get(), "zelk::GlassSurface")) {
            said += spoken(badge);
            QVERIFY(badge->x() > end);
            end = badge->x() + badge->width();
        }
        QTEST(said, "said");
    }

    void aSourceBadgeSaysItsSource_data() {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("drawn");
        QTest::newRow("youtube") << u"youtube"_s << u"YouTube"_s << true;
        QTest::newRow("unknown") << u"attic"_s << u"Unknown"_s << false;
    }
    void aSourceBadgeSaysItsSource() {
        QFETCH(QString, raw);
        QFETCH(QString, label);
        QFETCH(bool, drawn);
        const auto badge = source(raw);
        QVERIFY(badge->isVisible());
        QCOMPARE(spoken(badge.get()), u"Source "_s + label);
        const QList<QQuickItem *> pictures = all(badge.get(), "QQuickImage");
        QCOMPARE(!pictures.isEmpty(), drawn);
        if (drawn)
            QCOMPARE(pictures.first()->size(), QSizeF(12, 12));
        QCOMPARE(fontOf(badge.get()), TypeScale().calloutMedium);
    }

    void withoutASourceThereIsNoBadge() { QVERIFY(!source(std::nullopt)->isVisible()); }

    void aLogoIsCalledByItsService() {
        for (const PlaylistSourceId id : {PlaylistSourceId::apple, PlaylistSourceId::spotify}) {
            const auto logo = make(u"SourceLogo"_s, {{u"symbol"_s, Tokens::Source::logoAsset(id)},
                                                     {u"label"_s, Tokens::Source::displayName(id)},
                                                     {u"brand"_s, Tokens::Source::accent(id)}});
            QCOMPARE(spoken(logo.get()), Tokens::Source::displayName(id));
        }
    }

    void aPillIsOneElementAndBoldOnlyWhereItStandsOut() {
        const auto pill = [this](bool prominent) {
            return make(u"StatusPill"_s, {{u"text"_s, u"Done"_s},
                                          {u"symbol"_s, u"checkmark.circle.fill"_s},
                                          {u"ink"_s, QColor(Qt::green)},
                                          {u"prominent"_s, prominent}});
        };
        const auto plain = pill(false);
        QCOMPARE(spoken(plain.get()), u"Done"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(plain.get())->childCount(), 0);
        QCOMPARE(fontOf(plain.get()), TypeScale().caption);
        QCOMPARE(fontOf(pill(true).get()), TypeScale().captionSemibold);
    }
};

QTEST_MAIN(AtomsTest)
#include "tst_atoms.moc"
