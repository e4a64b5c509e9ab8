#include "Serve/CommandLine.h"

#include "Terminal/HelpTexts.h"
#include "Terminal/PlainText.h"

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

using Verb = CommandLine::Verb;

CommandLine printed(const QString &text) {
    CommandLine line;
    line.output = text;
    return line;
}

CommandLine wrongUse(Verb verb, const QString &why) {
    CommandLine line;
    const QString help =
        verb == Verb::None ? u"zelk --help"_s : usageOf(verb).section(u' ', 1, 2).trimmed() + " --help"_L1;
    line.output = u"zelk: %1\n%2Try \"%3\".\n"_s.arg(plainText(why), usageOf(verb), help);
    line.exitStatus = 2;
    return line;
}

std::optional<Verb> verbOf(const QString &name) {
    static constexpr std::pair<QLatin1StringView, Verb> verbs[] = {{"serve"_L1, Verb::Serve},
                                                                   {"list"_L1, Verb::List},
                                                                   {"sync"_L1, Verb::Sync},
                                                                   {"review"_L1, Verb::Review},
                                                                   {"doctor"_L1, Verb::Doctor}};
    for (const auto &[known, verb] : verbs) {
        if (name == known) {
            return verb;
        }
    }
    return std::nullopt;
}

/// The switch of that name, if the verb has it.
bool *switchOf(CommandLine &line, const QString &name) {
    if (line.verb == Verb::Sync && name == "--dry-run"_L1) {
        return &line.dryRun;
    }
    if (line.verb == Verb::Sync && name == "--cleanup"_L1) {
        return &line.cleanup;
    }
    if (line.verb == Verb::Doctor && name == "--fix"_L1) {
        return &line.fix;
    }
    return nullptr;
}

bool asksForHelp(const QStringList &arguments) {
    for (const QString &argument : arguments) {
        if (argument == "--"_L1) {
            return false;
        }
        if (argument == "--help"_L1 || argument == "-h"_L1) {
            return true;
        }
    }
    return false;
}

} // namespace

CommandLine readCommandLine(const QStringList &arguments) {
    if (arguments.isEmpty()) {
        return wrongUse(Verb::None, u"what to do?"_s);
    }
    const QString &name = arguments.first();
    if (name == "--help"_L1 || name == "-h"_L1) {
        return printed(helpText());
    }
    if (name == "--version"_L1) {
        return printed(u"zelk %1\n"_s.arg(QStringLiteral(ZELK_VERSION)));
    }
    const std::optional<Verb> verb = verbOf(name);
    if (!verb) {
        return wrongUse(Verb::None, u"unknown command \"%1\""_s.arg(name));
    }
    const QStringList rest = arguments.mid(1);
    if (asksForHelp(rest)) {
        return printed(helpText(*verb));
    }
    CommandLine line;
    line.verb = *verb;
    bool onlyNames = false;
    for (const QString &argument : rest) {
        if (!onlyNames && argument == "--"_L1) {
            onlyNames = true;
        } else if (!onlyNames && argument.startsWith(u'-') && argument.size() > 1) {
            bool *const flag = switchOf(line, argument);
            if (!flag) {
                return wrongUse(*verb, u"unknown option \"%1\""_s.arg(argument));
            }
            *flag = true;
        } else if (*verb != Verb::Sync) {
            return wrongUse(*verb, u"\"%1\" takes no names, and \"%2\" is one"_s.arg(name, argument));
        } else {
            line.names += argument;
        }
    }
    return line;
}

} // namespace zelk::engine
