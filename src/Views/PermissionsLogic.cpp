#include "Views/PermissionsLogic.h"

#include "Platform/MusicLibraryConsent.h"
#include "Platform/RememberedConsent.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

void setState(PermissionFace &face, const QString &state, const QString &symbol, Ink ink) {
    face.state = state;
    face.symbol = symbol;
    face.ink = ink;
}

void setAnswer(PermissionFace &face, std::optional<bool> answer) {
    if (!answer)
        setState(face, PermissionsLogic::tr("Not decided yet"), u"circle"_s, Ink::secondary);
    else if (*answer)
        setState(face, PermissionsLogic::tr("Allowed"), u"checkmark.circle.fill"_s, Ink::green);
    else
        setState(face, PermissionsLogic::tr("Not allowed"), u"minus.circle"_s, Ink::secondary);
    face.action = answer == true ? PermissionsLogic::tr("Don't Allow") : PermissionsLogic::tr("Allow");
}

} // namespace

PermissionFace libraryFace(std::optional<bool> answer, ConsentStatus status, const QString &libraryFile) {
    PermissionFace face;
    face.name = PermissionsLogic::tr("Read your exported Music library");
    face.explanation =
        PermissionsLogic::tr("The library that the Music app exports to %1, and the covers of its tracks. "
                             "This is about what the application itself reads.")
            .arg(libraryFile);
    setAnswer(face, answer);
    if (answer == true && status != ConsentStatus::authorized)
        setState(face, PermissionsLogic::tr("Allowed, but there is no such file to read"),
                 u"exclamationmark.triangle.fill"_s, Ink::orange);
    return face;
}

PermissionFace appleMusicFace(std::optional<bool> answer) {
    PermissionFace face;
    face.name = PermissionsLogic::tr("Sign in to Apple Music");
    face.explanation = PermissionsLogic::tr("In your browser, to read the playlists in your Apple Music library.");
    setAnswer(face, answer);
    return face;
}

QVariantList PermissionsLogic::faces() const {
    const auto library = libraryFace(m_permissions.library->answer(), m_permissions.libraryStatus->determine(false),
                                     m_permissions.libraryFile);
    return {QVariant::fromValue(library), QVariant::fromValue(appleMusicFace(m_permissions.appleMusic->answer()))};
}

void PermissionsLogic::change(int index) {
    RememberedConsent &consent = index == 0 ? *m_permissions.library : *m_permissions.appleMusic;
    consent.setAnswer(consent.answer() != true);
    Q_EMIT changed();
    Q_EMIT answered();
}

} // namespace zelk
