#pragma once

#include "Terminal/PlainText.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace zelk::engine {

/// A piece of a line.
struct Span {
    enum class Tone { Plain, Good, Warning, Bad, Faint };
    QString text;
    Tone tone = Tone::Plain;
};

/// Where the verbs write. Everything passes plainText(), so that no title can steer a terminal; escape sequences are
/// written to a terminal alone, and colours only unless NO_COLOR is set. One thread's.
class Console {
public:
    /// `out` is for results, `error` for what went wrong. Writing to `out` gives up while `giveUp`, a descriptor, is
    /// readable; -1 for never.
    Console(int out, int error);

    /// Whether `out` is a terminal on which a line can be drawn again.
    bool isTerminal() const { return _isTerminal; }
    /// Columns of the terminal as it is now; nothing if `out` is none, and then nothing needs to be cut.
    std::optional<int> width() const;

    void line(const QString &text) { line(std::vector<Span>{{text}}); }
    void line(const std::vector<Span> &spans);
    /// A text of this program's own, with its line feeds. Stays on its line if it doesn't end in one.
    void text(const QString &text);
    /// A line on the other descriptor, written at once.
    void complain(const QString &text);
    /// What stands below all lines until it is changed; empty for nothing. Shown on a terminal alone.
    void setStatus(const QString &text) { _status = plainText(text); }

    /// Writes what is due.
    void flush();

    /// Lets a wait for the reader end as soon as this descriptor is readable; -1 for never.
    void setGiveUp(int descriptor) { _giveUp = descriptor; }
    /// Whether the reader has gone away; everything is dropped then.
    bool isClosed() const { return _isClosed; }
    /// Whether something couldn't be written for another reason, which has been complained of.
    bool hasFailed() const { return _hasFailed; }

private:
    void writeOut(const QByteArray &bytes);

    const int _out;
    const int _error;
    const bool _isTerminal;
    const bool _hasColours;
    int _giveUp = -1;
    bool _isClosed = false;
    bool _hasFailed = false;
    QByteArray _pending;
    QString _status;
    QString _drawn; // of the status, as it stands on the terminal
};

} // namespace zelk::engine
