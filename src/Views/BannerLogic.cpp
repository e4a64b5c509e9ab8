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

BannerLogic::BannerLogic(SyncStore &sync, QObject *parent) : QObject(parent), m_sync(sync) {
    connect(&m_sync, &SyncStore::bannerChanged, this, &BannerLogic::follow);
    follow();
}

void BannerLogic::follow() {
    if (m_sync.banner())
        m_last = *m_sync.banner();
    Q_EMIT changed();
}

} // namespace zelk
