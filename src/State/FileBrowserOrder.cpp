#include "State/FileBrowserOrder.h"

#include <algorithm>

namespace zelk {

namespace {

QLocale collationOf(const QLocale &locale) {
    const QLocale collation = locale.collation();
    // The collator of the C locale compares code points, whatever it is told of numbers.
    return collation.language() == QLocale::C ? QLocale(QLocale::English) : collation;
}

} // namespace

FileBrowserOrder::FileBrowserOrder(const QLocale &locale) : _collator(collationOf(locale)) {
    _collator.setNumericMode(true);
}

std::vector<PlaylistDTO> sortedByName(std::vector<PlaylistDTO> playlists, const FileBrowserOrder &order) {
    std::ranges::stable_sort(playlists, order, &PlaylistDTO::name);
    return playlists;
}

} // namespace zelk
