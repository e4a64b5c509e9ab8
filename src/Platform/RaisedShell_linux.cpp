#include "Platform/RaisedShell.h"

#include "Platform/CommandRun.h"

#include <QCoreApplication>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(RaisedShell)
};

// What polkit's program says with its exit status; any other is the command's own.
constexpr int dismissed = 126;
constexpr int refused = 127;

RaisedShell::Failure::Reason reasonOf(int exitStatus) {
    switch (exitStatus) {
    case dismissed:
        return RaisedShell::Failure::Reason::dismissed;
    case refused:
        return RaisedShell::Failure::Reason::refused;
    default:
        return RaisedShell::Failure::Reason::failed;
    }
}

class PolkitShell final : public RaisedShell {
public:
    explicit PolkitShell(QString program) : _program(std::move(program)) {}

    QString run(const QString &command, std::stop_token stop) override {
        // Its own agent would ask on the terminal that we were started from.
        const QStringList arguments{QStringLiteral("--disable-internal-agent"), QStringLiteral("/bin/sh"),
                                    QStringLiteral("-c"), command};
        const CommandPatience untilTheUserAnswers{.most = {}, .stop = std::move(stop)};
        const auto end = runCommand(_program, arguments, CommandErrors::apart, untilTheUserAnswers);
        if (end.exitStatus != 0)
            throw Failure(reasonOf(end.exitStatus),
                          trimmedText(end.error).value_or(Texts::tr("unknown", "the reason of a failure")));
        return QString::fromUtf8(end.output);
    }

private:
    const QString _program;
};

} // namespace

std::shared_ptr<RaisedShell> RaisedShell::system() {
    return over(QStringLiteral("/usr/bin/pkexec"));
}

std::shared_ptr<RaisedShell> RaisedShell::over(const QString &program) {
    return std::make_shared<PolkitShell>(program);
}

} // namespace zelk
