#include "Support/FileBrowserOrder.h"

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

} // namespace zelk
