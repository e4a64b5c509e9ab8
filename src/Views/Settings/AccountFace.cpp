#include "Views/Settings/AccountFace.h"

#include <QCoreApplication>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

AccountFace faceOf(StatusRole role, const QString &state, const QString &action = {}) {
    return {
        .state = state, .symbol = Tokens::Status::symbol(role), .ink = Tokens::Status::color(role), .action = action};
}

} // namespace

AccountFace accountFace(bool connected) {
    AccountFace face;
    if (connected) {
        face = faceOf(StatusRole::done, Texts::tr("Connected"), Texts::tr("Disconnect"));
        face.destructive = true;
    } else {
        face.action = Texts::tr("Connect");
    }
    return face;
}

AccountFace localFace(ConsentStatus status) {
    switch (status) {
    case ConsentStatus::authorized:
        return faceOf(StatusRole::done, Texts::tr("Enabled"));
    case ConsentStatus::undetermined:
        return faceOf(StatusRole::review, Texts::tr("Not enabled"), Texts::tr("Grant Access"));
    case ConsentStatus::denied:
        return faceOf(StatusRole::failed, Texts::tr("Denied"), Texts::tr("Open Settings…"));
    }
    return {};
}

} // namespace zelk
