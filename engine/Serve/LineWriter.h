#pragma once

#include "Run/EventSink.h"
#include "Serve/WakePipe.h"

#include <QByteArray>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace zelk::engine {

/// Writes whole lines to a descriptor, in the order of the calls, on a thread of its own: no caller waits for a reader
/// that doesn't read, and lines never mingle.
class LineWriter : public EventSink {
public:
    /// `closed` is called once, on the writer's thread, when the other end has gone away. From then on lines are
    /// dropped.
    LineWriter(int descriptor, std::function<void()> closed);
    /// Gives up what isn't written yet; see drain().
    ~LineWriter() override;

    /// A line without its line feed.
    void writeLine(QByteArray line);
    void send(const ServerEvent &event) override { writeLine(event.encodedLine()); }
    void waitForRoom(std::stop_token stop) override;

    /// Waits until all is written, the other end is gone, or the time is over.
    void drain(std::chrono::milliseconds patience);

private:
    void loop();
    bool writeAll(const QByteArray &bytes);

    const int _descriptor;
    const std::function<void()> _closed;
    WakePipe _wake;    // ends a wait for the reader
    std::mutex _mutex; // guards all below
    std::condition_variable_any _changed;
    QByteArray _pending;
    bool _writing = false;
    bool _gone = false;
    bool _stopping = false;
    std::thread _thread; // last
};

} // namespace zelk::engine
