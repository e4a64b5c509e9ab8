#include "Views/Settings/AccountFace.h"

#include <QCoreApplication>

namespace zelk {

namespace {

QString tr(const char *text) {
    return QCoreApplication::translate("zelk", text);
}

AccountFace faceOf(StatusRole role, const QString &state, const QString &action = {}) {
    return {
        .state = state, .symbol = Tokens::Status::symbol(role), .ink = Tokens::Status::color(role), .action = action};
}

} // namespace

AccountFace accountFace(bool connected) {
    AccountFace face;
    if (connected) {
        face = faceOf(StatusRole::done, tr("Connected"), tr("Disconnect"));
        face.destructive = true;
    } else {
        face.action = tr("Connect");
    }
    return face;
}

AccountFace localFace(ConsentStatus status) {
    switch (status) {
    case ConsentStatus::authorized:
        return faceOf(StatusRole::done, tr("Enabled"));
    case ConsentStatus::undetermined:
        return faceOf(StatusRole::review, tr("Not enabled"), tr("Grant Access"));
    case ConsentStatus::denied:
        return faceOf(StatusRole::failed, tr("Denied"), tr("Open Settings…"));
    }
    return {};
}

} // namespace zelk
