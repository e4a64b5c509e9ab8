#include "Services/Appcast.h"

#include "Services/UpdateError.h"
#include "Services/UpdateVersion.h"

#include <QXmlStreamReader>

namespace zelk {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype versionLimit = 64; // characters
constexpr qsizetype signatureSize = 64;

/// What an item of the feed says, before it is known to be of use.
struct RawItem {
    AppcastItem item;
    bool hasEnclosure = false;
    bool forOthers = false;
};

class AppcastReader {
public:
    explicit AppcastReader(const QByteArray &xml) : _xml(xml) {}

    std::vector<AppcastItem> read() {
        if (!next() || !isPlain(u"rss"_s))
            fail(u"it doesn't begin as RSS"_s);
        bool channel = false;
        while (next()) {
            if (!isPlain(u"channel"_s)) {
                skip();
                continue;
            }
            channel = true;
            readChannel();
        }
        // What follows the root is read too, or a document could go on with anything.
        while (!_xml.atEnd())
            _xml.readNext();
        finish(channel);
        return std::move(_items);
    }

private:
    [[noreturn]] static void fail(const QString &why) { throw UpdateError(UpdateProblem::unreadableFeed, why); }

    void finish(bool channel) const {
        if (_xml.hasError())
            fail(_xml.errorString());
        if (!channel)
            fail(u"it has no channel"_s);
    }

    /// On to the next child of the present element; false at its end.
    bool next() {
        while (!_xml.atEnd()) {
            switch (_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
                return false;
            case QXmlStreamReader::DTD:
                fail(u"it has a document type"_s);
            default:
                break;
            }
        }
        return false;
    }

    void skip() { _xml.skipCurrentElement(); }

    bool isPlain(const QString &name) const { return _xml.namespaceUri().isEmpty() && _xml.name() == name; }
    bool isExtension(const QString &name) const { return _xml.namespaceUri() == _extension && _xml.name() == name; }

    QString text() { return _xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }
    QString line() { return text().simplified().left(versionLimit); }

    QString extensionAttribute(const QString &name) const {
        return _xml.attributes().value(_extension, name).toString().simplified().left(versionLimit);
    }

    void readChannel() {
        while (next()) {
            if (isPlain(u"item"_s))
                readItem();
            else
                skip();
        }
    }

    void readItem() {
        RawItem raw;
        while (next())
            readField(raw);
        auto &item = raw.item;
        if (!raw.hasEnclosure || raw.forOthers || !isVersion(item.version) || item.length <= 0)
            return;
        if (item.shortVersion.isEmpty())
            item.shortVersion = item.version;
        _items.push_back(std::move(item));
    }

    void readField(RawItem &raw) {
        auto &item = raw.item;
        if (isExtension(u"version"_s))
            item.version = line();
        else if (isExtension(u"shortVersionString"_s))
            item.shortVersion = line();
        else if (isExtension(u"releaseNotesLink"_s) && item.notesUrl.isEmpty())
            item.notesUrl = QUrl(text(), QUrl::StrictMode);
        else if (isPlain(u"description"_s) && item.notes.isEmpty())
            item.notes = text();
        else if (isExtension(u"channel"_s))
            raw.forOthers = !text().isEmpty() || raw.forOthers;
        else if (isPlain(u"enclosure"_s) && !raw.hasEnclosure)
            readEnclosure(raw);
        else
            skip();
    }

    void readEnclosure(RawItem &raw) {
        auto &item = raw.item;
        const auto plain = _xml.attributes();
        raw.hasEnclosure = true;
        item.url = QUrl(plain.value(u"url"_s).toString(), QUrl::StrictMode);
        item.length = plain.value(u"length"_s).toLongLong();
        const auto signature = QByteArray::fromBase64Encoding(
            plain.value(_extension, u"edSignature"_s).trimmed().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (signature && (*signature).size() == signatureSize)
            item.signature = *signature;
        // The elements, which come in any order, go before the attributes.
        if (item.version.isEmpty())
            item.version = extensionAttribute(u"version"_s);
        if (item.shortVersion.isEmpty())
            item.shortVersion = extensionAttribute(u"shortVersionString"_s);
        const auto system = extensionAttribute(u"os"_s);
        raw.forOthers = raw.forOthers || (!system.isEmpty() && system != u"linux"_s);
        skip();
    }

    const QString _extension = u"http://www.andymatuschak.org/xml-namespaces/sparkle"_s;
    QXmlStreamReader _xml;
    std::vector<AppcastItem> _items;
};

} // namespace

std::vector<AppcastItem> readAppcast(const QByteArray &xml) {
    return AppcastReader(xml).read();
}

std::optional<AppcastItem> newestAbove(const QString &current, const std::vector<AppcastItem> &items) {
    std::optional<AppcastItem> newest;
    for (const auto &item : items) {
        if (std::is_gt(compareVersions(item.version, newest ? newest->version : current)))
            newest = item;
    }
    return newest;
}

} // namespace zelk
