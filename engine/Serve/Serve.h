#pragma once

namespace zelk::engine {

/// Answers requests from standard input on standard output until the end of the input, the end of the reader, or a
/// signal to end; then finishes or undoes what is in hand, within two seconds. Returns the exit status.
int serve();

} // namespace zelk::engine
