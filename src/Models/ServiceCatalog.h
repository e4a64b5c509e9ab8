#pragma once

#include "App/QualityProfile.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QString>

#include <array>
#include <optional>

/// The services that the user chooses from, with what is said of each: fixed tables for the setup and the settings.
namespace zelk::ServiceCatalog {

/// A source of audio.
struct DownloadSourceInfo {
    SourceId id{};
    QString name;
    QString assetName; ///< in the table of symbols
    QString blurb;     ///< one sentence
    /// The account under which its key is stored, and what stands in the key's empty field; none where it takes no key.
    std::optional<AccountService> keyService{};
    std::optional<QString> keyPlaceholder{};
    bool operator==(const DownloadSourceInfo &) const = default;
};

/// In the order in which they are tried by default.
const std::array<DownloadSourceInfo, 4> &downloadSources();
const DownloadSourceInfo &downloadSource(SourceId id);

/// One of the choices of quality.
struct QualityProfileInfo {
    QualityProfile id{};
    QString name;
    QString blurb;
    bool operator==(const QualityProfileInfo &) const = default;
};

const std::array<QualityProfileInfo, 3> &qualityProfiles();
const QualityProfileInfo &qualityProfile(QualityProfile id);

} // namespace zelk::ServiceCatalog
