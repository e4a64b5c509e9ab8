#pragma once

namespace zelk {

/// Where the user changes what was once allowed or refused.
class ConsentSettings {
public:
    virtual ~ConsentSettings() = default;

    /// Shows them, or brings them to the front. On the main thread.
    virtual void open() = 0;
};

} // namespace zelk
