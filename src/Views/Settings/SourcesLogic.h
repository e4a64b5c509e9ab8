#pragma once

#include "Views/Settings/SettingsTabLogic.h"
#include "Views/Settings/SourceOrder.h"

#include <QVariantList>

#include <set>

namespace zelk {

// One setting of a run as it is shown.
struct RunSettingFace {
    Q_GADGET
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(double value MEMBER value CONSTANT)
    Q_PROPERTY(double minimum MEMBER minimum CONSTANT)
    Q_PROPERTY(double maximum MEMBER maximum CONSTANT)
    Q_PROPERTY(double step MEMBER step CONSTANT)

public:
    QString text;
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double step = 1;
    bool operator==(const RunSettingFace &) const = default;
};

// The tab of the sources of audio: which are used, in what order, and how a run goes about it.
class SourcesLogic : public zelk::SettingsTabLogic {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QAbstractItemModel *order READ order CONSTANT)
    // RunSettingFaces; always as many, and empty ones without a configuration.
    Q_PROPERTY(QVariantList runSettings READ runSettings NOTIFY configChanged)

public:
    explicit SourcesLogic(AppModel &model, QObject *parent = nullptr);

    SourceOrder *order() { return &m_order; }
    QVariantList runSettings() const;

    // To be called when the tab first shows: from then on the order is the user's, whatever the engine reports.
    Q_INVOKABLE void fill();
    // `to` is the place afterwards. The order goes out even if it is as it was.
    Q_INVOKABLE void move(int from, int to);
    Q_INVOKABLE void setEnabled(int row, bool enabled);
    Q_INVOKABLE void storeSoundcloud(const QString &token) { storeToken(AccountService::soundcloud, token); }
    // Kept within the setting's range.
    Q_INVOKABLE void setRunSetting(int index, double value);

private:
    std::set<SourceId> enabled() const;

    SourceOrder m_order;
};

} // namespace zelk
