#pragma once

#include "State/SyncStore.h"
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

public:
    explicit BannerLogic(SyncStore &sync, QObject *parent = nullptr);

    bool shown() const { return m_sync.banner().has_value(); }
    QString message() const { return m_last.message; }
    QString symbol() const { return bannerSymbol(m_last.kind); }
    int ink() const { return static_cast<int>(bannerInk(m_last.kind)); }

    Q_INVOKABLE void dismiss() { m_sync.setBanner(std::nullopt); }

Q_SIGNALS:
    void changed();

private:
    void follow();

    SyncStore &m_sync;
    SyncBanner m_last;
};

} // namespace zelk
