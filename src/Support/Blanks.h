#pragma once

#include <QStringView>

namespace zelk {

/// `text` without the blanks and tabs at its ends. Ends of lines stay: they belong to what was pasted.
inline QStringView withoutBlanks(QStringView text) {
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

} // namespace zelk
