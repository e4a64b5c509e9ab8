#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <memory>
#include <stop_token>

namespace zelk {

/// Runs shell commands with the administrator's rights. The desktop asks for the password in a dialog of its own, never
/// on a terminal.
class RaisedShell {
public:
    /// The command didn't run, or it did and failed.
    class Failure : public std::exception {
    public:
        enum class Reason {
            dismissed, ///< the user closed the dialog
            refused,   ///< the rights were not granted, or nobody could ask for them
            failed,    ///< the command's own failure
        };
        Failure(Reason reason, QString text) : _reason(reason), _text(std::move(text)), _what(_text.toUtf8()) {}

        Reason reason() const { return _reason; }
        /// What was said on standard error, without the white space round it; "unknown" if that is no UTF-8.
        const QString &text() const { return _text; }
        const char *what() const noexcept override { return _what.constData(); }

    private:
        Reason _reason;
        QString _text;
        QByteArray _what;
    };

    /// The desktop's own.
    static std::shared_ptr<RaisedShell> system();
    /// The same with the program at that path in place of the one that raises the rights.
    static std::shared_ptr<RaisedShell> over(const QString &program);

    virtual ~RaisedShell() = default;

    /// Runs `command` and gives its standard output. Blocks its caller to the command's end, which includes the user's
    /// time at the dialog. Throws `Failure`; std::system_error when the dialog's program can't be started; `Cancelled`
    /// when `stop` says so, which takes the dialog away and leaves a command alone that runs already.
    virtual QString run(const QString &command, std::stop_token stop) = 0;
};

/// The script that lets a desktop with AppleScript run `command` in the same way.
QString administratorScript(QString command);

} // namespace zelk
