#include "Serve/CommandLine.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

const QString usage = u"Usage: zelk serve\n"
                      "       zelk --version\n"
                      "       zelk --help\n"
                      "\n"
                      "Turns exported playlists and your own audio files into a DJ-ready folder.\n"
                      "\n"
                      "  serve      answer an application: requests on standard input, replies and events on\n"
                      "             standard output, one JSON object a line, until the end of the input\n"
                      "  --version  print the version\n"
                      "  --help     print this text\n"_s;

CommandLine wrongUse(const QString &why) {
    return {CommandLine::Verb::None, u"zelk: %1\n\n%2"_s.arg(why, usage), 2};
}

} // namespace

CommandLine readCommandLine(const QStringList &arguments) {
    if (arguments.isEmpty()) {
        return wrongUse(u"what to do?"_s);
    }
    const QString &verb = arguments.first();
    if (verb == "--help"_L1 || verb == "-h"_L1) {
        return {CommandLine::Verb::None, usage, 0};
    }
    if (verb == "--version"_L1) {
        return {CommandLine::Verb::None, u"zelk %1\n"_s.arg(QStringLiteral(ZELK_VERSION)), 0};
    }
    if (verb != "serve"_L1) {
        return wrongUse(u"unknown command \"%1\""_s.arg(verb));
    }
    if (arguments.size() > 1) {
        return wrongUse(u"\"serve\" takes no arguments"_s);
    }
    return {CommandLine::Verb::Serve, {}, 0};
}

} // namespace zelk::engine
