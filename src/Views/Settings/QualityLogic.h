#pragma once

#include "Views/Settings/SettingsTabLogic.h"

#include <QStringList>

namespace zelk {

// What the settings of quality come to, as a sentence. Whether only lossless files are taken is no part of it.
QString summary(const SafeConfig::Quality &quality);

// The tab of how good a file must be, and of how sure a match must be.
class QualityLogic : public zelk::SettingsTabLogic {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QStringList floors READ floors CONSTANT)
    Q_PROPERTY(int floor READ floor WRITE setFloor NOTIFY configChanged) // a place in `floors`; -1 for none
    Q_PROPERTY(bool losslessOnly READ losslessOnly WRITE setLosslessOnly NOTIFY configChanged)
    Q_PROPERTY(bool bestQuality READ bestQuality WRITE setBestQuality NOTIFY configChanged)
    Q_PROPERTY(bool upgradeEnabled READ upgradeEnabled WRITE setUpgradeEnabled NOTIFY configChanged)
    Q_PROPERTY(QString summary READ summaryText NOTIFY configChanged)
    Q_PROPERTY(bool verifies READ verifies WRITE setVerifies NOTIFY configChanged)
    Q_PROPERTY(bool strict READ strict WRITE setStrict NOTIFY configChanged)

public:
    explicit QualityLogic(AppModel &model, QObject *parent = nullptr) : SettingsTabLogic(model, parent) {}

    QStringList floors() const;
    // Each setting is written alone: none implies another, and what they come to together is the engine's to say.
    int floor() const;
    void setFloor(int floor);
    bool losslessOnly() const { return quality().losslessOnly; }
    void setLosslessOnly(bool on) { push(&SafeConfig::Quality::losslessOnly, on); }
    bool bestQuality() const { return quality().bestQuality; }
    void setBestQuality(bool on) { push(&SafeConfig::Quality::bestQuality, on); }
    bool upgradeEnabled() const { return quality().upgradeEnabled; }
    void setUpgradeEnabled(bool on) { push(&SafeConfig::Quality::upgradeEnabled, on); }
    QString summaryText() const { return hasConfig() ? zelk::summary(quality()) : QString(); }
    bool verifies() const { return hasConfig() && config()->identity.enabled; }
    void setVerifies(bool on) { pushIdentity(&SafeConfig::Identity::enabled, on); }
    bool strict() const { return hasConfig() && config()->identity.strict; }
    void setStrict(bool on) { pushIdentity(&SafeConfig::Identity::strict, on); }

    Q_INVOKABLE void storeAcoustID(const QString &key) { storeToken(AccountService::acoustid, key); }

private:
    SafeConfig::Quality quality() const { return hasConfig() ? config()->quality : SafeConfig::Quality(); }

    template<typename Value>
    void push(Value SafeConfig::Quality::*field, Value value) {
        apply([this, field, value]() -> std::optional<ConfigPatch> {
            if (!hasConfig())
                return std::nullopt;
            ConfigPatch patch;
            patch.quality = config()->quality;
            *patch.quality.*field = value;
            return patch;
        });
    }
    void pushIdentity(bool SafeConfig::Identity::*field, bool value);
};

} // namespace zelk
