#pragma once

namespace zelk::engine {

/// Something to poll beside a descriptor, so that another thread, or a signal handler, can end the wait.
class WakePipe {
public:
    WakePipe();
    ~WakePipe();
    WakePipe(const WakePipe &) = delete;
    WakePipe &operator=(const WakePipe &) = delete;

    /// Readable once wake() has been called, until rest().
    int descriptor() const { return _ends[0]; }
    /// Leaves errno alone.
    void wake() noexcept;
    void rest() noexcept;

private:
    int _ends[2] = {-1, -1};
};

} // namespace zelk::engine
