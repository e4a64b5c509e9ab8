// An engine that plays a transcript, for tests of everything that has a child: it says what the transcript says, when
// it says so, and leaves as told. Usage: scripted_engine TRANSCRIPT, or scripted_engine serve with ZELK_SCRIPT naming
// it.
//
// A transcript is a text file, a command a line; "#" begins a comment. "launch" begins the part that one launch plays;
// the last part repeats, or with "again" anywhere all of them do, and a transcript without "launch" is one part. What
// happened is appended to TRANSCRIPT.log, a line each: "launch N", "line TEXT" for what was read, "eof",
// "unexpected TEXT".
//
// - expect METHOD [NAME]: reads a line, whose method must be METHOD; its id is %NAME% from then on, and %id% is the
//   last one's
// - read COUNT: reads that many lines, whatever they are
// - send TEXT: writes TEXT and a line feed, with %NAME% replaced
// - raw TEXT: writes TEXT alone, with \n, \r, \\ and \xHH for what can't stand in a line
// - flood COUNT TEXT: writes TEXT and a line feed COUNT times, with %i% replaced by 0, 1, …
// - fill COUNT: writes COUNT letters
// - error TEXT: writes TEXT and a line feed to standard error
// - sleep MILLISECONDS
// - reply METHOD TEXT: from then on, answers each METHOD that is read while idle with the line TEXT
// - idle MILLISECONDS: reads what comes in that time, and answers what "reply" tells it to
// - signal NUMBER, exit STATUS
// - drain: reads to the end of the input
// - stall: reads nothing more, and stays until the input's other end has gone
// - orphan: leaves a child behind that holds all pipes open for ten seconds

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <unistd.h>

namespace {

constexpr int brokenScript = 98;
constexpr int unexpectedLine = 99;

std::string logPath;

void note(const std::string &what) {
    std::ofstream(logPath, std::ios::app) << what << '\n';
}

[[noreturn]] void giveUp(const std::string &why) {
    std::cerr << "scripted engine: " << why << std::endl;
    std::_Exit(brokenScript);
}

void writeAll(int fd, const std::string &text) {
    const char *next = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const auto written = ::write(fd, next, left);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            std::_Exit(0); // nobody listens any more
        }
        next += written;
        left -= static_cast<std::size_t>(written);
    }
}

class Input {
public:
    bool line(std::string &out) {
        while (true) {
            const auto end = _held.find('\n');
            if (end != std::string::npos) {
                out = _held.substr(0, end);
                _held.erase(0, end + 1);
                note("line " + out);
                return true;
            }
            if (!fill())
                return false;
        }
    }

    bool hasLine() const { return _held.find('\n') != std::string::npos; }

    /// Takes in what comes next, waiting for it; false at the end.
    bool fill() {
        char block[65536];
        auto count = ::read(STDIN_FILENO, block, sizeof block);
        while (count < 0 && errno == EINTR)
            count = ::read(STDIN_FILENO, block, sizeof block);
        if (count <= 0) {
            note("eof");
            return false;
        }
        _held.append(block, static_cast<std::size_t>(count));
        return true;
    }

private:
    std::string _held;
};

/// The text after `"key":"`, up to the next quote: enough for the ids and methods that the application writes.
std::string member(const std::string &line, const std::string &key) {
    const std::string opening = "\"" + key + "\":\"";
    const auto at = line.find(opening);
    if (at == std::string::npos)
        return {};
    const auto begin = at + opening.size();
    return line.substr(begin, line.find('"', begin) - begin);
}

class Player {
public:
    void play(const std::string &command) {
        std::istringstream words(command);
        std::string verb;
        words >> verb;
        std::string rest;
        std::getline(words >> std::ws, rest);
        if (verb == "expect")
            expect(rest);
        else if (verb == "read")
            read(std::stoul(rest));
        else if (verb == "send")
            writeAll(STDOUT_FILENO, filled(rest) + '\n');
        else if (verb == "raw")
            writeAll(STDOUT_FILENO, unescaped(filled(rest)));
        else if (verb == "flood")
            flood(rest);
        else if (verb == "fill")
            writeAll(STDOUT_FILENO, std::string(std::stoul(rest), 'x'));
        else if (verb == "error")
            writeAll(STDERR_FILENO, unescaped(rest) + '\n');
        else if (verb == "sleep")
            std::this_thread::sleep_for(std::chrono::milliseconds(std::stoul(rest)));
        else if (verb == "reply")
            learn(rest);
        else if (verb == "idle")
            idle(std::chrono::milliseconds(std::stoul(rest)));
        else if (verb == "signal")
            killItself(std::stoi(rest));
        else if (verb == "exit")
            std::_Exit(std::stoi(rest));
        else if (verb == "drain")
            drain();
        else if (verb == "stall")
            stall();
        else if (verb == "orphan")
            leaveOrphan();
        else
            giveUp("unknown command: " + command);
    }

