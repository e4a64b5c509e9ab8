#pragma once

#include "App/AppModel.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

#include <functional>
#include <optional>

namespace zelk {

// What the tabs share that change the engine's configuration: each change goes out at once, as a patch of its own, and
// what is shown is what the engine then reports. A change that fails shows its old value again.
class SettingsTabLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool hasConfig READ hasConfig NOTIFY configChanged)

public:
    bool hasConfig() const { return config() != nullptr; }

Q_SIGNALS:
    void configChanged();

protected:
    explicit SettingsTabLogic(AppModel &model, QObject *parent);

    AppModel &model() const { return m_model; }
    // Null while there is none.
    const SafeConfig *config() const;

    // Makes the patch on the next turn, of what then holds, and sends it; none sends nothing.
    void apply(std::function<std::optional<ConfigPatch>()> make);
    // Gives the engine a secret as it stands. A failure leaves no trace.
    void storeToken(AccountService service, const QString &token);

private:
    void attach();

    AppModel &m_model;
    QPointer<SettingsStore> m_settings;
};

} // namespace zelk
