#include "Views/Settings/ProxyFace.h"

#include "Support/Blanks.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

} // namespace

bool ProxyFace::hasInput() const {
    return !withoutBlanks(subscription).isEmpty();
}

ProxyFace::Action ProxyFace::action() const {
    if (hasInput())
        return Action::save;
    return configured ? Action::test : Action::nothingToSave;
}

QString ProxyFace::actionText() const {
    return action() == Action::test ? Texts::tr("Test") : Texts::tr("Save");
}

std::optional<ProxyFace::Outcome> ProxyFace::outcome() const {
    if (hasInput() || !testResult)
        return {};
    if (testResult->ok)
        return Outcome{.text = Texts::tr("Connected"), .symbol = u"checkmark.circle.fill"_s, .ink = Ink::green};
    return Outcome{.text = Texts::tr("Failed"), .symbol = u"xmark.octagon.fill"_s, .ink = Ink::red};
}

QString ProxyFace::detail() const {
    return testResult ? testResult->detail.value_or(QString()) : QString();
}

QString ProxyFace::footer() const {
    return (configured ? Texts::tr("A subscription URL is stored in your Keychain. Paste a new one to replace it. ")
                       : Texts::tr("Paste your VPN subscription URL. Stored securely in your Keychain. ")) +
           Texts::tr("Turn routing on or off from the VPN button in the toolbar. ") +
           Texts::tr("Soulseek is hard-stopped if the tunnel drops, so your IP is never exposed to peers.");
}

} // namespace zelk
