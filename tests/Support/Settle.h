#pragma once

#include <QCoreApplication>

namespace zelk {

/// Lets what is under way on this thread come to where it waits for something else.
inline void settle() {
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
}

} // namespace zelk
