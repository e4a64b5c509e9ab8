#pragma once

#include <QString>

#include <memory>

namespace zelk {

/// The folder from which the user can take back what was moved out of the way.
class Trash {
public:
    /// This user's.
    static std::shared_ptr<Trash> system();

    virtual ~Trash() = default;

    /// Moves the file or folder at `path` there. Throws std::runtime_error with the platform's reason; it then stays
    /// where it is.
    virtual void put(const QString &path) = 0;
};

} // namespace zelk
