#include "Matching/Similarity.h"

#include <QStringList>

#include <algorithm>
#include <numeric>
#include <vector>

namespace zelk::engine {

namespace {

QString sortedWords(const QString &text) {
    QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    std::sort(words.begin(), words.end());
    return words.join(u' ');
}

} // namespace

Phrase::Phrase(QString words) : text(std::move(words)), sorted(sortedWords(text)) {}

double similarity(QStringView a, QStringView b) {
    if (a == b) {
        return 1;
    }
    if (a.isEmpty() || b.isEmpty()) {
        return 0;
    }
    static thread_local std::vector<int> row; // kept, since this runs for each of many candidates
    row.resize(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int substituted = diagonal + (a[i] == b[static_cast<qsizetype>(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, substituted});
        }
    }
    return 1.0 - static_cast<double>(row.back()) / static_cast<double>(std::max(a.size(), b.size()));
}

double wordSimilarity(const Phrase &a, const Phrase &b) {
    const double asTheyStand = similarity(a.text, b.text);
    if (asTheyStand == 1 || (a.sorted == a.text && b.sorted == b.text)) {
        return asTheyStand;
    }
    return std::max(asTheyStand, similarity(a.sorted, b.sorted));
}

} // namespace zelk::engine
