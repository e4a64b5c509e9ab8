#pragma once

namespace zelk {

/// Puts the process's signals into the state that child processes rely on; called once, first thing in `main`. A write
/// to a pipe whose reader has gone becomes a failed write, and the end of a child can be waited for even if whoever
/// started us had switched that off.
void prepareProcessSignals();

} // namespace zelk
