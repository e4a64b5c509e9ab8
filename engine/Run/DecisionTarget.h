#pragma once

#include "Library/AudioFile.h"
#include "Store/Records.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QString>

#include <stdexcept>

namespace zelk::engine {

/// A decision takes nothing that can be used. what() is a sentence in UTF-8 that says what to do.
class TargetRefused : public std::runtime_error {
public:
    explicit TargetRefused(const QString &what) : std::runtime_error(what.toStdString()) {}
};

/// The web address that a decision gives; empty if it gives none.
QString addressIn(const ReviewDecision &decision);

/// The absolute path or web address that a decision on a track takes; empty for skip. Throws TargetRefused.
QString placeTaken(const PendingReview &review, const ReviewDecision &decision);

/// Reads the file of this computer that a decision takes. Throws TargetRefused.
AudioFile fileTaken(const PendingReview &review, const QString &path);

} // namespace zelk::engine
