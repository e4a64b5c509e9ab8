#include "Platform/ProcessSignals.h"

#include <csignal>

namespace zelk {

void prepareProcessSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
}

} // namespace zelk
