#pragma once

#include <QStringList>

namespace zelk::engine {

/// Gives the numbers among a title's words one spelling: "Part Two", "pt. II" and "Pt2" all become "pt", "2". Appends
/// the numbers to `numbers` in their order, in plain digits; a letter behind "side" or "part" is one too.
QStringList withPlainNumbers(const QStringList &words, QStringList &numbers);

} // namespace zelk::engine
