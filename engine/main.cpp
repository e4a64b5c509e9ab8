#include "Serve/CommandLine.h"
#include "Serve/Serve.h"

#include <QCoreApplication>

#include <cstdio>

using namespace zelk::engine;

int main(int argc, char **argv) {
    // Qt finds its SQL driver by way of the application object; nothing here runs its event loop.
    const QCoreApplication application(argc, argv);
    const CommandLine line = readCommandLine(QCoreApplication::arguments().mid(1));
    std::fputs(line.output.toUtf8().constData(), line.exitStatus == 0 ? stdout : stderr);
    return line.verb == CommandLine::Verb::Serve ? serve() : line.exitStatus;
}
