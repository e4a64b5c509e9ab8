#pragma once

#include "Support/Clock.h"

#include <QString>

#include <functional>
#include <memory>

namespace zelk {

// Finds elements of a list by the beginning of their names as somebody types it. Letters that follow each other within
// a second make one beginning; one letter again and again goes through all names that begin with it.
class TypeAhead {
public:
    // The name of an element; empty for one that can't be found.
    using NameOf = std::function<QString(int index)>;

    explicit TypeAhead(std::shared_ptr<Clock> clock) : m_clock(std::move(clock)) {}

    // Where `text`, typed now, leads from the element `current` among `count`, round the end; -1 for nowhere. `current`
    // is -1 before the first one. A blank begins nothing.
    int find(const QString &text, int current, int count, const NameOf &nameOf);

private:
    const std::shared_ptr<Clock> m_clock;
    QString m_typed;
    Clock::Time m_last{};
};

} // namespace zelk
