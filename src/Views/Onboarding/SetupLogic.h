#pragma once

#include "App/AppModel.h"
#include "Views/Onboarding/ConnectMusicLogic.h"
#include "Views/Onboarding/PrepareToolsLogic.h"
#include "Views/Onboarding/SetupChoices.h"
#include "Views/Onboarding/SetupTexts.h"

#include <QPointer>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// The setup's sheet and its frame: whether it is up, which screen it shows, and the buttons that move between screens.
// It is there with the window; what a showing of the setup gathers comes and goes.
class SetupLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool presented READ presented NOTIFY presentedChanged)
    // There is something to show on the sheet.
    Q_PROPERTY(bool present READ present NOTIFY changed)
    // The place of the screen among all screens, in the order of SetupCoordinator::Screen.
    Q_PROPERTY(int screen READ screenIndex NOTIFY changed)
    Q_PROPERTY(bool hasHeader READ hasHeader NOTIFY changed)
    // A SetupHeaderInfo.
    Q_PROPERTY(QVariant header READ header NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(int stepCount READ stepCount NOTIFY changed)
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY changed)
    Q_PROPERTY(bool showsBack READ showsBack NOTIFY changed)
    Q_PROPERTY(bool backEnabled READ backEnabled NOTIFY changed)
    Q_PROPERTY(bool showsSkip READ showsSkip NOTIFY changed)
    Q_PROPERTY(QString primaryText READ primaryText NOTIFY changed)
    Q_PROPERTY(bool primaryEnabled READ primaryEnabled NOTIFY changed)
    // What the screens show.
    Q_PROPERTY(zelk::PrepareToolsLogic *tools READ tools CONSTANT)
    Q_PROPERTY(zelk::ConnectMusicLogic *music READ music CONSTANT)
    Q_PROPERTY(zelk::SetupChoices *choices READ choices CONSTANT)

public:
    using Screen = SetupCoordinator::Screen;

    SetupLogic(AppModel &model, std::shared_ptr<UserDefaults> defaults, std::shared_ptr<FolderPanel> folders,
               QObject *parent = nullptr);

    // Opens the setup for somebody who has never been through it.
    void offer();

    bool presented() const { return m_model.isOnboardingPresented(); }
    bool present() const { return m_coordinator; }
    Screen screen() const { return m_coordinator ? m_coordinator->currentScreen() : Screen::welcome; }
    bool hasHeader() const { return headerInfo(screen()).has_value(); }
    QVariant header() const { return QVariant::fromValue(headerInfo(screen()).value_or(SetupHeaderInfo())); }
    QString title() const { return screenTitle(screen()); }
    int stepCount() const { return m_coordinator ? m_coordinator->stepCount() : 0; }
    int currentIndex() const { return m_coordinator ? m_coordinator->currentIndex() : 0; }
    bool showsBack() const { return currentIndex() > 0; }
    bool backEnabled() const;
    bool showsSkip() const { return present() && offersSkip(screen()); }
    QString primaryText() const { return zelk::primaryText(screen()); }
    bool primaryEnabled() const;
    PrepareToolsLogic *tools() { return &m_tools; }
    ConnectMusicLogic *music() { return &m_music; }
    SetupChoices *choices() { return &m_choices; }

    Q_INVOKABLE void back();
    Q_INVOKABLE void skip();
    // Goes on, or ends the setup on its last screen; nothing while that is not enabled.
    Q_INVOKABLE void primary();
    // Leaves the setup where it stands: nothing of it is kept.
    Q_INVOKABLE void close() { m_model.setOnboardingPresented(false); }
    // The two answers to the question about missing playlists.
    Q_INVOKABLE void connectASource();
    Q_INVOKABLE void continueAnyway();

Q_SIGNALS:
    void presentedChanged();
    void changed();
    // Nothing would be there to sync: the user is to be asked whether to end the setup all the same.
    void sourceWarningNeeded();

private:
    int screenIndex() const { return static_cast<int>(screen()); }
    void follow();
    void followTools();
    void remember();

    AppModel &m_model;
    const std::shared_ptr<UserDefaults> m_defaults;
    QPointer<SetupCoordinator> m_coordinator;
    PrepareToolsLogic m_tools;
    ConnectMusicLogic m_music;
    SetupChoices m_choices;
    bool m_isEnding = false; // asked for, but not begun yet
};

} // namespace zelk
