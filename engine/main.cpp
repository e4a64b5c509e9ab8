#include "Serve/CommandLine.h"
#include "Serve/Serve.h"
#include "Terminal/Terminal.h"

#include <QCoreApplication>

using namespace zelk::engine;

int main(int argc, char **argv) {
    // Qt finds its SQL driver by way of the application object; nothing here runs its event loop.
    const QCoreApplication application(argc, argv);
    const CommandLine line = readCommandLine(QCoreApplication::arguments().mid(1));
    switch (line.verb) {
    case CommandLine::Verb::Serve:
        return serve();
    case CommandLine::Verb::None:
        return print(line.output, line.exitStatus != 0) ? line.exitStatus : 1;
    case CommandLine::Verb::List:
    case CommandLine::Verb::Sync:
    case CommandLine::Verb::Review:
    case CommandLine::Verb::Doctor:
        return runAtTerminal(line);
    }
}