    void drain() {
        std::string line;
        while (_input.line(line)) {
        }
    }

private:
    void expect(const std::string &rest) {
        std::istringstream words(rest);
        std::string method;
        std::string name;
        words >> method >> name;
        std::string line;
        if (!_input.line(line))
            std::_Exit(0);
        if (member(line, "method") != method) {
            note("unexpected " + line);
            std::_Exit(unexpectedLine);
        }
        _names["id"] = member(line, "id");
        if (!name.empty())
            _names[name] = _names["id"];
    }

    void read(unsigned long count) {
        std::string line;
        for (; count > 0; --count) {
            if (!_input.line(line))
                std::_Exit(0);
            _names["id"] = member(line, "id");
        }
    }

    void learn(const std::string &rest) {
        const auto space = rest.find(' ');
        _replies[rest.substr(0, space)] = rest.substr(space + 1);
    }

    void idle(std::chrono::milliseconds time) {
        using std::chrono::steady_clock;
        const auto end = steady_clock::now() + time;
        while (true) {
            for (std::string line; _input.hasLine() && _input.line(line);)
                answer(line);
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - steady_clock::now());
            if (left.count() <= 0)
                return;
            pollfd input{STDIN_FILENO, POLLIN, 0};
            if (::poll(&input, 1, static_cast<int>(left.count())) > 0 && !_input.fill())
                std::_Exit(0);
        }
    }

    void answer(const std::string &line) {
        _names["id"] = member(line, "id");
        const auto reply = _replies.find(member(line, "method"));
        if (reply != _replies.end())
            writeAll(STDOUT_FILENO, filled(reply->second) + '\n');
    }

    void flood(const std::string &rest) {
        std::istringstream words(rest);
        unsigned long count = 0;
        words >> count;
        std::string text;
        std::getline(words >> std::ws, text);
        constexpr std::size_t blockSize = 65536;
        std::string block;
        for (unsigned long i = 0; i < count; ++i) {
            block += replaced(text, "%i%", std::to_string(i)) + '\n';
            if (block.size() >= blockSize) {
                writeAll(STDOUT_FILENO, block);
                block.clear();
            }
        }
        writeAll(STDOUT_FILENO, block);
    }

    [[noreturn]] static void killItself(int number) {
        std::signal(number, SIG_DFL);
        ::kill(::getpid(), number);
        for (;;)
            ::pause();
    }

    static void stall() {
        pollfd input{STDIN_FILENO, 0, 0};
        while (::poll(&input, 1, -1) < 0 && errno == EINTR) {
        }
        std::_Exit(0);
    }

    static void leaveOrphan() {
        if (::fork() == 0) {
            std::this_thread::sleep_for(std::chrono::seconds(10));
            std::_Exit(0);
        }
    }

    static std::string replaced(std::string text, const std::string &from, const std::string &to) {
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, from.size(), to);
        return text;
    }

    std::string filled(std::string text) const {
        for (const auto &[name, id] : _names)
            text = replaced(text, "%" + name + "%", id);
        return text;
    }

    static std::string unescaped(const std::string &text) {
        std::string out;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] != '\\' || i + 1 == text.size()) {
                out += text[i];
                continue;
            }
            const char kind = text[++i];
            if (kind == 'n')
                out += '\n';
            else if (kind == 'r')
                out += '\r';
            else if (kind == 'x') {
                out += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
                i += 2;
            } else
                out += kind;
        }
        return out;
    }

    Input _input;
    std::map<std::string, std::string> _names;
    std::map<std::string, std::string> _replies;
};

unsigned long countLaunch(const std::string &transcript) {
    const std::string path = transcript + ".launches";
    unsigned long before = 0;
    std::ifstream(path) >> before;
    std::ofstream(path) << before + 1;
    return before;
}

struct Transcript {
    std::vector<std::vector<std::string>> parts{1};
    bool startsOver = false;

    const std::vector<std::string> &partOf(unsigned long launch) const {
        return parts[startsOver ? launch % parts.size() : std::min<std::size_t>(launch, parts.size() - 1)];
    }
};

Transcript readTranscript(const std::string &path) {
    std::ifstream file(path);
    if (!file)
        giveUp("no transcript at " + path);
    Transcript transcript;
    auto &parts = transcript.parts;
    bool sawLaunch = false;
    for (std::string line; std::getline(file, line);) {
        const auto begin = line.find_first_not_of(' ');
        if (begin == std::string::npos || line[begin] == '#')
            continue;
        line.erase(0, begin);
        if (line == "launch") {
            if (std::exchange(sawLaunch, true))
                parts.emplace_back();
            continue;
        }
        if (line == "again")
            transcript.startsOver = true;
        else
            parts.back().push_back(line);
    }
    return transcript;
}

} // namespace

int main(int argc, char **argv) {
    std::string transcript = argc > 1 ? argv[1] : "";
    if (transcript == "serve" || transcript.empty()) {
        const char *given = std::getenv("ZELK_SCRIPT");
        transcript = given ? given : "";
    }
    const auto script = readTranscript(transcript);
    logPath = transcript + ".log";
    const auto launch = countLaunch(transcript);
    note("launch " + std::to_string(launch + 1));
    Player player;
    for (const auto &command : script.partOf(launch))
        player.play(command);
    player.drain();
    return 0;
}
