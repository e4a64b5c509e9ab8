#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace zelk {

/// A transient message in the main window.
class SyncBanner {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind CONSTANT)
    Q_PROPERTY(QString message MEMBER message CONSTANT)
    /// Empty when there is none.
    Q_PROPERTY(QString code READ codeText CONSTANT)

public:
    enum class Kind { info, warning, error };
    Q_ENUM(Kind)

    static SyncBanner info(QString message) { return make(Kind::info, std::move(message)); }
    static SyncBanner warning(QString message) { return make(Kind::warning, std::move(message)); }
    static SyncBanner error(QString message, std::optional<QString> code = {}) {
        return make(Kind::error, std::move(message), std::move(code));
    }

    Kind kind = Kind::info;
    QString message;
    std::optional<QString> code;
    bool operator==(const SyncBanner &) const = default;

private:
    static SyncBanner make(Kind kind, QString message, std::optional<QString> code = {});
    QString codeText() const { return code.value_or(QString()); }
};

} // namespace zelk
