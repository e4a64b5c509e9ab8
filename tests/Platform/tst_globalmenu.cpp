#include "Platform/AppMenuRegistrar.h"
#include "Platform/DesktopBar.h"
#include "Platform/GlobalMenu.h"
#include "Platform/PrivateBus.h"
#include "Support/Settle.h"

#include <QDBusConnection>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr WId windowId = 0x2a00007;

} // namespace

/// Over a bus of its own, on which the registrar, the bar and the application have a connection each.
class TestGlobalMenu : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    std::unique_ptr<AppMenuRegistrar> _registrar;
    std::unique_ptr<GlobalMenu> _menu;
    QStringList _picked;

    MenuItem entry(const QString &title, const QKeySequence &keys = {}, bool enabled = true) {
        return {.title = title, .keys = keys, .enabled = enabled, .pick = [this, title] { _picked.append(title); }};
    }
    QList<MenuItem> menus(bool running = false) {
        return {{.kind = MenuItem::Kind::menu,
                 .title = u"&File"_s,
                 .items = {entry(u"Start"_s, QKeySequence(u"Ctrl+R"_s), !running),
                           entry(u"Stop"_s, QKeySequence(u"Ctrl+."_s), running),
                           {.kind = MenuItem::Kind::divider},
                           entry(u"Save && Quit_now"_s, QKeySequence(u"Ctrl+Alt+Shift+Meta+-, +"_s))}},
                {.kind = MenuItem::Kind::menu, .title = u"&Help"_s, .items = {entry(u"About"_s)}}};
    }
    void startRegistrar() { _registrar = std::make_unique<AppMenuRegistrar>(_bus.connection(u"registrar"_s)); }
    std::unique_ptr<DesktopBar> bar() {
        return std::make_unique<DesktopBar>(_bus.connection(u"bar"_s), _registrar->menus.value(windowId));
    }
    std::unique_ptr<DesktopBar> offered() {
        startRegistrar();
        _menu->offer(windowId, menus());
        [this] { QTRY_VERIFY(_menu->isTaken()); }();
        return bar();
    }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void init() {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        _menu = GlobalMenu::on(_bus.connection(u"application"_s));
        _picked.clear();
    }
    void cleanup() {
        _menu.reset();
        _registrar.reset();
        for (const auto &name : {u"application"_s, u"registrar"_s, u"bar"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void aRegistrarThatIsThereTakesTheMenu() {
        const QSignalSpy changed(_menu.get(), &GlobalMenu::takenChanged);
        startRegistrar();
        _menu->offer(windowId, menus());
        QVERIFY(!_menu->isTaken()); // nobody has waited for it
        QTRY_VERIFY(_menu->isTaken());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(_registrar->menus.keys(), QList{static_cast<uint>(windowId)});
        QCOMPARE(_registrar->menus.first().service, _bus.connection(u"application"_s).baseService());
    }

    void aRegistrarThatComesGoesAndComesBackTakesItEachTime() {
        const QSignalSpy changed(_menu.get(), &GlobalMenu::takenChanged);
        _menu->offer(windowId, menus());
        for (int i = 0; i < 2; ++i) {
            startRegistrar();
            QTRY_VERIFY(_menu->isTaken());
            QCOMPARE(_registrar->registrations, 1);
            _registrar.reset();
            QTRY_VERIFY(!_menu->isTaken());
        }
        QCOMPARE(changed.size(), 4);
    }

    void aRegistrarThatRefusesHasTakenNothing() {
        startRegistrar();
        _registrar->refuses = true;
        _menu->offer(windowId, menus());
        QTRY_VERIFY(_registrar->registrations > 0);
        settle();
        QVERIFY(!_menu->isTaken());
    }

    void theAnswerOfARegistrarThatWentDoesNotCount() {
        startRegistrar();
        _registrar->isSlow = true;
        _menu->offer(windowId, menus());
        QTRY_VERIFY(!_registrar->open.isEmpty());
        const auto late = _registrar->open.first().createReply();
        const QSignalSpy changed(_menu.get(), &GlobalMenu::takenChanged);
        _registrar.reset();
        startRegistrar();
        QTRY_VERIFY(_menu->isTaken());
        _registrar.reset();
        QTRY_VERIFY(!_menu->isTaken());
        _bus.connection(u"registrar"_s).send(late);
        settle();
        QVERIFY(!_menu->isTaken());
        QCOMPARE(changed.size(), 2);
    }

    void theBusThatGoesTakesTheRegistrarWithIt() {
        PrivateBus other;
        other.start();
        {
            const AppMenuRegistrar registrar(other.connection(u"other registrar"_s));
            const auto menu = GlobalMenu::on(other.connection(u"other application"_s));
            menu->offer(windowId, menus());
            QTRY_VERIFY(menu->isTaken());
            other.stop();
            QTRY_VERIFY(!menu->isTaken());
        }
        for (const auto &name : {u"other application"_s, u"other registrar"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void whatIsWithdrawnIsForgotten() {
        const auto shown = offered();
        _menu->withdraw();
        QVERIFY(!_menu->isTaken());
        QTRY_VERIFY(_registrar->menus.isEmpty());
        QCOMPARE(shown->call(u"GetLayout"_s, {0, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
        _registrar.reset();
        startRegistrar();
        settle();
        QCOMPARE(_registrar->registrations, 0);
    }

    void theLayoutIsThatOfTheMenus() {
        const auto shown = offered();
        const auto layout = shown->layout();
        QCOMPARE(layout.id, 0);
        QCOMPARE(layout.properties, (QVariantMap{{u"children-display"_s, u"submenu"_s}}));
        const QStringList wanted{u"_File"_s,
                                 u"  Start [Control R]"_s,
                                 u"  Stop [Control .] off"_s,
                                 u"  -"_s,
                                 u"  Save & Quit__now [Super Control Alt Shift minus] [plus]"_s,
                                 u"_Help"_s,
                                 u"  About"_s};
        QCOMPARE(DesktopBar::lines(layout), wanted);
        QCOMPARE(DesktopBar::child(layout, 0).properties.value(u"children-display"_s), u"submenu"_s);
        QVERIFY(!DesktopBar::child(DesktopBar::child(layout, 1), 0).properties.contains(u"children-display"_s));
    }

    void aLayoutIsAsDeepAndAsFullAsIsAskedFor() {
        const auto shown = offered();
        QVERIFY(shown->layout(0, 0).children.isEmpty());
        const auto heads = shown->layout(0, 1, {u"label"_s});
        QCOMPARE(DesktopBar::lines(heads), (QStringList{u"_File"_s, u"_Help"_s}));
        QCOMPARE(DesktopBar::child(heads, 0).properties, (QVariantMap{{u"label"_s, u"_File"_s}}));
        const auto help = shown->layout(DesktopBar::find(heads, u"_Help"_s));
        QCOMPARE(DesktopBar::lines(help), QStringList{u"About"_s});
    }

    void thePropertiesOfItemsCanBeAskedFor() {
        const auto shown = offered();
        const int stop = DesktopBar::find(shown->layout(), u"Stop"_s);
        const auto group = [&shown](const QList<int> &ids, const QStringList &names) {
            const auto reply = shown->call(u"GetGroupProperties"_s, {QVariant::fromValue(ids), names});
            return qdbus_cast<QList<DBusMenuProperties>>(reply.arguments().value(0));
        };
        const auto one = group({stop, 99}, {u"label"_s, u"enabled"_s});
        QCOMPARE(one.size(), 1);
        QCOMPARE(one.first().id, stop);
        QCOMPARE(one.first().properties, (QVariantMap{{u"label"_s, u"Stop"_s}, {u"enabled"_s, false}}));
        QCOMPARE(group({}, {}).size(), 8); // all of them, with what holds them
        const auto value = [&shown](int id, const QString &name) {
            return QDBusReply<QDBusVariant>(shown->call(u"GetProperty"_s, {id, name})).value().variant();
        };
        QCOMPARE(value(stop, u"enabled"_s), QVariant(false));
        QCOMPARE(value(stop, u"visible"_s), QVariant(true));
        QCOMPARE(value(stop, u"type"_s), QVariant(u"standard"_s));
    }

    void whatIsKnownOfTheMenuAsAWhole() {
        const auto shown = offered();
        QCOMPARE(shown->property(u"Version"_s), QVariant(3U));
        QCOMPARE(shown->property(u"Status"_s), QVariant(u"normal"_s));
        QCOMPARE(shown->property(u"TextDirection"_s), QVariant(u"ltr"_s));
        QCOMPARE(shown->property(u"IconThemePath"_s), QVariant(QStringList()));
    }

    void aClickPicksItsEntryOnce() {
        const auto shown = offered();
        const int about = DesktopBar::find(shown->layout(), u"About"_s);
        shown->send(about, u"hovered"_s);
        shown->send(about);
        shown->send(0);
        QTRY_COMPARE(_picked, QStringList{u"About"_s});
        settle();
        QCOMPARE(_picked.size(), 1);
    }

    void clicksCanComeTogether() {
        const auto shown = offered();
        const int about = DesktopBar::find(shown->layout(), u"About"_s);
        const auto group = [&shown](const QList<int> &ids) {
            QList<DBusMenuEvent> events;
            for (const int id : ids)
                events.append({.id = id, .kind = u"clicked"_s, .data = QDBusVariant(0), .time = 0});
            return shown->call(u"EventGroup"_s, {QVariant::fromValue(events)});
        };
        const auto reply = group({about, 99});
        QCOMPARE(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList{99});
        QTRY_COMPARE(_picked, QStringList{u"About"_s});
        QCOMPARE(group({98, 99}).type(), QDBusMessage::ErrorMessage);
    }

    void aMenuThatIsAboutToBeShownIsAsItWasTold() {
        const auto shown = offered();
        QCOMPARE(shown->call(u"AboutToShow"_s, {0}).arguments(), QVariantList{false});
        const auto reply = shown->call(u"AboutToShowGroup"_s, {QVariant::fromValue(QList{0, 99})});
        QCOMPARE(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>());
        QCOMPARE(qdbus_cast<QList<int>>(reply.arguments().value(1)), QList{99});
        const auto none = shown->call(u"AboutToShowGroup"_s, {QVariant::fromValue(QList{99})});
        QCOMPARE(none.type(), QDBusMessage::ErrorMessage);
    }

    void whatIsNotThereIsRefused_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        const auto data = QVariant::fromValue(QDBusVariant(0));
        QTest::newRow("layout") << u"GetLayout"_s << QVariantList{99, -1, QStringList()};
        QTest::newRow("below zero") << u"GetLayout"_s << QVariantList{-1, -1, QStringList()};
        QTest::newRow("item") << u"GetProperty"_s << QVariantList{99, u"label"_s};
        QTest::newRow("property") << u"GetProperty"_s << QVariantList{1, u"colour"_s};
        QTest::newRow("event") << u"Event"_s << QVariantList{99, u"clicked"_s, data, 0U};
        QTest::newRow("show") << u"AboutToShow"_s << QVariantList{99};
    }
    void whatIsNotThereIsRefused() {
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);
        const auto reply = offered()->call(method, arguments);
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
        QCOMPARE(reply.errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    }

    void onlyWhatHasChangedIsTold() {
        const auto shown = offered();
        const auto layout = shown->layout();
        const int start = DesktopBar::find(layout, u"Start"_s);
        const int stop = DesktopBar::find(layout, u"Stop"_s);
        _menu->update(menus());
        _menu->update(menus(true));
        QTRY_COMPARE(shown->updates, (QList{DesktopBar::Update{start, {{u"enabled"_s, false}}}}));
        QCOMPARE(shown->removals, (QList{std::pair{stop, QStringList{u"enabled"_s}}}));
        QVERIFY(shown->revisions.isEmpty());
        QCOMPARE(DesktopBar::lines(shown->layout()).at(1), u"  Start [Control R] off"_s);
    }

    void otherEntriesAreAnotherLayout() {
        const auto shown = offered();
        const auto revision = shown->call(u"GetLayout"_s, {0, -1, QStringList()}).arguments().value(0).toUInt();
        auto fewer = menus();
        fewer.removeLast();
        _menu->update(fewer);
        QTRY_COMPARE(shown->revisions, QList{revision + 1});
        QVERIFY(shown->updates.isEmpty());
        QCOMPARE(shown->layout().children.size(), 1);
    }

    void withoutABusNothingHappens() {
        const auto session = GlobalMenu::ofSession();
        const auto none = GlobalMenu::on(QDBusConnection(u"no such bus"_s));
        for (GlobalMenu *each : {session.get(), none.get()}) {
            each->offer(windowId, menus());
            each->update(menus(true));
            settle();
            QVERIFY(!each->isTaken());
            each->withdraw();
        }
    }

    void aWindowThatIsNotX11sIsNotOffered() {
        // The tests' platform is none that gives windows an id of the session's.
        qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.address().toUtf8());
        startRegistrar();
        const auto session = GlobalMenu::ofSession();
        session->offer(windowId, menus());
        auto ping = QDBusMessage::createMethodCall(u"com.canonical.AppMenu.Registrar"_s, u"/"_s,
                                                   u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
        const auto answer = QDBusConnection::sessionBus().call(ping, QDBus::BlockWithGui);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        QDBusConnection::disconnectFromBus(u"qt_default_session_bus"_s);
        QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(_registrar->registrations, 0);
    }
};

QTEST_MAIN(TestGlobalMenu)
#include "tst_globalmenu.moc"
