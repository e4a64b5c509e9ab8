#pragma once

#include <QIODevice>
#include <QString>
#include <QStringDecoder>

namespace zelk::engine {

/// The text of a file of unknown encoding, bit by bit: by its byte-order mark (UTF-8, UTF-16), by the zeros that UTF-16
/// has even without one, else UTF-8 if all of it is valid as such, else Windows-1252, which old players write. Never
/// fails; the mark is gone.
class TextReader {
public:
    /// Looks through the whole device once if it must, and goes back to its beginning. The device must outlive it.
    explicit TextReader(QIODevice &device);

    /// Appends the next stretch of text, at least one character; false at the end.
    bool readMore(QString &text);

private:
    QIODevice &_device;
    QStringDecoder _decoder; // invalid for Windows-1252
};

} // namespace zelk::engine
