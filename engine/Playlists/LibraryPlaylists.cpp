#include "Playlists/LibraryPlaylists.h"

#include "Playlists/GuardedXml.h"
#include "Playlists/LibraryFolders.h"
#include "Playlists/Location.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/RowIdentity.h"

#include <QHash>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

class LibraryReader {
public:
    LibraryReader(QIODevice &device, ReadLimits limits) : _xml(device), _limits(limits), _most(limits) {}

    ReadFile read() {
        readDocument();
        ReadFile file;
        if (const QString problem = _xml.problem(); !problem.isEmpty()) {
            file.breakOff(_xml.line(), u"the library can't be read on from here: %1"_s.arg(problem));
            return file;
        }
        if (_nameless > 0) {
            file.warn(0, u"%1 tracks have neither a name nor a location and are left out"_s.arg(_nameless));
        }
        fillLists();
        arrangeLists(_lists);
        file.lists = takeShownLists(_lists);
        return file;
    }

private:
    void readDocument() {
        if (!_xml.nextElement() || _xml.name() != "plist"_L1) {
            _xml.fail(u"it isn't a library of the Music app"_s);
            return;
        }
        bool isLibrary = false;
        if (_xml.nextElement()) {
            eachEntry([&](const QString &key) {
                isLibrary |= key == "Tracks"_L1 || key == "Playlists"_L1;
                if (key == "Tracks"_L1) {
                    eachEntry([this](const QString &id) { return readTrack(id), true; });
                } else if (key == "Playlists"_L1) {
                    eachItem([this] { readList(); });
                } else {
                    return false;
                }
                return true;
            });
        }
        _xml.finish();
        if (!isLibrary) {
            _xml.fail(u"it isn't a library of the Music app"_s);
        }
    }

    /// In a dictionary: calls `read` with each key while standing in its value; `read` goes through that and says so,
    /// or leaves it to be passed over.
    template<class Read>
    void eachEntry(const Read &read) {
        if (_xml.name() != "dict"_L1) {
            _xml.fail(u"a dictionary is expected"_s);
            return;
        }
        while (_xml.nextElement()) {
            if (_xml.name() != "key"_L1) {
                _xml.fail(u"a key is expected"_s);
                return;
            }
            const QString key = _xml.text();
            if (!_xml.nextElement()) {
                _xml.fail(u"a key has no value"_s);
                return;
            }
            if (!read(key)) {
                _xml.skip();
            }
        }
    }

    /// In an array: calls `read` while standing in each item.
    template<class Read>
    void eachItem(const Read &read) {
        if (_xml.name() != "array"_L1) {
            _xml.fail(u"an array is expected"_s);
            return;
        }
        while (_xml.nextElement()) {
            read();
        }
    }

    /// The value that it stands in, if it is text; a value of another kind counts as absent.
    QString textValue() {
        if (_xml.name() == "string"_L1) {
            return _xml.text();
        }
        _xml.skip();
        return {};
    }

    std::optional<qint64> integerValue() {
        if (_xml.name() != "integer"_L1) {
            _xml.skip();
            return std::nullopt;
        }
        bool ok = false;
        const qint64 value = _xml.text().toLongLong(&ok);
        return ok ? std::optional(value) : std::nullopt;
    }

    bool isTrue() {
        const bool value = _xml.name() == "true"_L1;
        _xml.skip();
        return value;
    }

    bool isFalse() {
        const bool value = _xml.name() == "false"_L1;
        _xml.skip();
        return value;
    }

