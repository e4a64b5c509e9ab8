#pragma once

#include "App/QualityProfile.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <optional>
#include <vector>

namespace zelk {

class AppModel;

/// What one showing of the setup gathers, and how it moves from screen to screen. Nothing of it reaches the engine
/// before `commit`, and nothing of it survives its end.
class SetupCoordinator final : public QObject {
    Q_OBJECT
    Q_PROPERTY(Mode mode READ mode CONSTANT)
    Q_PROPERTY(Screen currentScreen READ currentScreen NOTIFY currentScreenChanged)
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY currentScreenChanged)
    Q_PROPERTY(int stepCount READ stepCount CONSTANT)
    Q_PROPERTY(bool isFirst READ isFirst NOTIFY currentScreenChanged)
    Q_PROPERTY(bool isLast READ isLast NOTIFY currentScreenChanged)
    /// The engine's tools are there. Whoever shows the screen of the tools keeps the user from going on without them.
    Q_PROPERTY(bool canAdvancePastTools READ canAdvancePastTools NOTIFY canAdvancePastToolsChanged)
    Q_PROPERTY(zelk::SetupEnums::QualityProfile qualityProfile READ qualityProfile WRITE setQualityProfile NOTIFY
                   qualityProfileChanged)
    Q_PROPERTY(bool identityEnabled READ identityEnabled WRITE setIdentityEnabled NOTIFY identityEnabledChanged)
    Q_PROPERTY(bool identityStrict READ identityStrict WRITE setIdentityStrict NOTIFY identityStrictChanged)
    Q_PROPERTY(QString outputDir READ outputDir WRITE setOutputDir NOTIFY outputDirChanged)
    // Secrets that the user enters. They start empty, since the engine gives none away; what stays empty at the commit
    // leaves the stored secret as it is.
    Q_PROPERTY(QString soundcloudToken READ soundcloudToken WRITE setSoundcloudToken NOTIFY soundcloudTokenChanged)
    Q_PROPERTY(QString acoustidKey READ acoustidKey WRITE setAcoustidKey NOTIFY acoustidKeyChanged)
    Q_PROPERTY(
        QString proxySubscription READ proxySubscription WRITE setProxySubscription NOTIFY proxySubscriptionChanged)
    Q_PROPERTY(bool isCommitting READ isCommitting NOTIFY isCommittingChanged)

public:
    enum class Mode { firstRun, reRun };
    Q_ENUM(Mode)
    enum class Screen { welcome, prepareTools, connectMusic, downloadSources, fineTuning, finish };
    Q_ENUM(Screen)

    /// Over `model`, which may go away first. Without a configuration it starts from the defaults.
    SetupCoordinator(Mode mode, AppModel *model, const std::optional<SafeConfig> &config, QObject *parent = nullptr);

    Mode mode() const { return _mode; }
    /// All screens on the first run; a later one has no welcome.
    const std::vector<Screen> &screenOrder() const { return _screenOrder; }
    Screen currentScreen() const { return _currentScreen; }
    int currentIndex() const;
    int stepCount() const { return static_cast<int>(_screenOrder.size()); }
    bool isFirst() const { return currentIndex() == 0; }
    bool isLast() const { return currentIndex() >= stepCount() - 1; }
    bool canAdvancePastTools() const;
    /// No account with playlists is connected, and the Music library of this machine isn't open to us either.
    bool hasNoSource() const;

    /// The sources to download from, in the order in which they are tried.
    const std::vector<SourceId> &selectedSources() const { return _selectedSources; }
    void setSelectedSources(std::vector<SourceId> sources);
    QualityProfile qualityProfile() const { return _qualityProfile; }
    void setQualityProfile(QualityProfile profile);
    bool identityEnabled() const { return _identityEnabled; }
    void setIdentityEnabled(bool enabled);
    bool identityStrict() const { return _identityStrict; }
    void setIdentityStrict(bool strict);
    const QString &outputDir() const { return _outputDir; }
    void setOutputDir(const QString &folder);
    const QString &soundcloudToken() const { return _soundcloudToken; }
    void setSoundcloudToken(const QString &token);
    const QString &acoustidKey() const { return _acoustidKey; }
    void setAcoustidKey(const QString &key);
    const QString &proxySubscription() const { return _proxySubscription; }
    void setProxySubscription(const QString &url);
    /// Not for the user to choose here, only to be sent back as it was.
    SafeConfig::Theme uiTheme() const { return _uiTheme; }
    bool isCommitting() const { return _isCommitting; }
    /// Why the last commit failed; it keeps the setup open.
    const std::optional<QString> &lastError() const { return _lastError; }
    bool dismissedSourceWarning() const { return _dismissedSourceWarning; }

    /// To the next screen and to the one before; nothing at the ends.
    Q_INVOKABLE void advance();
    Q_INVOKABLE void back();
    Q_INVOKABLE void goToConnectMusic();

    /// Gives the engine all that was gathered: first the configuration, then the secrets. A secret that can't be stored
    /// holds nobody up; a configuration that can't shows in `lastError`. It is for the caller not to start a second one
    /// beside the first.
    QCoro::Task<> commit();

    /// The end of the setup as its last button asks for it: commits and closes, or asks first (sourceWarningNeeded)
    /// when there would be no playlist to sync.
    Q_INVOKABLE void attemptFinish();
    // The two answers to that question.
    Q_INVOKABLE void connectASource() { goToConnectMusic(); }
    Q_INVOKABLE void continueAnyway();

Q_SIGNALS:
    void currentScreenChanged();
    void canAdvancePastToolsChanged();
    void selectedSourcesChanged();
    void qualityProfileChanged();
    void identityEnabledChanged();
    void identityStrictChanged();
    void outputDirChanged();
    void soundcloudTokenChanged();
    void acoustidKeyChanged();
    void proxySubscriptionChanged();
    void isCommittingChanged();
    void lastErrorChanged();
    void sourceWarningNeeded();

private:
    void go(int index);
    void followTools();
    ConfigPatch patch() const;
    QCoro::Task<> storeSecret(AccountService service, QString secret);
    void startFinish();
    QCoro::Task<> finish();
    template<typename T>
    void assign(T &member, T value, void (SetupCoordinator::*changed)());

    const Mode _mode;
    const QPointer<AppModel> _model;
    const std::vector<Screen> _screenOrder;
    Screen _currentScreen;
    std::vector<SourceId> _selectedSources{SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud,
                                           SourceId::youtube};
    QualityProfile _qualityProfile = QualityProfile::balanced;
    bool _identityEnabled = false;
    bool _identityStrict = false;
    QString _outputDir = QStringLiteral("~/Music/DjayImport");
    QString _soundcloudToken;
    QString _acoustidKey;
    QString _proxySubscription;
    SafeConfig::Theme _uiTheme = SafeConfig::Theme::dark;
    bool _isCommitting = false;
    std::optional<QString> _lastError;
    bool _dismissedSourceWarning = false;
};

} // namespace zelk
