#pragma once

#include <QCollator>
#include <QLocale>

#include <algorithm>
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

/// What has a `name`, by it. Those of the same name stay in the order given.
template<typename Named>
std::vector<Named> sortedByName(std::vector<Named> list, const FileBrowserOrder &order = FileBrowserOrder()) {
    std::ranges::stable_sort(list, order, &Named::name);
    return list;
}

} // namespace zelk