    void readTrack(const QString &entry) {
        ListedTrack track;
        std::optional<qint64> id;
        QString location;
        eachEntry([&](const QString &key) {
            if (key == "Track ID"_L1) {
                id = integerValue();
            } else if (key == "Name"_L1) {
                track.title = textValue();
            } else if (key == "Artist"_L1) {
                track.artist = textValue();
            } else if (key == "Album"_L1) {
                track.album = textValue();
            } else if (key == "Total Time"_L1) {
                track.durationSec = lengthOrUnknown(static_cast<double>(integerValue().value_or(0)) / 1'000);
            } else if (key == "Persistent ID"_L1) {
                track.persistentId = textValue();
            } else if (key == "Location"_L1) {
                location = textValue();
            } else {
                return false;
            }
            return true;
        });
        if (location.startsWith("file:"_L1, Qt::CaseInsensitive)) {
            track.location = resolvedLocation(location, {});
        }
        if (track.title.isEmpty()) {
            takeEntryName(location, track);
        }
        if (!id) { // the entry's own key is the same number
            bool ok = false;
            const qint64 number = entry.toLongLong(&ok);
            id = ok ? std::optional(number) : std::nullopt;
        }
        if (!_limits.take(track)) {
            _xml.fail(u"it holds more than %1 tracks, or as much text"_s.arg(_most.tracks));
        } else if (track.title.isEmpty()) {
            ++_nameless;
        } else if (id) {
            _tracks.insert(*id, track);
        }
    }

    void readList() {
        LibraryList list;
        eachEntry([&](const QString &key) {
            if (key == "Name"_L1) {
                list.content.name = textValue();
            } else if (key == "Playlist Persistent ID"_L1) {
                list.content.key = textValue();
            } else if (key == "Parent Persistent ID"_L1) {
                list.content.parentKey = textValue();
            } else if (key == "Folder"_L1) {
                list.content.isFolder = isTrue();
            } else if (key == "Master"_L1) {
                list.isHidden |= isTrue();
            } else if (key == "Visible"_L1) {
                list.isHidden |= isFalse();
            } else if (key == "Distinguished Kind"_L1) {
                list.isHidden = true;
                return false;
            } else if (key == "Playlist Items"_L1) {
                eachItem([&] { readRow(list); });
            } else {
                return false;
            }
            return true;
        });
        _limits.characters -= list.content.name.size() + list.content.key.size() + list.content.parentKey.size();
        if (--_limits.lists < 0 || _limits.characters < 0) {
            _xml.fail(u"it holds more than %1 playlists, or as much text"_s.arg(_most.lists));
        }
        if (list.isHidden) {
            list.rows = {};
        }
        _lists.push_back(std::move(list));
    }

    void readRow(LibraryList &list) {
        eachEntry([&](const QString &key) {
            if (key != "Track ID"_L1) {
                return false;
            }
            if (const auto id = integerValue()) {
                list.rows.push_back(*id);
                if (--_limits.rows < 0) {
                    _xml.fail(u"its playlists hold more than %1 rows"_s.arg(_most.rows));
                }
            }
            return true;
        });
    }

    /// Gives each list its tracks, and a folder and a list the covers of its first four. A folder's rows repeat those
    /// of the lists in it.
    void fillLists() {
        for (LibraryList &list : _lists) {
            QStringList covers;
            for (const qint64 id : list.rows) {
                const auto track = _tracks.find(id);
                if (track == _tracks.end()) { // deleted, and not yet from the list
                    continue;
                }
                if (covers.size() < mosaicTiles && !track->persistentId.isEmpty()) {
                    covers += track->persistentId;
                }
                if (list.content.isFolder && covers.size() == mosaicTiles) {
                    break;
                }
                if (!list.content.isFolder) {
                    if (track->rowKey.isEmpty()) { // once, however many lists hold it
                        track->rowKey = rowKeyOf(*track, probeOf(*track));
                    }
                    list.content.tracks.push_back(*track);
                }
            }
            list.rows = {};
            list.content.artwork = covers.isEmpty() ? ArtworkRef::none() : ArtworkRef::mosaic(covers);
        }
    }

    GuardedXml _xml;
    ReadLimits _limits;
    const ReadLimits _most;
    QHash<qint64, ListedTrack> _tracks;
    std::vector<LibraryList> _lists;
    qint64 _nameless = 0;
};

} // namespace

ReadFile readLibrary(QIODevice &device, ReadLimits limits) {
    return LibraryReader(device, limits).read();
}

} // namespace zelk::engine
