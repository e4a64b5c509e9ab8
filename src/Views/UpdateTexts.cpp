#include "Views/UpdateTexts.h"

#include "Transport/Tagged.h"

#include <QCoreApplication>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(UpdateDialog)
};

UpdateButton putAway(const QString &text) {
    return {text, UpdateAnswer::later};
}

UpdateButton cancel() {
    return {Texts::tr("Cancel"), UpdateAnswer::cancel};
}

QString size(qint64 bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

QString howItArrives(UpdateDelivery delivery) {
    switch (delivery) {
    case UpdateDelivery::download:
        return Texts::tr("zelk can download the new one beside itself. Installing it is up to you.");
    case UpdateDelivery::packageManager:
        return Texts::tr("The package manager of this system installed zelk, and brings the new version too.");
    case UpdateDelivery::elsewhere:
        return Texts::tr("zelk can't write to the folder that it is in. Get the new version where you got this one.");
    }
    Q_UNREACHABLE();
}

struct Explanation {
    QString heading;
    QString text;
};

Explanation explain(UpdateProblem problem) {
    const QString refused = Texts::tr("The Update Was Refused");
    const QString unreachable = Texts::tr("The Update Server Can't Be Reached");
    const QString failed = Texts::tr("The Update Failed");
    switch (problem) {
    case UpdateProblem::noFeed:
        return {Texts::tr("This Build Has No Updates"),
                Texts::tr("It doesn't name a place to get them from. Get a new version where you got this one.")};
    case UpdateProblem::insecureAddress:
        return {refused, Texts::tr("It leads to an address that isn't secure, so nothing was taken from there.")};
    case UpdateProblem::unreachable:
        return {unreachable, Texts::tr("There is no connection, or it broke. Check your network and try again.")};
    case UpdateProblem::untrustedServer:
        return {refused,
                Texts::tr("The certificate of the update server can't be trusted, so nothing was taken from there.")};
    case UpdateProblem::refused:
        return {failed, Texts::tr("The update server answers with an error. Try again later.")};
    case UpdateProblem::silence:
        return {unreachable, Texts::tr("It doesn't answer. Try again later.")};
    case UpdateProblem::unreadableFeed:
        return {failed, Texts::tr("What the update server sends is no list of updates. Try again later.")};
    case UpdateProblem::tooLarge:
        return {refused, Texts::tr("What the update server sends is larger than it may be.")};
    case UpdateProblem::unsignedUpdate:
        return {refused,
                Texts::tr("There is a new version, but its signature is missing or this build can't check it.")};
    case UpdateProblem::wrongLength:
        return {refused, Texts::tr("The download isn't as long as announced. It has been deleted.")};
    case UpdateProblem::wrongSignature:
        return {refused, Texts::tr("The signature of the download is wrong. It has been deleted.")};
    case UpdateProblem::unwritable:
        return {
            failed,
            Texts::tr("The download can't be written to the folder that zelk is in. Check that the disk has room.")};
    }
    Q_UNREACHABLE();
}

UpdateFace face(const UpdateScene::Checking &) {
    return {.symbol = u"arrow.triangle.2.circlepath"_s,
            .heading = Texts::tr("Checking for Updates…"),
            .text = Texts::tr("This takes a moment."),
            .secondary = cancel(),
            .closed = UpdateAnswer::cancel,
            .busy = true};
}

UpdateFace face(const UpdateScene::UpToDate &scene) {
    return {.symbol = u"checkmark.circle"_s,
            .heading = Texts::tr("zelk Is Up to Date"),
            .text = Texts::tr("You have version %1, the newest there is.").arg(scene.version),
            .primary = putAway(Texts::tr("OK"))};
}

UpdateFace face(const UpdateScene::Found &scene) {
    UpdateFace result{.symbol = u"arrow.down.circle"_s,
                      .heading = Texts::tr("zelk %1 Is Available").arg(scene.version),
                      .text =
                          Texts::tr("You have version %1.").arg(scene.current) + u' ' + howItArrives(scene.delivery),
                      .tertiary = {Texts::tr("Skip This Version"), UpdateAnswer::skip},
                      .notes = scene.notes};
    if (scene.delivery == UpdateDelivery::download) {
        result.primary = {Texts::tr("Download"), UpdateAnswer::download};
        result.secondary = putAway(Texts::tr("Later"));
    } else {
        result.primary = putAway(Texts::tr("OK"));
    }
    return result;
}

UpdateFace face(const UpdateScene::Downloading &scene) {
    const bool whole = scene.received >= scene.total;
    return {.symbol = u"arrow.down.circle"_s,
            .heading = Texts::tr("Downloading zelk %1…").arg(scene.version),
            .text = whole ? Texts::tr("Checking its signature…")
                          : Texts::tr("%1 of %2").arg(size(scene.received), size(scene.total)),
            .secondary = cancel(),
            .closed = UpdateAnswer::cancel,
            .progress = whole ? 1.0 : static_cast<double>(scene.received) / static_cast<double>(scene.total)};
}

UpdateFace face(const UpdateScene::Ready &scene) {
    return {.symbol = u"checkmark.shield"_s,
            .heading = Texts::tr("zelk %1 Is Downloaded").arg(scene.version),
            .text =
                Texts::tr("Its signature is right. To install it, quit zelk and put it in the place of this version:") +
                u'\n' + scene.file,
            .primary = {Texts::tr("Show in Folder"), UpdateAnswer::showInFolder},
            .secondary = putAway(Texts::tr("Close"))};
}

UpdateFace face(const UpdateScene::Failed &scene) {
    const auto explanation = explain(scene.problem);
    return {.symbol = u"exclamationmark.triangle"_s,
            .heading = explanation.heading,
            .text = explanation.text,
            .primary = putAway(Texts::tr("OK"))};
}

} // namespace

std::optional<UpdateFace> updateFace(const UpdateScene::Any &scene) {
    return std::visit(Overloaded{[](const UpdateScene::Nothing &) { return std::optional<UpdateFace>(); },
                                 [](const auto &shown) { return std::optional(face(shown)); }},
                      scene);
}

} // namespace zelk
