#include "Services/ArtworkBench.h"
#include "Services/ArtworkImaging.h"
#include "Services/ImageServer.h"
#include "Services/Pictures.h"
#include "Styling/ArtworkPicture.h"
#include "Styling/CoverFace.h"
#include "Styling/Symbols.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

extern void qml_register_types_zelk();

namespace {

ArtworkRef music(const QString &id) {
    return ArtworkRef::appleMusic(id);
}

// A window with one artwork view, over a provider of its own.
class Stage {
public:
    Stage() {
        qml_register_types_zelk();
        ArtworkProvider::setShared(bench.provider);
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        m_engine.addImageProvider(u"symbol"_s, new Symbols::Provider);
        window.setColor(Qt::white);
        window.resize(100, 100);
        window.show();
    }
    ~Stage() {
        view.reset();
        ArtworkProvider::setShared(nullptr);
    }
    Q_DISABLE_COPY_MOVE(Stage)

    void show(const ArtworkRef &ref, int size = 30) {
        QQmlComponent component(&m_engine, QUrl(u"qrc:/qt/qml/zelk/Styling/ArtworkView.qml"_s));
        view.reset(qobject_cast<ArtworkPicture *>(
            component.createWithInitialProperties({{u"ref"_s, QVariant::fromValue(ref)},
                                                   {u"size"_s, size},
                                                   {u"cornerRadius"_s, 8},
                                                   {u"placeholderSymbol"_s, u"music.note"_s}})));
        QVERIFY2(view, qPrintable(component.errorString()));
        view->setParentItem(window.contentItem());
    }
    void reuse(const ArtworkRef &ref) const { view->setProperty("ref", QVariant::fromValue(ref)); }
    bool showsPlaceholder() const {
        for (const QQuickItem *child : view->childItems()) {
            if (child->inherits("QQuickImage"))
                return child->isVisible() && !view->hasImage();
        }
        return false;
    }
    QColor pixel(int x, int y) {
        const QImage shot = window.grabWindow();
        const double ratio = window.effectiveDevicePixelRatio();
        return shot.pixelColor(qRound(x * ratio), qRound(y * ratio));
    }
    // Puts a cover into the provider's memory.
    void remember(const ArtworkRef &ref, double size = 30) { QVERIFY(!bench.image(ref, size).isNull()); }

    ArtworkBench bench;
    QQuickWindow window;
    std::unique_ptr<ArtworkPicture> view;

private:
    QQmlEngine m_engine;
};

} // namespace

class ArtworkViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noneShowsThePlaceholderForGood() {
        Stage stage;
        stage.show(ArtworkRef::none());
        QVERIFY(stage.showsPlaceholder());
        stage.bench.settle();
        QCoreApplication::processEvents();
        QVERIFY(stage.showsPlaceholder());
        QCOMPARE(stage.view->image(), QImage());
    }

    void withoutAProviderThereIsThePlaceholder() {
        Stage stage;
        ArtworkProvider::setShared(nullptr);
        stage.show(music(u"1"_s));
        QVERIFY(stage.showsPlaceholder());
    }

    void aCoverComesOnceItIsLoaded() {
        Stage stage;
        stage.bench.shelf.items = {{1, picture(500, 500)}};
        stage.show(music(u"1"_s));
        QVERIFY(stage.showsPlaceholder());
        QTRY_VERIFY(stage.view->hasImage());
        QVERIFY(!stage.showsPlaceholder());
        QCOMPARE(stage.view->image().size(), QSize(60, 60));
    }

    void whatIsInMemoryShowsAtOnce() {
        Stage stage;
        stage.bench.shelf.items = {{1, picture(500, 500)}};
        stage.remember(music(u"1"_s));
        stage.show(music(u"1"_s));
        QVERIFY(!stage.showsPlaceholder());
        QCOMPARE(stage.view->image(), stage.bench.provider->cachedImage(music(u"1"_s), 30));
    }

    void aReusedViewBlanksAtOnce() {
        Stage stage;
        stage.bench.shelf.items = {{1, picture(50, 50, Qt::red)}, {2, picture(50, 50, Qt::green)}};
        stage.show(music(u"1"_s));
        QTRY_VERIFY(stage.view->hasImage());
        stage.reuse(music(u"2"_s));
        QVERIFY(stage.showsPlaceholder());
        QTRY_VERIFY(stage.view->hasImage());
        QCOMPARE(stage.view->image().pixelColor(9, 9), QColor(Qt::green));
        stage.reuse(ArtworkRef::none());
        QVERIFY(stage.showsPlaceholder());
    }

    void aReusedViewDoesNotFlashWhatIsInMemory() {
        Stage stage;
        stage.bench.shelf.items = {{1, picture(50, 50, Qt::red)}, {2, picture(50, 50, Qt::green)}};
        stage.remember(music(u"1"_s));
        stage.remember(music(u"2"_s));
        stage.show(music(u"1"_s));
        const QSignalSpy blanked(stage.view.get(), &ArtworkPicture::hasImageChanged);
        stage.reuse(music(u"2"_s));
        QCOMPARE(stage.view->image().pixelColor(9, 9), QColor(Qt::green));
        QCOMPARE(blanked.size(), 0);
    }

    void aNewSizeIsLoadedAnew() {
        Stage stage;
        stage.bench.shelf.items = {{1, picture(500, 500)}};
        stage.show(music(u"1"_s));
        QTRY_VERIFY(stage.view->hasImage());
        stage.view->setProperty("size", 56);
        QVERIFY(!stage.view->hasImage());
        QTRY_VERIFY(stage.view->hasImage());
        QCOMPARE(stage.view->image().size(), QSize(112, 112));
    }

    void theSameCoverIsNotLoadedAgain() {
        Stage stage;
        stage.bench.shelf.items = {{1, "no picture"}};
        stage.show(music(u"1"_s));
        QTRY_COMPARE(stage.bench.shelf.coversRead.load(), 1);
        QCoreApplication::processEvents();
        stage.reuse(music(u"1"_s));
        QCoreApplication::processEvents();
        stage.bench.settle();
        QCOMPARE(stage.bench.shelf.coversRead.load(), 1);
        QVERIFY(stage.showsPlaceholder());
    }

    void anotherCoverCancelsTheFirst() {
        Stage stage;
        ImageServer server;
        stage.bench.shelf.items = {{1, picture(50, 50, Qt::green)}};
        stage.show(ArtworkRef::url(server.url(u"/slow"_s)));
        QTRY_COMPARE(server.waiting.size(), 1);
        stage.reuse(music(u"1"_s));
        QTRY_COMPARE(server.gone, 1);
        QTRY_VERIFY(stage.view->hasImage());
        QCOMPARE(stage.view->image().pixelColor(9, 9), QColor(Qt::green));
    }

    void aViewThatGoesAwayCancels() {
        Stage stage;
        ImageServer server;
        stage.show(ArtworkRef::url(server.url(u"/slow"_s)));
        QTRY_COMPARE(server.waiting.size(), 1);
        stage.view.reset();
        QTRY_COMPARE(server.gone, 1);
    }

    void aViewThatIsHiddenCancelsAndLoadsWhenItIsBack() {
        Stage stage;
        ImageServer server;
        stage.show(ArtworkRef::url(server.url(u"/slow"_s)));
        QTRY_COMPARE(server.waiting.size(), 1);
        stage.view->setVisible(false);
        QTRY_COMPARE(server.gone, 1);
        server.answers[u"/slow"_s] = ImageServer::response(picture(9, 9));
        server.answers[u"/other"_s] = ImageServer::response(picture(9, 9));
        stage.reuse(ArtworkRef::url(server.url(u"/other"_s)));
        QCoreApplication::processEvents();
        stage.bench.settle();
        QCOMPARE(server.asked.value(u"/other"_s), 0);
        stage.view->setVisible(true);
        QTRY_VERIFY(stage.view->hasImage());
        QCOMPARE(server.asked.value(u"/other"_s), 1);
        QCOMPARE(server.asked.value(u"/slow"_s), 1);
    }

    void theCoverFillsAFrameWithRoundedCorners() {
        Stage stage;
        QImage wide = plain(300, 100, Qt::red);
        for (int y = 0; y < 100; ++y) {
            for (int x = 100; x < 200; ++x)
                wide.setPixelColor(x, y, Qt::green);
        }
        stage.bench.shelf.items = {{1, encoded(wide)}};
        stage.show(music(u"1"_s), 40);
        QTRY_VERIFY(stage.view->hasImage());
        QCOMPARE(stage.pixel(0, 0), QColor(Qt::white));
        QCOMPARE(stage.pixel(39, 39), QColor(Qt::white));
        QCOMPARE(stage.pixel(20, 20), QColor(Qt::green));
        QCOMPARE(stage.pixel(4, 20), QColor(Qt::green));
        QCOMPARE(stage.pixel(35, 20), QColor(Qt::green));
        QCOMPARE(stage.pixel(41, 20), QColor(Qt::white));
        // The stroke lies over the cover's edge.
        QVERIFY(stage.pixel(20, 0) != QColor(Qt::green));
        QVERIFY(stage.pixel(20, 0) != QColor(Qt::white));
        stage.reuse(ArtworkRef::none());
        QVERIFY(stage.pixel(4, 20) != QColor(Qt::green));
        QVERIFY(stage.pixel(4, 20) != QColor(Qt::white));
    }

    void aScreenReaderDoesNotMeetIt() {
        Stage stage;
        stage.show(ArtworkRef::none());
        QAccessible::setActive(true);
        QAccessibleInterface *const root = QAccessible::queryAccessibleInterface(&stage.window);
        QVERIFY(root);
        QCOMPARE(root->childCount(), 0);
    }

    void aFaceIsDrawnOnceForItsPlace() {
        const QImage cover = plain(60, 60);
        const QImage face = coverFace(cover, 30, 6);
        QCOMPARE(face.size(), QSize(30, 30));
        QCOMPARE(face.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(face.pixelColor(29, 0).alpha(), 0);
        QCOMPARE(face.pixelColor(15, 15), QColor(Qt::red));
        QCOMPARE(face.pixelColor(0, 15), QColor(Qt::red));
        const QImage same = cover; // as the memory gives it again
        QCOMPARE(coverFace(same, 30, 6).cacheKey(), face.cacheKey());
        QVERIFY(coverFace(cover, 22, 6).cacheKey() != face.cacheKey());
        QVERIFY(coverFace(cover, 30, 8).cacheKey() != face.cacheKey());
        QVERIFY(coverFace(plain(60, 60), 30, 6).cacheKey() != face.cacheKey());
        QVERIFY(coverFace(QImage(), 30, 6).isNull());
        QVERIFY(coverFace(cover, 0, 6).isNull());
        QCOMPARE(coverFace(plain(2, 9), 30, 0).size(), QSize(30, 30));
    }
};

QTEST_MAIN(ArtworkViewTest)
#include "tst_artworkview.moc"
