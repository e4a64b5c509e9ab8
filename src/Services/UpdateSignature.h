#pragma once

#include <QByteArray>
#include <QFile>

#include <optional>

namespace zelk {

/// The Ed25519 key in `base64`, 32 bytes; none when that is no such key.
std::optional<QByteArray> readUpdateKey(const QString &base64);

/// Whether `signature` (64 bytes) is that of the owner of `key` (32 bytes) over all of `file`, which is open for
/// reading. Reads the whole file, without holding it in memory: nothing for the main thread. An empty file is never
/// signed.
bool isSignedBy(const QByteArray &key, const QByteArray &signature, QFile &file);

} // namespace zelk
