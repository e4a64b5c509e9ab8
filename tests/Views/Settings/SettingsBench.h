#pragma once

#include "App/Surroundings.h"
#include "Services/InstallerBench.h"
#include "Services/UpdaterModel.h"
#include "Styling/TokensSingleton.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Views/Accessible.h"
#include "Views/Appearance.h"
#include "Views/ScriptedFolders.h"
#include "Views/Settings/SettingsWindow.h"

#include <QNetworkAccessManager>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <iterator>
#include <vector>

namespace zelk {

// A view that warns is a view that is broken somewhere. The platform without a display has nothing to raise or to hint
// at.
inline void failOnWarnings() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
}

// A desktop whose user wants what the test says.
class WantedDesktop final : public DesktopSettings {
public:
    using DesktopSettings::setColorScheme;
    using DesktopSettings::setIncreasedContrast;
    using DesktopSettings::setTextScale;
};

// Counts how often something is said of an update.
class CountedUpdates final : public UpdateUserDriver {
public:
    void show(const UpdateScene::Any &) override { ++scenes; }
    void raise() override {}
    int scenes = 0;
};

// The settings over an engine that answers as it is told, and hands to use them with.
class SettingsBench {
public:
    // The engine has that configuration; none lets every question for it wait.
    explicit SettingsBench(const std::optional<SafeConfig> &config = SampleData::sampleConfig()) : engineHas(config) {
        open();
    }
    ~SettingsBench() {
        settings.reset();
        settle();
    }
    Q_DISABLE_COPY_MOVE(SettingsBench)

    static QByteArray reply(const SafeConfig &config) {
        return JSONValue::object({{QStringLiteral("config"), toJSONValue(config)}}).json();
    }
    // Shows the window, with the configuration there.
    void open() {
        answerConfig();
        settings->open();
        QVERIFY(QTest::qWaitForWindowActive(window()));
        settle();
    }
    // Lets the next question for the configuration be answered.
    void answerConfig() {
        if (engineHas)
            client->reply(Method::getConfig, reply(*engineHas));
    }
    // Has the engine take the next change, and report that configuration afterwards.
    void takeChange(const SafeConfig &after) {
        engineHas = after;
        client->reply(Method::setConfig, "null");
        answerConfig();
    }
    // What reached the engine by that method, in its order.
    std::vector<Request> sent(Method method) const {
        settle();
        std::vector<Request> found;
        std::ranges::copy_if(client->sent(), std::back_inserter(found),
                             [method](const Request &each) { return each.method() == method; });
        return found;
    }
    std::vector<Request> changes() const { return sent(Method::setConfig); }
    // One change of the configuration.
    template<typename Field, typename Value>
    static Request change(Field ConfigPatch::*field, const Value &value) {
        ConfigPatch patch;
        patch.*field = value;
        return Request::setConfig(patch);
    }

