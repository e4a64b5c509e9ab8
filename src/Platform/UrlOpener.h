#pragma once

#include <memory>

class QUrl;

namespace zelk {

/// Opens a URL with the program that the user has chosen for its kind.
class UrlOpener {
public:
    virtual ~UrlOpener() = default;

    /// False when there is no such program, or it could not be started. On the main thread.
    virtual bool open(const QUrl &url) = 0;

    static std::shared_ptr<UrlOpener> make();
};

} // namespace zelk
