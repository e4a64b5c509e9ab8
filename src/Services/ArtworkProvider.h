#pragma once

#include "Platform/MusicLibrary.h"
#include "Support/Clock.h"
#include "Support/SerialExecutor.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QCoroTask>
#include <QDateTime>
#include <QImage>

#include <functional>
#include <memory>
#include <stop_token>

namespace zelk {

class ArtworkCache;

/// Turns references to covers into pictures of the size asked for: fetches them from the network, reads them from the
/// local music library, composes mosaics of them, and keeps them in memory and on disk. A failure of whatever kind is
/// the absence of a picture. All of its work runs on an executor of its own.
class ArtworkProvider {
public:
    struct Surroundings {
        QString cachesFolder; ///< the user's; the covers are in a folder below
        std::shared_ptr<Clock> clock;
        std::function<QDateTime()> wallTime; ///< called on the provider's executor
        /// Opens the local library, on the provider's executor. Throws `MusicLibraryError`.
        std::function<std::unique_ptr<MusicLibrary>()> openLibrary;
        /// Whether the user lets the library be read: asked on the thread of each call that would need it, before
        /// anything is tried. Without one the answer is no.
        std::function<bool()> mayReadLibrary;
    };

    explicit ArtworkProvider(Surroundings surroundings);
    /// Calls under way end without a picture.
    ~ArtworkProvider();
    Q_DISABLE_COPY_MOVE(ArtworkProvider)

    /// The process's own, which the views ask; null until the application has given one. On the main thread.
    static std::shared_ptr<ArtworkProvider> shared();
    static void setShared(std::shared_ptr<ArtworkProvider> provider);

    /// What memory holds for that edge in points, or null; at once, from any thread.
    QImage cachedImage(const ArtworkRef &ref, double size) const;
    /// The picture for that edge in points, at 2 pixels a point; null when there is none, and for a cancelled caller.
    /// Never throws.
    QCoro::Task<QImage> image(ArtworkRef ref, double size, std::stop_token stop = {});
    /// False once the library could not be opened. Throws `Cancelled` when the provider has gone.
    QCoro::Task<bool> iTunesLibraryAvailable();

    /// What both caches know a picture by.
    static QString key(const ArtworkRef &ref, double size);

private:
    class Core;
    struct Place;

    const std::shared_ptr<ArtworkCache> _memory;
    const std::function<bool()> _mayReadLibrary;
    const SerialExecutor::Ref _executor;
    std::shared_ptr<Place> _place;
};

} // namespace zelk
