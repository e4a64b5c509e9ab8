#pragma once

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// The form in which two spellings of one name are equal: compatibility-composed, case-folded, without the accents of
/// Latin, Greek and Cyrillic letters, with one kind of quote and dash, "and" for "&" and "+", and single spaces. Other
/// scripts keep their marks, since there a mark makes another letter.
QString fold(const QString &text);

/// The words of a folded text. Apostrophes join ("don't" is "dont"), everything else that is neither letter nor digit
/// separates. A text of nothing but signs ("!!!") is one word, so that it can still be found.
QStringList wordsOf(const QString &folded);

/// The words joined by single spaces.
QString joinedWords(const QString &folded);

} // namespace zelk::engine
