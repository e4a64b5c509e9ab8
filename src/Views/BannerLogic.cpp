#include "Views/BannerLogic.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk {

QString bannerSymbol(SyncBanner::Kind kind) {
    switch (kind) {
    case SyncBanner::Kind::info:
        return u"info.circle.fill"_s;
    case SyncBanner::Kind::warning:
        return u"exclamationmark.triangle.fill"_s;
    case SyncBanner::Kind::error:
        return u"xmark.octagon.fill"_s;
    }
    return {};
}

Ink bannerInk(SyncBanner::Kind kind) {
    switch (kind) {
    case SyncBanner::Kind::info:
        return Ink::accent;
    case SyncBanner::Kind::warning:
        return Ink::orange;
    case SyncBanner::Kind::error:
        return Ink::red;
    }
    return Ink::primary;
}

BannerLogic::BannerLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(m_model.sync(), &SyncStore::bannerChanged, this, &BannerLogic::follow);
    follow();
}

void BannerLogic::follow() {
    if (const auto &banner = m_model.sync()->banner())
        m_last = *banner;
    Q_EMIT changed();
}

bool BannerLogic::offersReconnect() const {
    return m_last.code == wireName(EngineErrorCode::spotifyAuthExpired);
}

void BannerLogic::reconnect() {
    if (shown() && offersReconnect())
        m_model.beginOnboarding();
}

} // namespace zelk
