#pragma once

#include "Serve/Engine.h"
#include "Serve/LineWriter.h"
#include "Threads/WorkQueue.h"
#include "Transport/HelperProtocolEnvelope.h"

namespace zelk::engine {

/// Takes requests line by line, has the engine fulfil them, and writes the replies. What takes long is done beside, so
/// that replies may come out of turn and a cancel is heard at once. Nothing that a line may hold ends it.
class Server {
public:
    Server(Engine &engine, LineWriter &out);
    /// Waits for the requests under way.
    ~Server();

    void take(QByteArrayView line);

private:
    template<class Function>
    void answer(const QString &id, Function function);
    template<class Function>
    void answerLater(const QString &id, Function function);
    void refuse(const QString &id, EngineErrorCode code, const QString &message);
    void dispatch(const RequestEnvelope &envelope);

    Engine &_engine;
    LineWriter &_out;
    WorkQueue _slow;
};

} // namespace zelk::engine
