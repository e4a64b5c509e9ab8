#include "ChaosEngine.h"

#include "Platform/InputPipe.h"
#include "Platform/Spawn_linux.h"
#include "Support/SerialExecutor.h"

#include <deque>
#include <mutex>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace zelk::chaos {

namespace {

/// As small as the kernel makes them, so that a long line fills it.
constexpr int pipeSize = 4096;

} // namespace

struct Engine::Stage {
    mutable std::mutex mutex; // guards all of this but `child`
    std::deque<Launch> plans;
    std::weak_ptr<SerialExecutor> executor;
    UniqueFd input;
    QByteArray halfLine;
    std::weak_ptr<InputPipe> pipe;
    int launches = 0;
    int refusals = 0;
    int living = 0;
    Child *child = nullptr; // the executor's own

    void closeInput() {
        const std::scoped_lock lock(mutex);
        input = {};
        halfLine.clear();
    }
};

class Engine::Child final : public ChildProcess {
public:
    Child(std::shared_ptr<Stage> stage, Callbacks callbacks)
        : _stage(std::move(stage)), _callbacks(std::move(callbacks)) {
        auto pipe = spawn::makePipe();
        ::fcntl(pipe.writeEnd.get(), F_SETPIPE_SZ, pipeSize);
        spawn::makeNonBlocking(pipe.readEnd);
        spawn::makeNonBlocking(pipe.writeEnd);
        _input = std::make_shared<InputPipe>(std::move(pipe.writeEnd));
        const std::scoped_lock lock(_stage->mutex);
        _stage->executor = SerialExecutor::current();
        _stage->input = std::move(pipe.readEnd);
        _stage->halfLine.clear();
        _stage->pipe = _input;
        _stage->child = this;
        ++_stage->launches;
        ++_stage->living;
    }

    ~Child() override {
        const std::scoped_lock lock(_stage->mutex);
        if (_stage->child == this)
            _stage->child = nullptr;
        --_stage->living;
    }

    qint64 processId() const override { return 1; }
    std::shared_ptr<InputPipe> input() const override { return _input; }
    void terminate() override {}
    void kill() override {}

    void play(const Deeds &deeds) {
        for (const Deed &deed : deeds) {
            if (_hasEnded)
                return;
            play(deed);
        }
    }

private:
    void play(const Deed &deed) {
        switch (deed.kind) {
        case Deed::Kind::Say:
            _callbacks.output(deed.bytes);
            return;
        case Deed::Kind::Complain:
            _callbacks.error(deed.bytes);
            return;
        case Deed::Kind::CloseOutput:
            _callbacks.outputEnded();
            return;
        case Deed::Kind::End:
            _hasEnded = true;
            _stage->closeInput();
            _input->close();
            // The callback may release this object, and with it the callback.
            const auto ended = std::move(_callbacks.ended);
            ended(deed.exit);
            return;
        }
    }

    const std::shared_ptr<Stage> _stage;
    Callbacks _callbacks;
    std::shared_ptr<InputPipe> _input;
    bool _hasEnded = false;
};

Engine::Engine() : _stage(std::make_shared<Stage>()) {}

ChildProcess::Launcher Engine::launcher() {
    const auto held = std::make_shared<int>();
    _held = held;
    return [stage = _stage, held](const QString &program, const QStringList &,
                                  ChildProcess::Callbacks callbacks) -> std::unique_ptr<ChildProcess> {
        Launch launch;
        {
            const std::scoped_lock lock(stage->mutex);
            if (!stage->plans.empty()) {
                launch = std::move(stage->plans.front());
                stage->plans.pop_front();
            }
            if (launch.isRefused) {
                ++stage->refusals;
                throw std::system_error(EACCES, std::system_category(), program.toStdString());
            }
        }
        auto child = std::make_unique<Child>(stage, std::move(callbacks));
        if (!launch.first.empty())
            SerialExecutor::current()->post([stage, first = std::move(launch.first)] {
                if (stage->child)
                    stage->child->play(first);
            });
        return child;
    };
}

void Engine::plan(Launch launch) {
    const std::scoped_lock lock(_stage->mutex);
    _stage->plans.push_back(std::move(launch));
}

void Engine::play(Deeds deeds) {
    SerialExecutor::Ref executor;
    {
        const std::scoped_lock lock(_stage->mutex);
        executor = _stage->executor.lock();
    }
    if (!executor)
        return;
    executor->post([stage = _stage, deeds = std::move(deeds)] {
        if (stage->child)
            stage->child->play(deeds);
    });
}

QList<QByteArray> Engine::read() {
    const std::scoped_lock lock(_stage->mutex);
    QList<QByteArray> lines;
    char block[pipeSize];
    while (_stage->input) {
        const auto count = ::read(_stage->input.get(), block, sizeof block);
        if (count <= 0)
            break;
        _stage->halfLine.append(block, count);
    }
    for (auto end = _stage->halfLine.indexOf('\n'); end >= 0; end = _stage->halfLine.indexOf('\n')) {
        lines.append(_stage->halfLine.first(end));
        _stage->halfLine.remove(0, end + 1);
    }
    return lines;
}

void Engine::closeInput() {
    _stage->closeInput();
}

int Engine::launches() const {
    const std::scoped_lock lock(_stage->mutex);
    return _stage->launches;
}

int Engine::refusals() const {
    const std::scoped_lock lock(_stage->mutex);
    return _stage->refusals;
}

bool Engine::isReleased() const {
    const std::scoped_lock lock(_stage->mutex);
    return _held.expired() && _stage->living == 0 && _stage->pipe.expired();
}

} // namespace zelk::chaos
