#include "Platform/MusicLibraryExport.h"

#include <QDir>
#include <QUrl>
#include <QXmlStreamReader>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

/// Reads on from where it stands and keeps nothing but the items: one pass, whatever else the list holds.
class Reader {
public:
    explicit Reader(QIODevice &device) : _xml(&device) {}

    std::vector<MusicLibrary::MediaItem> items() {
        readProlog();
        if (!_xml.hasError() && _xml.name() != "plist"_L1)
            _xml.raiseError(u"not a property list"_s);
        if (_xml.readNextStartElement()) {
            eachEntry([this](QStringView key) {
                if (key != "Tracks"_L1)
                    return false;
                readTracks();
                return true;
            });
        }
        // What stands behind the library must be whole, too: half a file is no library.
        while (!_xml.hasError() && !_xml.atEnd())
            _xml.readNext();
        if (_xml.hasError())
            throw MusicLibraryError(u"line %1: %2"_s.arg(_xml.lineNumber()).arg(_xml.errorString()));
        return std::move(_items);
    }

private:
    void readProlog() {
        while (!_xml.atEnd() && !_xml.hasError()) {
            const auto token = _xml.readNext();
            if (token == QXmlStreamReader::DTD && !_xml.entityDeclarations().isEmpty())
                _xml.raiseError(u"declares entities"_s);
            if (token == QXmlStreamReader::StartElement)
                return;
        }
    }

    /// In a dictionary: calls `read` with each key, which reads the value and says so, or leaves it to be passed over.
    template<typename Read>
    void eachEntry(const Read &read) {
        if (_xml.name() != "dict"_L1) {
            _xml.raiseError(u"expected a dictionary"_s);
            return;
        }
        while (_xml.readNextStartElement()) {
            if (_xml.name() != "key"_L1) {
                _xml.raiseError(u"expected a key"_s);
                return;
            }
            const QString key = _xml.readElementText();
            if (!_xml.readNextStartElement()) {
                if (!_xml.hasError())
                    _xml.raiseError(u"a key without a value"_s);
                return;
            }
            if (!read(key))
                _xml.skipCurrentElement();
        }
    }

    void readTracks() {
        eachEntry([this](QStringView) {
            readTrack();
            return true;
        });
    }

    void readTrack() {
        std::optional<quint64> id;
        QString location;
        eachEntry([&](QStringView key) {
            if (key == "Persistent ID"_L1) {
                bool isNumber = false;
                const quint64 number = _xml.readElementText().toULongLong(&isNumber, 16);
                if (isNumber)
                    id = number;
                return true;
            }
            if (key == "Location"_L1) {
                location = _xml.readElementText();
                return true;
            }
            return false;
        });
        if (id && !_xml.hasError())
            _items.push_back({*id, fileOf(location)});
    }

    static QString fileOf(const QString &location) {
        QUrl url(location);
        if (!url.isLocalFile())
            return {};
        if (url.host() == "localhost"_L1)
            url.setHost({});
        // With another host it is a file of another machine; what isn't a whole path is one of no machine.
        const QString file = url.host().isEmpty() ? url.toLocalFile() : QString();
        return QDir::isAbsolutePath(file) && !file.contains(QChar::Null) ? file : QString();
    }

    QXmlStreamReader _xml;
    std::vector<MusicLibrary::MediaItem> _items;
};

} // namespace

std::vector<MusicLibrary::MediaItem> readMusicLibraryExport(QIODevice &device) {
    return Reader(device).items();
}

} // namespace zelk
