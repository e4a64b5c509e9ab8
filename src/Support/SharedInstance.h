#pragma once

#include <QtGlobal>

namespace zelk {

/// Makes an object the one that the process shares, for as long as this stands: whoever owns both says when that is,
/// and nothing is left behind to be reset. At most one for each type, on the main thread.
template<typename T>
class SharedInstance {
public:
    explicit SharedInstance(T &instance) {
        Q_ASSERT_X(!current, "SharedInstance", "there is one already");
        current = &instance;
    }
    ~SharedInstance() { current = nullptr; }
    Q_DISABLE_COPY_MOVE(SharedInstance)

    /// There must be one.
    static T &get() {
        if (!current)
            qFatal("A shared instance is asked for that the application has not made");
        return *current;
    }

private:
    static inline T *current = nullptr;
};

} // namespace zelk
