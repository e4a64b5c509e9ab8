#include "Terminal/HelpTexts.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

const QString statusText = u"Exit status: 0 if all is done, 1 if something failed, 2 for wrong use.\n"_s;

QString bodyOf(CommandLine::Verb verb) {
    switch (verb) {
    case CommandLine::Verb::None:
        return {};
    case CommandLine::Verb::Serve:
        return u"Answers an application: requests on standard input, replies and events on standard\n"
               "output, one JSON object a line, until the end of the input. The file in hand is then\n"
               "finished or undone within two seconds.\n"
               "\n"
               "Exit status: 0.\n"_s;
    case CommandLine::Verb::List:
        return u"Lists the exported playlists, a line each: how many of its tracks are on disk, how many\n"
               "it has, where it comes from, and its name with the folders that it lies in. A playlist\n"
               "that shares all of that name with another one has its id behind it, by which \"zelk\n"
               "sync\" takes it as well.\n"
               "\n"_s +
               statusText;
    case CommandLine::Verb::Sync:
        return u"Brings the playlists of these names up to date in the output folder; without a NAME,\n"
               "all of them. A NAME is a playlist's name, its name with its folders as in \"Sets/Tram\n"
               "Lines\", or its id. When none is exactly that, upper and lower case don't count. The\n"
               "name of a folder stands for all playlists in it.\n"
               "\n"
               "  --dry-run  say what would be done, and write nothing\n"
               "  --cleanup  afterwards move the files that no playlist holds any more to the Trash\n"
               "\n"
               "A doubtful match isn't taken; \"zelk review\" asks about it. On a terminal the last line\n"
               "shows how far the sync is. Ctrl+C stops it after or before the file in hand, never in\n"
               "the middle of one; a second Ctrl+C ends it at once, and the next sync clears up.\n"
               "\n"_s +
               statusText +
               u"A sync that a signal has stopped ends with 128 and the signal's number: 130 for Ctrl+C.\n"_s;
    case CommandLine::Verb::Review:
        return u"Asks about the tracks whose match is doubtful, one after the other. On a terminal it\n"
               "prompts; otherwise it reads an answer a line from standard input until its end.\n"
               "\n"
               "  1, 2, ...  take that match\n"
               "  a          take the best match\n"
               "  s          skip the track, in later syncs too\n"
               "  n          leave it for later and go on to the next\n"
               "  q          leave this one and the rest for later\n"
               "  a path, or a file: or http(s): address\n"
               "             take that audio file\n"
               "\n"_s +
               statusText;
    case CommandLine::Verb::Doctor:
        return u"Checks what a sync needs: ffmpeg, the folders, the room on the disk. Each line says \"ok\",\n"
               "\"warn\" for what can wait, or \"fail\" for what keeps a sync from its work.\n"
               "\n"
               "  --fix  make the folders that are missing, and check again\n"
               "\n"_s +
               u"Exit status: 0 if nothing fails, 1 if something does, 2 for wrong use.\n"_s;
    }
    return {};
}

} // namespace

QString helpText() {
    return u"Usage: zelk list\n"
           "       zelk sync [--dry-run] [--cleanup] [NAME...]\n"
           "       zelk review\n"
           "       zelk doctor [--fix]\n"
           "       zelk serve\n"
           "       zelk --version\n"
           "       zelk [COMMAND] --help\n"
           "\n"
           "Turns exported playlists and your own audio files into a DJ-ready folder.\n"
           "\n"
           "  list       list the playlists and how many of their tracks are on disk\n"
           "  sync       bring playlists up to date in the output folder\n"
           "  review     decide about the tracks whose match is doubtful\n"
           "  doctor     check what a sync needs\n"
           "  serve      answer an application on standard input and output\n"
           "  --version  print the version\n"
           "  --help     print this text, or that of a command\n"
           "\n"_s +
           statusText;
}

QString usageOf(CommandLine::Verb verb) {
    switch (verb) {
    case CommandLine::Verb::None:
        return u"Usage: zelk list | sync | review | doctor | serve | --version | --help\n"_s;
    case CommandLine::Verb::Serve:
        return u"Usage: zelk serve\n"_s;
    case CommandLine::Verb::List:
        return u"Usage: zelk list\n"_s;
    case CommandLine::Verb::Sync:
        return u"Usage: zelk sync [--dry-run] [--cleanup] [NAME...]\n"_s;
    case CommandLine::Verb::Review:
        return u"Usage: zelk review\n"_s;
    case CommandLine::Verb::Doctor:
        return u"Usage: zelk doctor [--fix]\n"_s;
    }
    return {};
}

QString helpText(CommandLine::Verb verb) {
    return usageOf(verb) + u'\n' + bodyOf(verb);
}

} // namespace zelk::engine
