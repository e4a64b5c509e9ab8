#include "Store/SecretStore.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Transport/JSONValue.h"

#include <cerrno>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

QString tokenKey(AccountService service) {
    return QString(wireName(service));
}
QString clientKey(AccountService service) {
    return tokenKey(service) + ".clientId"_L1;
}

} // namespace

SecretStore::SecretStore(QString path, Warn warn) : _path(std::move(path)), _warn(std::move(warn)) {
    catchUp();
}

void SecretStore::catchUp() {
    try {
        const auto bytes = readWholeFile(_path);
        _readable = true;
        if (!bytes) {
            return;
        }
        try {
            const JSONValue document = JSONValue::parse(*bytes);
            if (!document.asObject()) {
                throw JSONError({}, u"not an object"_s);
            }
            _values.clear();
            for (auto it = document.asObject()->cbegin(); it != document.asObject()->cend(); ++it) {
                if (const QString *text = it.value().asString()) {
                    _values.insert(it.key(), *text);
                }
            }
        } catch (const JSONError &) { // its words could quote a secret
            _warn(u"The accounts' tokens in %1 can't be understood. They are kept as %2; connect the accounts again."_s
                      .arg(_path, setAside(_path)));
        }
    } catch (const FileProblem &problem) {
        if (std::exchange(_readable, false)) {
            _warn(u"The accounts' tokens can't be read. %1"_s.arg(problem.description()));
        }
    }
}

bool SecretStore::has(AccountService service) const {
    const std::lock_guard lock(_mutex);
    return _values.contains(tokenKey(service));
}

std::optional<QString> SecretStore::clientId(AccountService service) const {
    const std::lock_guard lock(_mutex);
    const auto found = _values.constFind(clientKey(service));
    return found == _values.constEnd() ? std::nullopt : std::optional(*found);
}

void SecretStore::store(AccountService service, const QString &token, const std::optional<QString> &clientId) {
    const std::lock_guard lock(_mutex);
    catchUp();
    QMap<QString, QString> changed = _values;
    changed.insert(tokenKey(service), token);
    if (clientId) {
        changed.insert(clientKey(service), *clientId);
    }
    write(std::move(changed));
}

void SecretStore::forget(AccountService service) {
    const std::lock_guard lock(_mutex);
    catchUp();
    QMap<QString, QString> changed = _values;
    changed.remove(tokenKey(service));
    changed.remove(clientKey(service));
    if (changed != _values) {
        write(std::move(changed));
    }
}

void SecretStore::write(QMap<QString, QString> changed) {
    if (!_readable) {
        throw FileProblem(_path, EACCES);
    }
    JSONValue::Object document;
    for (auto it = changed.cbegin(); it != changed.cend(); ++it) {
        document.insert(it.key(), JSONValue::string(it.value()));
    }
    writePrivateFile(_path, JSONValue::object(document).json());
    _values = std::move(changed);
}

} // namespace zelk::engine
