#include "Terminal/Console.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr auto eraseLine = "\r\x1b[K";
constexpr int usualWidth = 80;

bool canRedraw(int descriptor) {
    const QString kind = qEnvironmentVariable("TERM");
    return ::isatty(descriptor) == 1 && !kind.isEmpty() && kind != "dumb"_L1;
}

QByteArray sequenceOf(Span::Tone tone) {
    switch (tone) {
    case Span::Tone::Plain:
        return {};
    case Span::Tone::Good:
        return "\x1b[32m";
    case Span::Tone::Warning:
        return "\x1b[33m";
    case Span::Tone::Bad:
        return "\x1b[31m";
    case Span::Tone::Faint:
        return "\x1b[2m";
    }
    return {};
}

} // namespace

Console::Console(int out, int error)
    : _out(out), _error(error), _isTerminal(canRedraw(out)),
      _hasColours(_isTerminal && qEnvironmentVariableIsEmpty("NO_COLOR")) {}

std::optional<int> Console::width() const {
    if (!_isTerminal) {
        return std::nullopt;
    }
    winsize size{};
    if (::ioctl(_out, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    const int told = qEnvironmentVariableIntValue("COLUMNS");
    return told > 0 ? told : usualWidth;
}

void Console::line(const std::vector<Span> &spans) {
    for (const Span &span : spans) {
        const QByteArray bytes = plainText(span.text).toUtf8();
        const QByteArray sequence = _hasColours ? sequenceOf(span.tone) : QByteArray();
        _pending += sequence.isEmpty() ? bytes : sequence + bytes + "\x1b[0m";
    }
    _pending += '\n';
}

void Console::text(const QString &text) {
    _pending += text.toUtf8();
}

void Console::complain(const QString &text) {
    const QString status = std::exchange(_status, {}); // both may be one terminal
    flush();
    const QByteArray bytes = plainText(text).toUtf8() + '\n';
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count = ::write(_error, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR) {
            break; // there is nobody left to tell
        }
        done += std::max<ssize_t>(count, 0);
    }
    _status = status;
}

void Console::flush() {
    const QString status = _isTerminal ? cutTo(_status, *width() - 1) : QString();
    if (_pending.isEmpty() && status == _drawn) {
        return;
    }
    QByteArray bytes = _drawn.isEmpty() ? QByteArray() : QByteArray(eraseLine);
    bytes += std::exchange(_pending, {});
    bytes += status.toUtf8();
    _drawn = status;
    writeOut(bytes);
}

void Console::writeOut(const QByteArray &bytes) {
    for (qsizetype done = 0; done < bytes.size() && !_isClosed && !_hasFailed;) {
        pollfd waits[] = {{_out, POLLOUT, 0}, {_giveUp, POLLIN, 0}};
        if (::poll(waits, 2, -1) < 0) {
            continue;
        }
        if (waits[0].revents == 0) {
            return;
        }
        // What is ready takes so much without waiting, so a wish to give up is never missed.
        const auto count = std::min<qsizetype>(bytes.size() - done, PIPE_BUF);
        const ssize_t written = ::write(_out, bytes.constData() + done, static_cast<size_t>(count));
        if (written >= 0) {
            done += written;
        } else if (errno == EPIPE || (errno == EIO && _isTerminal)) { // EIO: the terminal has hung up
            _isClosed = true;
        } else if (errno != EINTR && errno != EAGAIN) {
            const int code = errno;
            _hasFailed = true;
            complain(u"zelk: what there is to say can't be written: %1"_s.arg(
                QString::fromStdString(std::generic_category().message(code))));
        }
    }
}

} // namespace zelk::engine
