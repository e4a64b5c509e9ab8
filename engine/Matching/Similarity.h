#pragma once

#include <QString>

namespace zelk::engine {

/// How alike two texts are: 1 minus their Levenshtein distance over the longer length; 1 when both are empty.
double similarity(QStringView a, QStringView b);

/// The better of the similarity of the texts as they stand and of their words in sorted order.
double wordSimilarity(const QString &a, const QString &b);

} // namespace zelk::engine
