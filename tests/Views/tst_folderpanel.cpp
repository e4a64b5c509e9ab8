#include "Views/FolderDialogPanel.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Folder = std::optional<QString>;

// The window that the user is in, with what opens over it.
struct Bench {
    Bench() {
        window.resize(800, 600);
        window.show();
        window.requestActivate();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("The window isn't active");
    }
    bool shows(const QString &text) const { return shown(text); }
    // What says that, in view; null for none.
    QQuickItem *shown(const QString &text) const { return shown(window.contentItem(), text); }
    void click(const QQuickItem *item) {
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(&window, Qt::LeftButton, {}, middle.toPoint());
    }

    QQuickWindow window;
    FolderDialogPanel panel;

private:
    static QQuickItem *shown(QQuickItem *from, const QString &text) {
        if (!from->isVisible())
            return nullptr;
        if (from->property("text").toString() == text)
            return from;
        const auto children = from->childItems();
        for (QQuickItem *each : children) {
            if (QQuickItem *const found = shown(each, text))
                return found;
        }
        return nullptr;
    }
};

} // namespace

class FolderPanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsTakenIsAnAbsolutePath() {
        const QTemporaryDir folder;
        FolderChoice choice(u"Choose"_s, folder.path());
        QCOMPARE(choice.property("title").toString(), u"Choose"_s);
        QCOMPARE(choice.property("start").toUrl(), QUrl::fromLocalFile(folder.path()));
        choice.take(QUrl::fromLocalFile(u"/music/all of it"_s));
        QVERIFY(choice.future().isFinished());
        QCOMPARE(choice.future().result(), Folder(u"/music/all of it"_s));
    }

    void aTildeIsTheHomeToStartFrom() {
        const FolderChoice choice(u"Choose"_s, u"~"_s);
        QCOMPARE(choice.property("start").toUrl(), QUrl::fromLocalFile(QDir::homePath()));
    }

    void homeIsWhereToStartWhenTheFolderIsNotThere() {
        for (const QString &nowhere : {u"/nowhere/at/all"_s, QString()}) {
            const FolderChoice choice(u"Choose"_s, nowhere);
            QCOMPARE(choice.property("start").toUrl(), QUrl::fromLocalFile(QDir::homePath()));
        }
    }

    void nothingIsChosenWithoutALocalFolder() {
        FolderChoice none(u"Choose"_s, {});
        none.take(QUrl());
        QCOMPARE(none.future().result(), Folder());
        FolderChoice remote(u"Choose"_s, {});
        remote.take(QUrl(u"https://example.org/music"_s));
        QCOMPARE(remote.future().result(), Folder());
    }

    void theFolderThatIsOpenedIsChosen() {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath(u"new folder"_s));
        Bench bench;
        const auto chosen = bench.panel.choose(u"Choose a folder"_s, folder.path());
        QTRY_VERIFY(bench.shown(u"new folder"_s)); // the only one there is, and so the one to be opened
        QTRY_VERIFY(bench.shown(u"Open"_s));
        bench.click(bench.shown(u"Open"_s));
        QTRY_VERIFY(chosen.isFinished());
        QCOMPARE(chosen.result(), Folder(folder.filePath(u"new folder"_s)));
    }

    void escapeChoosesNothing() {
        Bench bench;
        const auto chosen = bench.panel.choose(u"Choose a folder"_s, {});
        QTRY_VERIFY(bench.shows(u"Choose a folder"_s));
        QVERIFY(!chosen.isFinished());
        QTest::keyClick(&bench.window, Qt::Key_Escape);
        QTRY_VERIFY(chosen.isFinished());
        QCOMPARE(chosen.result(), Folder());
    }

    void aSecondChoiceTakesThePlaceOfTheFirst() {
        Bench bench;
        const auto first = bench.panel.choose(u"First"_s, {});
        QTRY_VERIFY(bench.shows(u"First"_s));
        const auto second = bench.panel.choose(u"Second"_s, {});
        QVERIFY(first.isFinished());
        QCOMPARE(first.result(), Folder());
        QTRY_VERIFY(bench.shows(u"Second"_s));
        QTRY_VERIFY(!bench.shows(u"First"_s));
        QVERIFY(!second.isFinished());
    }

    void whatIsOpenWhenItsWindowGoesChoosesNothing() {
        auto window = std::make_unique<Bench>();
        FolderDialogPanel panel;
        const auto chosen = panel.choose(u"Choose"_s, {});
        QTRY_VERIFY(window->shows(u"Choose"_s));
        window->window.close();
        QVERIFY(chosen.isFinished());
        QCOMPARE(chosen.result(), Folder());
        window = std::make_unique<Bench>();
        const auto next = panel.choose(u"Choose again"_s, {});
        QTRY_VERIFY(window->shows(u"Choose again"_s));
        QVERIFY(!next.isFinished());
    }

    void whatIsOpenWhenThePanelGoesChoosesNothing() {
        QFuture<Folder> chosen;
        {
            Bench bench;
            chosen = bench.panel.choose(u"Choose"_s, {});
        }
        QVERIFY(chosen.isFinished());
        QCOMPARE(chosen.result(), Folder());
    }
};

QTEST_MAIN(FolderPanelTest)
#include "tst_folderpanel.moc"
