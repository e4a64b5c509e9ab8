#include "Services/UpdateCheck.h"

#include "Services/HttpsReader.h"
#include "Services/ReleaseNotes.h"
#include "Services/UpdateDownload.h"
#include "Services/UpdateSignature.h"
#include "Support/Logger.h"

#include <QFileInfo>

#include <utility>

namespace zelk {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype feedLimit = 1024 * 1024; // bytes
constexpr qsizetype notesLimit = 256 * 1024; // bytes

HttpsReader readerOf(const UpdaterSurroundings &surroundings) {
    return {surroundings.network, surroundings.clock};
}

QCoro::Task<std::vector<AppcastItem>> readFeed(UpdaterSurroundingsRef surroundings, std::stop_token stop) {
    const QString address = surroundings->bundle.info(u"SUFeedURL"_s).toString();
    if (address.isEmpty())
        throw UpdateError(UpdateProblem::noFeed);
    const auto reader = readerOf(*surroundings);
    auto reading = reader.readAll(QUrl(address, QUrl::StrictMode), feedLimit, std::move(stop));
    const QByteArray xml = co_await reading;
    co_return readAppcast(xml);
}

/// What can't be said of an update is no reason to keep it back.
QCoro::Task<QString> readNotes(UpdaterSurroundingsRef surroundings, AppcastItem item, std::stop_token stop) {
    if (!item.notes.isEmpty() || item.notesUrl.isEmpty())
        co_return plainReleaseNotes(item.notes);
    QByteArray notes;
    try {
        const auto reader = readerOf(*surroundings);
        auto reading = reader.readAll(item.notesUrl, notesLimit, std::move(stop));
        notes = co_await reading;
    } catch (const UpdateError &failure) {
        Logger("updates").info(u"No release notes: %1"_s.arg(QString::fromUtf8(failure.what())));
    }
    co_return plainReleaseNotes(QString::fromUtf8(notes));
}

QCoro::Task<UpdateDelivery> findDelivery(UpdaterSurroundingsRef surroundings, std::stop_token stop) {
    auto asking = surroundings->isOwnedByPackageManager(surroundings->bundle.executablePath(), std::move(stop));
    const bool owned = co_await asking;
    if (owned)
        co_return UpdateDelivery::packageManager;
    const QFileInfo place(surroundings->folder);
    co_return place.isDir() && place.isWritable() ? UpdateDelivery::download : UpdateDelivery::elsewhere;
}

} // namespace

QCoro::Task<std::optional<UpdateOffer>> lookForUpdate(UpdaterSurroundingsRef surroundings, std::stop_token stop) {
    auto reading = readFeed(surroundings, stop);
    const auto items = co_await reading;
    auto newest = newestAbove(comparedVersion(surroundings->bundle), items);
    if (!newest)
        co_return std::nullopt;
    const auto key = readUpdateKey(surroundings->bundle.info(u"SUPublicEDKey"_s).toString());
    if (newest->signature.isEmpty() || !key)
        throw UpdateError(UpdateProblem::unsignedUpdate, key ? newest->version : u"this build has no key"_s);
    if (newest->url.scheme() != u"https"_s)
        throw UpdateError(UpdateProblem::insecureAddress, newest->url.toDisplayString());
    if (newest->length > updateSizeLimit)
        throw UpdateError(UpdateProblem::tooLarge, newest->version);
    UpdateOffer offer;
    offer.key = *key;
    auto finding = findDelivery(surroundings, stop);
    offer.delivery = co_await finding;
    auto noting = readNotes(surroundings, *newest, stop);
    newest->notes = co_await noting;
    offer.item = std::move(*newest);
    co_return offer;
}

} // namespace zelk
