#include "Platform/MusicLibrary.h"

#include "Platform/EmbeddedCover.h"
#include "Platform/MusicLibraryExport.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

class ExportedLibrary final : public MusicLibrary {
public:
    explicit ExportedLibrary(std::vector<MediaItem> items) : _items(std::move(items)) {}

    const std::vector<MediaItem> &allMediaItems() const override { return _items; }
    QByteArray artworkData(const MediaItem &item) const override { return embeddedCover(item.file); }

private:
    const std::vector<MediaItem> _items;
};

} // namespace

std::unique_ptr<MusicLibrary> MusicLibrary::open(const QString &file) {
    QFile exported(file);
    // A pipe in its place would hold up its reader for good.
    if (QFileInfo(file).exists() && !QFileInfo(file).isFile())
        throw MusicLibraryError(u"%1: not a file"_s.arg(file));
    if (!exported.open(QIODevice::ReadOnly))
        throw MusicLibraryError(u"%1: %2"_s.arg(file, exported.errorString()));
    return std::make_unique<ExportedLibrary>(readMusicLibraryExport(exported));
}

QString MusicLibrary::defaultFile() {
    return QStandardPaths::writableLocation(QStandardPaths::MusicLocation) + u"/Library.xml"_s;
}

} // namespace zelk
