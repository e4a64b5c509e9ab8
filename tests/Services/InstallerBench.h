#pragma once

#include "Platform/StandIn.h"
#include "Services/CLIInstaller.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <stdexcept>

namespace zelk {

/// Notes what it is asked for, and does what the test says.
class ScriptedShell final : public RaisedShell {
public:
    QString run(const QString &command, std::stop_token stop) override {
        commands.append(command);
        return answer ? answer(command, std::move(stop)) : QString();
    }

    /// What the real one does, with the rights that the test has.
    void runForReal() {
        answer = [shell = RaisedShell::over(standIn)](const QString &command, std::stop_token stop) {
            return shell->run(command, std::move(stop));
        };
    }
    void fail(Failure::Reason reason, const QString &text) {
        answer = [=](const QString &, const std::stop_token &) -> QString { throw Failure(reason, text); };
    }

    QStringList commands;
    QString standIn;
    std::function<QString(const QString &command, std::stop_token stop)> answer;
};

/// A folder that takes what it is given, unless it is full.
class ScriptedTrash final : public Trash {
public:
    explicit ScriptedTrash(QString folder) : _folder(std::move(folder)) {}

    void put(const QString &path) override {
        asked.append(path);
        if (isFull || !QDir().rename(path, _folder + u'/' + QFileInfo(path).fileName()))
            throw std::runtime_error("the Trash is full");
    }
    QByteArray taken(const QString &name) const { return contentsOf(_folder + u'/' + name); }

    bool isFull = false;
    QStringList asked;

private:
    QString _folder;
};

/// An installer on a root and a home of its own, with an engine to install.
class InstallerBench {
public:
    InstallerBench() {
        const QDir top(folder.path());
        for (const auto *made : {"root", "home", "trash", "zelk.app/Contents/Helpers"})
            top.mkpath(QString::fromLatin1(made));
        engine = writeProgram(folder.filePath(QStringLiteral("zelk.app/Contents/Helpers/zelk")), "echo zelk 1.0");
        shell->standIn = writeProgram(folder.filePath(QStringLiteral("pkexec")), "shift; exec \"$@\"");
        around.places = {.home = folder.filePath(QStringLiteral("home")),
                         .root = folder.filePath(QStringLiteral("root"))};
        around.bundle = Bundle(folder.filePath(QStringLiteral("zelk.app")), {});
        around.shell = shell;
        around.trash = trash;
        around.isWritable = [this](const QString &asked) {
            return !unwritable.contains(asked) && QFileInfo(asked).isWritable();
        };
        around.versionPatience = std::chrono::minutes(1);
    }

    CLIInstaller installer() const { return CLIInstaller(around); }
    const CLIToolPlaces &places() const { return around.places; }

    QString makeSystemFolder() const {
        QDir().mkpath(places().systemFolder());
        return places().systemFolder();
    }
    static void makeLink(const QString &path, const QString &target) {
        QDir().mkpath(QFileInfo(path).path());
        QFile::link(target, path);
    }
    static QString makeProgram(const QString &path, const QByteArray &script) {
        QDir().mkpath(QFileInfo(path).path());
        return writeProgram(path, script);
    }
    /// The link's target; empty if there is no link.
    static QString targetOf(const QString &path) { return QFileInfo(path).symLinkTarget(); }

    QTemporaryDir folder;
    QString engine;
    std::shared_ptr<ScriptedShell> shell = std::make_shared<ScriptedShell>();
    std::shared_ptr<ScriptedTrash> trash = std::make_shared<ScriptedTrash>(folder.filePath(QStringLiteral("trash")));
    QStringList unwritable;
    CLIInstaller::Surroundings around{.places = {},
                                      .bundle = Bundle({}, {}),
                                      .environment = {},
                                      .shell = {},
                                      .trash = {},
                                      .isWritable = {},
                                      .versionPatience = {}};
};

} // namespace zelk
