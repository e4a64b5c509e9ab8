#pragma once

#include <utility>

namespace zelk {

/// A file descriptor with one owner.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : _fd(fd) {}
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd &&other) noexcept : _fd(std::exchange(other._fd, -1)) {}
    UniqueFd &operator=(UniqueFd &&other) noexcept {
        if (this != &other) {
            reset();
            _fd = std::exchange(other._fd, -1);
        }
        return *this;
    }

    int get() const { return _fd; }
    explicit operator bool() const { return _fd >= 0; }
    void reset();

private:
    int _fd = -1;
};

} // namespace zelk
