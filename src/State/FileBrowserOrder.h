#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QCollator>
#include <QLocale>

#include <vector>

namespace zelk {

/// The order in which a file browser shows names: by the language's rules, and numbers in them by their value, so that
/// "Mix 2" comes before "Mix 10".
class FileBrowserOrder {
public:
    explicit FileBrowserOrder(const QLocale &locale = QLocale());

    bool operator()(const QString &a, const QString &b) const { return _collator.compare(a, b) < 0; }

private:
    QCollator _collator;
};

/// The playlists by name. Those of the same name stay in the order given.
std::vector<PlaylistDTO> sortedByName(std::vector<PlaylistDTO> playlists,
                                      const FileBrowserOrder &order = FileBrowserOrder());

} // namespace zelk
