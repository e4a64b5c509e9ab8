#include "Views/TypeAhead.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace zelk {

namespace {

constexpr Clock::Duration pauseThatEndsIt = 1s;

int search(const QString &beginning, int first, int count, const TypeAhead::NameOf &nameOf) {
    for (int step = 0; step < count; ++step) {
        const int index = (first + step) % count;
        if (nameOf(index).startsWith(beginning, Qt::CaseInsensitive))
            return index;
    }
    return -1;
}

bool isOneLetter(const QString &text) {
    return std::all_of(text.cbegin(), text.cend(),
                       [&text](QChar c) { return c.toCaseFolded() == text[0].toCaseFolded(); });
}

} // namespace

int TypeAhead::find(const QString &text, int current, int count, const NameOf &nameOf) {
    const Clock::Time now = m_clock->now();
    const bool goesOn = !m_typed.isEmpty() && now - m_last < pauseThatEndsIt;
    if (text.isEmpty() || !text[0].isPrint() || count <= 0 || (!goesOn && text[0].isSpace()))
        return -1;
    const QString typed = goesOn ? m_typed + text : text;
    // What stands here may have the longer beginning too; a first letter goes on from here.
    int found = search(typed, goesOn ? std::max(current, 0) : current + 1, count, nameOf);
    if (found < 0 && goesOn && text[0].isSpace())
        return -1; // the key means something else then
    if (found < 0 && isOneLetter(typed))
        found = search(text, current + 1, count, nameOf);
    m_typed = typed;
    m_last = now;
    return found;
}

} // namespace zelk
