#pragma once

#include <QString>

#include <memory>

class QLoggingCategory;

namespace zelk {

/// One category of the log, "orrim.zelk.<category>", with the four levels that the program knows. Debug lines are off
/// until a logging rule turns them on (`QT_LOGGING_RULES="orrim.zelk.*.debug=true"`). A fault is logged as critical: it
/// tells of an end, it doesn't bring one. Copies write to the same category, from any thread.
class Logger {
public:
    /// `category` is plain ASCII, such as "client".
    explicit Logger(const char *category);

    void debug(const QString &message) const;
    void info(const QString &message) const;
    void error(const QString &message) const;
    void fault(const QString &message) const;

private:
    struct Category;
    std::shared_ptr<const Category> _category;
};

} // namespace zelk
