#pragma once

#include "App/AppModel.h"
#include "Styling/Tokens.h"

#include <QObject>
#include <qqmlregistration.h>

namespace zelk {

QString bannerSymbol(SyncBanner::Kind kind);
Ink bannerInk(SyncBanner::Kind kind);

// The message over the list. While it leaves, it keeps what it said.
class BannerLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(int ink READ ink NOTIFY changed)
    // Whether connecting Spotify again is what would help.
    Q_PROPERTY(bool offersReconnect READ offersReconnect NOTIFY changed)

public:
    explicit BannerLogic(AppModel &model, QObject *parent = nullptr);

    bool shown() const { return m_model.sync()->banner().has_value(); }
    QString message() const { return m_last.message; }
    QString symbol() const { return bannerSymbol(m_last.kind); }
    int ink() const { return static_cast<int>(bannerInk(m_last.kind)); }
    bool offersReconnect() const;

    Q_INVOKABLE void dismiss() { m_model.sync()->setBanner(std::nullopt); }
    // Opens the setup, where Spotify is connected. The message stays.
    Q_INVOKABLE void reconnect();

Q_SIGNALS:
    void changed();

private:
    void follow();

    AppModel &m_model;
    SyncBanner m_last;
};

} // namespace zelk
