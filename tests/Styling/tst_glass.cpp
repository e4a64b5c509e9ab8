#include "Contrast.h"
#include "Styling/GlassRole.h"
#include "Styling/GlassShadow.h"
#include "Styling/GlassSurface.h"
#include "Styling/Palette.h"

#include <QPainter>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Kind = GlassRole::Kind;
using Stroke = GlassRole::Stroke;

namespace {

constexpr GlassResolver translucent = GlassResolver::fallback();
constexpr GlassResolver opaque{.prefersOpaque = true};

QColor at(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

} // namespace

class GlassTest : public QObject {
    Q_OBJECT

    // A picture of a surface, drawn on nothing.
    static QImage drawn(GlassSurface &surface, QSizeF size) {
        surface.setSize(size);
        QImage image(size.toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        surface.paint(&painter);
        return image;
    }
    static bool isNear(QColor actual, QColor expected) {
        const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
        return near(actual.red(), expected.red()) && near(actual.green(), expected.green()) &&
               near(actual.blue(), expected.blue()) && near(actual.alpha(), expected.alpha());
    }

private Q_SLOTS:
    void theDegreeIsDecidedByFourAnswers_data() {
        QTest::addColumn<GlassResolver>("resolver");
        QTest::addColumn<bool>("usesGlass");
        QTest::addColumn<bool>("usesTranslucency");
        for (int bits = 0; bits < 16; ++bits) {
            const GlassResolver resolver{.osSupportsGlass = (bits & 1) != 0,
                                         .prefersOpaque = (bits & 2) != 0,
                                         .reduceMotion = (bits & 4) != 0,
                                         .increaseContrast = (bits & 8) != 0};
            const bool wantsOpaque = (bits & (2 | 8)) != 0;
            QTest::addRow("%d%d%d%d", bits & 1, bits >> 1 & 1, bits >> 2 & 1, bits >> 3 & 1)
                << resolver << (bits % 2 == 1 && !wantsOpaque) << !wantsOpaque;
        }
    }
    void theDegreeIsDecidedByFourAnswers() {
        QFETCH(GlassResolver, resolver);
        QTEST(resolver.usesGlass(), "usesGlass");
        QTEST(resolver.usesTranslucency(), "usesTranslucency");
    }

    void withoutADecisionSurfacesAreTranslucent() {
        QCOMPARE(GlassResolver::fallback(), (GlassResolver{false, false, false, false}));
        QVERIFY(GlassResolver::fallback().usesTranslucency());
    }

    void eachWishMakesItsAnswer_data() {
        QTest::addColumn<GlassResolver>("resolver");
        QTest::addColumn<GlassResolver>("expected");
        QTest::newRow("none") << resolveGlass(false, false, false, false) << GlassResolver{};
        QTest::newRow("less transparency")
            << resolveGlass(true, false, false, false) << GlassResolver{.prefersOpaque = true};
        QTest::newRow("less motion") << resolveGlass(false, true, false, false) << GlassResolver{.reduceMotion = true};
        QTest::newRow("more contrast") << resolveGlass(false, false, true, false)
                                       << GlassResolver{.increaseContrast = true};
        QTest::newRow("the preference") << resolveGlass(false, false, false, true)
                                        << GlassResolver{.prefersOpaque = true};
        QTest::newRow("all") << resolveGlass(true, true, true, true)
                             << GlassResolver{.prefersOpaque = true, .reduceMotion = true, .increaseContrast = true};
    }
    void eachWishMakesItsAnswer() {
        QFETCH(GlassResolver, resolver);
        QTEST(resolver, "expected");
    }

    void everyRoleHasItsLook_data() {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<int>("radius");
        QTest::addColumn<QColor>("translucentFill");
        QTest::addColumn<QColor>("opaqueFill");
        QTest::addColumn<bool>("stroked");
        for (const bool dark : {false, true}) {
            const auto row = [dark](const char *name, Kind kind, int radius, const QColor &see, const QColor &solid,
                                    bool stroked) {
                QTest::addRow("%s, %s", name, dark ? "dark" : "light")
                    << dark << kind << radius << see << solid << stroked;
            };
            const QColor window = dark ? QColor(0x1C1D21) : QColor(0xF6F7F9);
            const QColor control = dark ? QColor(0x27282E) : QColor(0xFFFFFF);
            const QColor quaternary = dark ? QColor(0x34363D) : QColor(0xE4E7EC);
            row("chrome", Kind::chrome, 0, at(window, 0.92), window, false);
            row("groupCard", Kind::groupCard, 12, at(control, 0.94), control, true);
            row("panel", Kind::panel, 16, at(control, 0.94), control, true);
            row("floating", Kind::floating, 16, at(window, 0.97), window, true);
            row("chip", Kind::chip, 6, at(quaternary, 0.70), quaternary, true);
            row("selection", Kind::selection, 6, at(QColor(255, 85, 0), 0.16), at(QColor(255, 85, 0), 0.18), true);
        }
    }
    void everyRoleHasItsLook() {
        QFETCH(bool, dark);
        QFETCH(Kind, kind);
        QFETCH(bool, stroked);
        Palette palette;
        palette.setDark(dark);
        const GlassRole role{kind, QColor(255, 85, 0)};
        QTEST(role.radius(), "radius");
        QTEST(role.opaqueFill(palette), "opaqueFill");
        QTEST(role.fill(palette, opaque), "opaqueFill");
        QFETCH(QColor, translucentFill);
        QVERIFY(isNear(role.fill(palette, translucent), translucentFill));
        const QColor line = dark ? Qt::white : Qt::black;
        const double separator = dark ? 0.22 : 0.20;
        for (const auto &[resolver, opacity, width] : {std::tuple(translucent, 0.5, 0.5), std::tuple(opaque, 0.9, 1.0),
                                                       std::tuple(GlassResolver{.increaseContrast = true}, 0.9, 1.0)}) {
            const Stroke stroke = role.stroke(palette, resolver);
            QCOMPARE(stroke.color.isValid(), stroked);
            if (!stroked)
                continue;
            QCOMPARE(stroke.width, width);
            QVERIFY(isNear(stroke.color, at(line, separator * opacity)));
        }
    }

    void onlyWhatFloatsCastsAShadowAndOnlyWhenTranslucent() {
        for (const Kind kind :
             {Kind::selection, Kind::chrome, Kind::groupCard, Kind::panel, Kind::floating, Kind::chip}) {
            QCOMPARE(GlassRole{kind}.castsShadow(translucent), kind == Kind::floating);
            QVERIFY(!GlassRole{kind}.castsShadow(opaque));
        }
    }

    void shadowsAreDeeperUnderASheetThanUnderTheBanner() {
        Palette palette;
        QVERIFY(isNear(palette.shadow, at(Qt::black, 0.22)));
        QVERIFY(isNear(palette.bannerShadow, at(Qt::black, 0.12)));
        palette.setDark(true);
        QVERIFY(isNear(palette.shadow, at(Qt::black, 0.55)));
        QVERIFY(isNear(palette.bannerShadow, at(Qt::black, 0.45)));
    }

    void anotherGroundIsAsOpaqueAsTheRolesOwn() {
        const Palette palette;
        const GlassRole role{Kind::floating};
        QVERIFY(isNear(role.fill(palette, translucent, palette.card), at(palette.card, 0.97)));
        QCOMPARE(role.fill(palette, opaque, palette.card), palette.card);
    }

    void strokesAreWholeDevicePixels() {
        QCOMPARE(snappedToDevice(0.5, 1), 1.0);
        QCOMPARE(snappedToDevice(0.5, 2), 0.5);
        QCOMPARE(snappedToDevice(1, 1), 1.0);
        QCOMPARE(snappedToDevice(1, 2), 1.0);
        QCOMPARE(snappedToDevice(1, 1.5) * 1.5, 2.0);
        QCOMPARE(snappedToDevice(0.5, 1.25) * 1.25, 1.0);
    }

    void textIsReadableOnSurfacesOverAnything_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void textIsReadableOnSurfacesOverAnything() {
        QFETCH(bool, dark);
        Palette palette;
        palette.setDark(dark);
        for (const Kind kind : {Kind::chrome, Kind::groupCard, Kind::panel, Kind::floating}) {
            for (const QColor &below : {QColor(Qt::black), QColor(Qt::white)}) {
                const QColor surface = over(GlassRole{kind}.fill(palette, translucent), below);
                for (const Ink ink :
                     {Ink::primary, Ink::secondary, Ink::accent, Ink::red, Ink::orange, Ink::yellow, Ink::green})
                    QVERIFY2(contrast(palette.ink(ink), surface) >= 4.5,
                             qPrintable(u"%1 on %2"_s.arg(palette.ink(ink).name(), surface.name())));
                if (kind != Kind::chrome)
                    QVERIFY(contrast(palette.tertiary, surface) >= 4.5);
            }
        }
        for (const QColor &below : {palette.window, palette.card}) {
            QVERIFY(contrast(palette.secondary, over(GlassRole{Kind::chip}.fill(palette, translucent), below)) >= 4.5);
            QVERIFY(contrast(palette.secondary, over(GlassRole{Kind::chip}.fill(palette, opaque), below)) >= 4.5);
        }
    }

    void theStrokeLiesInsideTheShape() {
        Palette palette;
        GlassEnvironment environment;
        GlassSurface surface;
        surface.setColors(&palette);
        surface.setGlass(&environment);
        surface.setRole(GlassSurface::GroupCard);
        environment.setResolver(opaque);
        const QImage image = drawn(surface, {100, 60});
        // From the edge inwards: the stroke over the fill, one pixel wide, then the fill alone.
        const QColor line = over(at(Qt::black, 0.18), palette.card);
        for (const QPoint &edge : {QPoint(0, 30), QPoint(99, 30), QPoint(50, 0), QPoint(50, 59)})
            QVERIFY2(isNear(image.pixelColor(edge), line), qPrintable(image.pixelColor(edge).name()));
        for (const QPoint &inner : {QPoint(1, 30), QPoint(98, 30), QPoint(50, 1), QPoint(50, 58), QPoint(50, 30)})
            QCOMPARE(image.pixelColor(inner), palette.card);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0); // rounded
    }

