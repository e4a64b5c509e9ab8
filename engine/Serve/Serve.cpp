#include "Serve/Serve.h"

#include "Serve/Engine.h"
#include "Serve/LineReader.h"
#include "Serve/LineWriter.h"
#include "Serve/Server.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace zelk::engine {

namespace {

/// A disk that doesn't answer must not keep the process; a partial file is cleared away by the next run.
constexpr std::chrono::milliseconds longestGoodbye{1'800};

std::atomic<LineReader *> signalled = nullptr;

void onSignal(int) {
    if (LineReader *reader = signalled.load()) {
        reader->stop();
    }
}

void leaveInTime() {
    std::thread([] {
        std::this_thread::sleep_for(longestGoodbye);
        std::_Exit(EXIT_SUCCESS);
    }).detach();
}

} // namespace

int serve() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is a failed write, like a full disk
    LineReader in(STDIN_FILENO);
    signalled = &in;
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);
    {
        LineWriter out(STDOUT_FILENO, [&in] { in.stop(); });
        {
            Engine engine(EnginePaths::fromEnvironment(), out);
            Server server(engine, out);
            in.run([&server](QByteArrayView line) { server.take(line); });
            leaveInTime();
            engine.stopRuns();
        }
        out.drain(longestGoodbye);
    }
    signalled = nullptr;
    return EXIT_SUCCESS;
}

} // namespace zelk::engine
