#pragma once

#include "Platform/ChildProcess.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <vector>

namespace zelk::chaos {

/// One thing that the engine does.
struct Deed {
    enum class Kind { Say, Complain, CloseOutput, End };
    Kind kind = Kind::Say;
    QByteArray bytes;          ///< of Say and Complain, never empty
    ChildProcess::Exit exit{}; ///< of End
};

/// What is done in one breath, so that nothing of ours comes in between.
using Deeds = std::vector<Deed>;

/// How a launch goes: refused by the platform, or with a child that does something at once.
struct Launch {
    bool isRefused = false;
    Deeds first;
};

/// An engine inside of this process that does what it is told, when it is told, with a real pipe for its input. All
/// calls come from the test's thread; the children live on the thread of the supervisor that starts them.
class Engine {
public:
    Engine();

    ChildProcess::Launcher launcher();
    void plan(Launch launch);
    void play(Deeds deeds);

    /// The lines that its input holds now.
    QList<QByteArray> read();
    /// Reads nothing more, and lets whoever writes know.
    void closeInput();

    int launches() const;
    int refusals() const;
    /// Whether the supervisor has let go of everything: its child, its input pipe and the means to start another.
    bool isReleased() const;

private:
    class Child;
    struct Stage;
    std::shared_ptr<Stage> _stage;
    std::weak_ptr<int> _held; // by the launchers that were given away
};

} // namespace zelk::chaos
