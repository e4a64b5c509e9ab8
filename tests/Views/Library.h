#pragma once

#include "State/LibraryStore.h"
#include "Support/MockHelperClient.h"

#include <QTest>

namespace zelk {

// A playlist, or a folder, that is named as its id.
inline PlaylistDTO playlist(const char *id, PlaylistSourceId source, bool isFolder = false,
                            const char *parent = nullptr) {
    PlaylistDTO result;
    result.id = result.name = QString::fromUtf8(id);
    result.source = source;
    result.isFolder = isFolder;
    if (parent)
        result.parentId = QString::fromUtf8(parent);
    if (!isFolder)
        result.trackCount = 3;
    return result;
}

// A library store that has loaded those playlists.
class Library {
public:
    explicit Library(const std::vector<PlaylistDTO> &playlists)
        : m_store(std::make_unique<LibraryStore>(std::make_shared<MockHelperClient>(
              MockHelperClient::Responses{{Method::listPlaylists, toJSONValue(playlists)}}))) {
        LibraryStore *store = m_store.get();
        startTask(store, [store](const std::stop_token &) { return store->refresh(); });
        if (!QTest::qWaitFor([store] { return !store->playlists().empty(); }))
            qFatal("no library");
    }

    LibraryStore &operator*() const { return *m_store; }
    LibraryStore *operator->() const { return m_store.get(); }

private:
    std::unique_ptr<LibraryStore> m_store;
};

} // namespace zelk
