#pragma once

#include <QStringView>

#include <compare>

namespace zelk {

/// Orders two versions as an update means it. A version is a row of numbers and words; every other character only parts
/// them, and what follows a "+" tells of the build and doesn't count. Numbers compare by value, however long, words by
/// their characters regardless of case. A number that one of the two lacks is 0, so 1.2 equals 1.2.0. A word comes
/// before its lack and before every number: 2.0-beta.1, then 2.0-beta.2, then 2.0-rc, then 2.0, then 2.0.1.
std::weak_ordering compareVersions(QStringView left, QStringView right);

/// Whether `text` begins with a digit, as every version does that can be ordered.
bool isVersion(QStringView text);

} // namespace zelk