    void aBarIsSquareAndHasNoStroke() {
        Palette palette;
        for (const GlassResolver &resolver : {translucent, opaque}) {
            GlassEnvironment environment;
            environment.setResolver(resolver);
            GlassSurface surface;
            surface.setColors(&palette);
            surface.setGlass(&environment);
            surface.setRole(GlassSurface::Chrome);
            const QImage image = drawn(surface, {40, 20});
            const QColor fill = GlassRole{Kind::chrome}.fill(palette, resolver);
            for (const QPoint &point : {QPoint(0, 0), QPoint(39, 19), QPoint(20, 10)})
                QVERIFY(isNear(image.pixelColor(point), fill));
        }
    }

    void aSurfaceWithoutAPixelIsNotPainted() {
        GlassSurface surface;
        surface.setSize({40, 0.4});
        QVERIFY(!surface.flags().testFlag(QQuickItem::ItemHasContents));
        surface.setSize({40, 1});
        QVERIFY(surface.flags().testFlag(QQuickItem::ItemHasContents));
    }

    void aSurfaceFollowsItsSurroundings() {
        Palette palette;
        GlassEnvironment environment;
        GlassSurface surface;
        surface.setColors(&palette);
        surface.setGlass(&environment);
        surface.setRole(GlassSurface::Floating);
        int changes = 0;
        connect(&surface, &GlassSurface::changed, this, [&changes] { ++changes; });
        QVERIFY(surface.castsShadow());
        environment.setResolver(opaque);
        QCOMPARE(changes, 1);
        QVERIFY(!surface.castsShadow());
        palette.setDark(true);
        QCOMPARE(changes, 2);
        environment.setResolver(opaque);
        QCOMPARE(changes, 2);
        QCOMPARE(surface.radius(), 16);
        surface.setRadius(12);
        QCOMPARE(surface.radius(), 12);
    }

    void aShadowFadesAwayAndReachesNoFurtherThanItsBlur() {
        const QImage patch = shadowPatch(12, 28);
        const int middle = patch.width() / 2;
        QCOMPARE(patch.width(), patch.height());
        const auto alpha = [&patch](int x, int y) { return patch.scanLine(y)[x]; };
        QVERIFY(alpha(middle, middle) > 200);
        QCOMPARE(int(alpha(0, middle)), 0);
        for (int x = 1; x <= middle; ++x)
            QVERIFY(alpha(x, middle) >= alpha(x - 1, middle));
        const int outline = alpha(28, middle);
        QVERIFY(outline > 90 && outline < 160); // half of it is outside
        for (int x = 0; x <= middle; ++x)
            QVERIFY(std::abs(alpha(x, middle) - alpha(middle, x)) <= 1);
    }
};

QTEST_MAIN(GlassTest)
#include "tst_glass.moc"
