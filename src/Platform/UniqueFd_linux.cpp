#include "Platform/UniqueFd.h"

#include <unistd.h>

namespace zelk {

void UniqueFd::reset() {
    if (_fd >= 0)
        ::close(_fd);
    _fd = -1;
}

} // namespace zelk
