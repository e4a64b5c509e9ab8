#pragma once

#include <QString>

#include <functional>
#include <stop_token>

namespace zelk::engine {

/// What a walk meets. No function may touch the walk.
struct FolderVisitor {
    /// A regular file, by its absolute path. Hidden files are passed over.
    std::function<void(const QString &path)> file;
    /// A folder that is looked into, the first one included. May be absent.
    std::function<void(const QString &path)> folder = {};
    /// A folder or entry that can't be looked at, and why.
    std::function<void(const QString &path, const QString &why)> problem;
};

/// Looks at everything below a folder, in the order of the names, without recursion. Links are followed, each folder is
/// entered once, hidden folders are passed over, and what vanishes meanwhile does no harm. A folder that doesn't exist
/// is no problem, it is empty. Ends early when asked to stop.
void walkFolder(const QString &root, const FolderVisitor &visitor, std::stop_token stop = {});

} // namespace zelk::engine
