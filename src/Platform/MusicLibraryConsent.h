#pragma once

#include "Platform/ConsentStatus.h"

#include <QString>

#include <memory>

namespace zelk {

class RememberedConsent;

/// Whether this application may read the user's own music library, and can.
class MusicLibraryConsent {
public:
    virtual ~MusicLibraryConsent() = default;

    /// Without asking it answers at once, on the main thread. Asking blocks for as long as the user takes, and so never
    /// happens on the main thread; it ends without an answer when the application does.
    virtual ConsentStatus determine(bool askIfNeeded) = 0;
    /// Whether the user has answered before, so that asking shows nothing any more; false where nobody can tell. On the
    /// main thread.
    virtual bool wasAnswered() const { return false; }

    /// This platform's: the user has allowed the reading of `libraryFile`, and it is readable. Once that is allowed,
    /// nothing is asked any more, be the file there or not. Made on the main thread.
    static std::shared_ptr<MusicLibraryConsent> make(std::shared_ptr<RememberedConsent> consent, QString libraryFile);
};

} // namespace zelk
