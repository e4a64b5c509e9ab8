#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QMap>
#include <QString>

#include <functional>
#include <mutex>
#include <optional>

namespace zelk::engine {

/// Keeps the accounts' tokens in a file that only its owner may read. They never leave the engine. Any thread may call.
class SecretStore {
public:
    using Warn = std::function<void(const QString &message)>;

    SecretStore(QString path, Warn warn);

    bool has(AccountService service) const;
    std::optional<QString> clientId(AccountService service) const;

    /// Each reads the file again, which another engine may have written meanwhile, and writes it first; throws
    /// FileProblem, and then nothing has changed.
    void store(AccountService service, const QString &token, const std::optional<QString> &clientId);
    void forget(AccountService service);

private:
    void catchUp();
    void write(QMap<QString, QString> changed);

    const QString _path;
    const Warn _warn;
    mutable std::mutex _mutex;      // guards all below
    QMap<QString, QString> _values; // by "spotify" and "spotify.clientId"
    bool _readable = true;
};

} // namespace zelk::engine
