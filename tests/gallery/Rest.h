#pragma once

#include <QString>

namespace zelk {

/// Waits until the thread has nothing more to do, whatever is on show: a window that is laid out or drawn again and
/// again keeps a processor busy for as long as it is open, and no picture tells. Ends the program if that never comes.
void waitForRest(const QString &scene);

} // namespace zelk
