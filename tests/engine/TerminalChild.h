#pragma once

#include "engine/EngineHome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <sys/types.h>

namespace zelk::engine::testing {

/// What a program has said and how it has ended.
struct Ended {
    int status =
        -1; ///< Of its exit; minus the signal's number if it was killed by one, -1000 if it didn't end in time.
    QString out;
    QString error;
};

/// Variables to set, or, with a null value, to leave out.
using Variables = QMap<QString, QString>;

/// The environment of a program in that home, without the terminal that the test may be run from.
QProcessEnvironment environmentIn(const EngineHome &home, const Variables &variables = {});

/// Runs the built program with pipes to its end, with `input` on its standard input.
Ended runZelk(const EngineHome &home, const QStringList &arguments, const QByteArray &input = {},
              const Variables &variables = {});

struct TerminalSize {
    int columns = 80;
    int rows = 24;
};

/// The built program on a terminal of its own.
class TerminalChild {
public:
    TerminalChild(const EngineHome &home, const QStringList &arguments, TerminalSize size = {},
                  const Variables &variables = {});
    /// Ends it, by force if need be.
    ~TerminalChild();
    TerminalChild(const TerminalChild &) = delete;
    TerminalChild &operator=(const TerminalChild &) = delete;

    /// As from the keyboard: "\x03" is Ctrl+C.
    void type(const QByteArray &bytes) const;
    void resize(TerminalSize size) const;
    void signal(int number) const;
    /// As when the window is closed or the line is cut.
    void hangUp();

    /// Reads until that has been shown since the last call; false if it isn't in time.
    bool shows(const QByteArray &text, int patienceMs = 30'000);
    /// All that has been written so far, escape sequences and all.
    const QByteArray &written() const { return _written; }

    /// Reads to its end. Returns as in Ended::status.
    int end(int patienceMs = 30'000);

private:
    bool read(int patienceMs); // false at the end, or after that time

    int _terminal = -1; // the keyboard's and the screen's side
    int _inside = -1;
    pid_t _process = -1;
    std::optional<int> _status;
    QByteArray _written;
    qsizetype _seen = 0;
};

/// What a terminal shows of these bytes: the lines as they stand at the end, drawn-over ones gone.
QStringList screenOf(const QByteArray &written);

} // namespace zelk::engine::testing
