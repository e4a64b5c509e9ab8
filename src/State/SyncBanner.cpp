#include "State/SyncBanner.h"

namespace zelk {

SyncBanner SyncBanner::make(Kind kind, QString message, std::optional<QString> code) {
    SyncBanner banner;
    banner.kind = kind;
    banner.message = std::move(message);
    banner.code = std::move(code);
    return banner;
}

} // namespace zelk