    QQuickWindow *window() const { return settings->window(); }
    void show(int tab) {
        click(items("settingsTab").at(tab));
        settle();
    }
    template<class Wanted>
    static QList<QQuickItem *> itemsOf(QQuickItem *root, const Wanted &wanted) {
        QList<QQuickItem *> found;
        if (!root->isVisible())
            return found;
        if (wanted(root))
            found += root;
        const auto children = root->childItems();
        for (QQuickItem *child : children)
            found += itemsOf(child, wanted);
        return found;
    }
    QList<QQuickItem *> items(const char *objectName) const {
        const QString name = QString::fromLatin1(objectName);
        return itemsOf(window()->contentItem(), [&name](QQuickItem *each) { return each->objectName() == name; });
    }
    QQuickItem *item(const char *objectName) const { return items(objectName).value(0); }
    // The texts in view, top to bottom and left to right.
    QStringList texts() const {
        QStringList result;
        const auto all =
            itemsOf(window()->contentItem(), [](QQuickItem *each) { return each->inherits("QQuickText"); });
        for (QQuickItem *each : all) {
            if (const QString text = each->property("text").toString(); !text.isEmpty())
                result += text;
        }
        return result;
    }
    bool shows(const QString &text) const { return texts().contains(text); }
    // Scrolls there as the keyboard does, and clicks.
    void click(QQuickItem *target) const {
        QVERIFY(target);
        reveal(target);
        const QPointF middle = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
        QTest::mouseClick(window(), Qt::LeftButton, {}, middle.toPoint());
    }
    void click(const char *objectName) const { click(item(objectName)); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const { QTest::keyClick(window(), key, modifiers); }
    void focus(const char *objectName) const { item(objectName)->forceActiveFocus(Qt::TabFocusReason); }
    // The entries of the menu that is open.
    QList<QQuickItem *> entries() const {
        return itemsOf(window()->contentItem(), [](QQuickItem *each) { return each->inherits("QQuickMenuItem"); });
    }
    static bool isOn(const QQuickItem *item) { return item->property("on").toBool(); }
    // Everything that a screen reader finds in the tab in view, as "role: name".
    QStringList spokenTree() const {
        QStringList result;
        gather(QAccessible::queryAccessibleInterface(window()), result);
        return result.filter(QStringLiteral(": "));
    }

    std::optional<SafeConfig> engineHas;
    std::shared_ptr<ScriptedClient> client = std::make_shared<ScriptedClient>();
    std::shared_ptr<WantedDesktop> desktop = std::make_shared<WantedDesktop>();
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<ScriptedFolders> folders = std::make_shared<ScriptedFolders>();
    InstallerBench machine;
    CountedUpdates updates;
    AppModel::Surroundings around = surroundings(clock);
    std::shared_ptr<Appearance> appearance = std::make_shared<Appearance>(desktop, around.defaults);
    AppModel model{client, withPlaces(around)};
    UpdaterModel updater{updaterSurroundings()};
    std::unique_ptr<SettingsWindow> settings = std::make_unique<SettingsWindow>(
        model, SettingsWindow::Surroundings{.appearance = appearance,
                                            .defaults = around.defaults,
                                            .updater = &updater,
                                            .installer = std::make_shared<CLIInstaller>(machine.around),
                                            .folders = folders});

private:
    AppModel::Surroundings withPlaces(AppModel::Surroundings made) const {
        made.toolPlaces = machine.places();
        made.toolTarget = [engine = machine.engine] { return std::optional(engine); };
        return made;
    }
    UpdaterSurroundings updaterSurroundings() {
        UpdaterSurroundings here{.bundle = Bundle(machine.folder.path(), {})};
        here.folder = machine.folder.path();
        here.defaults = around.defaults;
        here.clock = clock;
        here.wallTime = [] { return QDateTime(QDate(2030, 1, 1), QTime(12, 0), Qt::UTC); };
        here.network = std::make_shared<QNetworkAccessManager>();
        here.driver = &updates;
        return here;
    }
    void reveal(QQuickItem *target) const {
        for (QQuickItem *page : itemsOf(window()->contentItem(), [](QQuickItem *each) {
                 return each->inherits("QQuickFlickable") && each->property("furthest").isValid();
             }))
            QMetaObject::invokeMethod(page, "reveal", Q_ARG(QQuickItem *, target));
    }
    static void gather(QAccessibleInterface *interface, QStringList &result) {
        if (!interface || interface->state().invisible)
            return;
        static const QHash<QAccessible::Role, QString> roles{
            {QAccessible::CheckBox, QStringLiteral("switch: ")},
            {QAccessible::ButtonMenu, QStringLiteral("pop-up: ")},
            {QAccessible::Button, QStringLiteral("button: ")},
            {QAccessible::StaticText, QStringLiteral("text: ")},
            {QAccessible::Heading, QStringLiteral("heading: ")},
            {QAccessible::EditableText, QStringLiteral("field: ")},
            {QAccessible::SpinBox, QStringLiteral("stepper: ")},
            {QAccessible::List, QStringLiteral("list: ")},
            {QAccessible::ListItem, QStringLiteral("row: ")},
            {QAccessible::Graphic, QStringLiteral("picture: ")},
            {QAccessible::Grouping, QStringLiteral("section: ")},
        };
        if (const QString name = interface->text(QAccessible::Name); !name.isEmpty())
            result += roles.value(interface->role()) + name;
        for (int i = 0; i < interface->childCount(); ++i)
            gather(interface->child(i), result);
    }
};

} // namespace zelk
