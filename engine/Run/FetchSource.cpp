#include "Run/FetchSource.h"

#include "Output/Convert.h"
#include "Output/FileNames.h"
#include "Output/RemoteAudio.h"

namespace zelk::engine {

std::shared_ptr<const AudioFile> fetchSource(WriteOrder &order, WriteHooks &hooks, const RunServices &services,
                                             std::stop_token stop) {
    const QString address = order.source.path;
    if (!isWebAddress(address)) {
        return nullptr;
    }
    auto fetched = fetchAudio(address, services.downloads, hooks.progress, stop, services.files);
    const bool replacesItself = order.replaces == order.target;
    order.source = *fetched;
    order.madeFrom = address;
    order.target = folderOf(order.target) + u'/' + stemOf(order.target) + u'.' + targetFormOf(*fetched).extension;
    if (replacesItself) {
        order.replaces = order.target;
    }
    hooks.progress = [](qint64, qint64) {}; // the way from there to its place is no second download
    return fetched;
}

} // namespace zelk::engine
