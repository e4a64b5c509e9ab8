#include "Platform/UrlOpener.h"

#include <QDesktopServices>
#include <QUrl>

namespace zelk {

namespace {

class DesktopUrlOpener final : public UrlOpener {
public:
    bool open(const QUrl &url) override { return QDesktopServices::openUrl(url); }
};

} // namespace

std::shared_ptr<UrlOpener> UrlOpener::make() {
    return std::make_shared<DesktopUrlOpener>();
}

} // namespace zelk
