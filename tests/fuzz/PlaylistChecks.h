#pragma once

#include "Fuzzing.h"

#include "Playlists/ReadLimits.h"

#include <QIODevice>

#include <functional>

namespace zelk::fuzz {

/// A file that gives a few bytes at a time, as a slow disk may.
class ShortReads final : public QIODevice {
public:
    ShortReads(QByteArrayView bytes, qint64 most) : _bytes(bytes), _most(most) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 size() const override { return _bytes.size(); }

protected:
    qint64 readData(char *data, qint64 most) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArrayView _bytes;
    const qint64 _most;
};

using ReadPlaylist = std::function<engine::ReadFile(QIODevice &device, engine::ReadLimits limits)>;

/// The rows of all its lists together.
qint64 rowsIn(const engine::ReadFile &file);

/// What must hold of whatever a reader of playlists makes of a file: with ample limits and with tight ones, and however
/// the file's bytes arrive.
void checkPlaylist(QByteArrayView input, const ReadPlaylist &read);

} // namespace zelk::fuzz
