#pragma once

#include <QString>

namespace zelk::engine {

/// A text of words joined by single spaces, with what comparing it again and again needs.
struct Phrase {
    QString text;
    QString sorted; ///< The same words in sorted order.

    Phrase() = default;
    explicit Phrase(QString words);
};

/// How alike two texts are: 1 minus their Levenshtein distance over the longer length; 1 when both are empty.
double similarity(QStringView a, QStringView b);

/// The better of the similarity of the texts as they stand and of their words in sorted order.
double wordSimilarity(const Phrase &a, const Phrase &b);

} // namespace zelk::engine
