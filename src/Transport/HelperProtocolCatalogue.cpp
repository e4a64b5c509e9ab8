#include "Transport/HelperProtocolCatalogue.h"

namespace zelk {

std::size_t qHash(const ArtworkRef &ref, std::size_t seed) {
    const std::size_t content = match(
        ref, [](const ArtworkRef::None &) { return std::size_t{0}; },
        [&](const ArtworkRef::Url &url) { return ::qHash(url.url, seed); },
        [&](const ArtworkRef::AppleMusic &music) { return ::qHash(music.persistentID, seed); },
        [&](const ArtworkRef::Mosaic &mosaic) {
            return ::qHashRange(mosaic.trackIds.cbegin(), mosaic.trackIds.cend(), seed);
        });
    return ::qHashMulti(seed, ref.value.index(), content);
}

ArtworkRef artworkOfUrlText(const QString &text) {
    QUrl url(text);
    return url.isValid() ? ArtworkRef::url(std::move(url)) : ArtworkRef::none();
}

namespace {

void writeKind(JSONWriter &writer, QLatin1StringView kind) {
    writer.key(QLatin1StringView("kind"));
    writer.string(kind);
}

} // namespace

void writeWire(JSONWriter &writer, const ArtworkRef &ref) {
    writer.beginObject();
    match(
        ref, [&](const ArtworkRef::None &) { writeKind(writer, QLatin1StringView("none")); },
        [&](const ArtworkRef::Url &url) {
            writeKind(writer, QLatin1StringView("url"));
            writer.key(QLatin1StringView("url"));
            writer.string(QStringView(url.url.toString(QUrl::FullyEncoded)));
        },
        [&](const ArtworkRef::AppleMusic &music) {
            writeKind(writer, QLatin1StringView("appleMusic"));
            writer.key(QLatin1StringView("persistentID"));
            writer.string(QStringView(music.persistentID));
        },
        [&](const ArtworkRef::Mosaic &mosaic) {
            writeKind(writer, QLatin1StringView("mosaic"));
            writer.key(QLatin1StringView("trackIds"));
            writeNode(writer, mosaic.trackIds);
        });
    writer.endObject();
}

void writeWire(JSONWriter &writer, const ReviewDecision &decision) {
    writer.beginObject();
    match(
        decision, [&](const ReviewDecision::Accept &) { writeKind(writer, QLatin1StringView("accept")); },
        [&](const ReviewDecision::Skip &) { writeKind(writer, QLatin1StringView("skip")); },
        [&](const ReviewDecision::Url &url) {
            writeKind(writer, QLatin1StringView("url"));
            writer.key(QLatin1StringView("url"));
            writer.string(QStringView(url.url));
        },
        [&](const ReviewDecision::Candidate &candidate) {
            writeKind(writer, QLatin1StringView("candidate"));
            writer.key(QLatin1StringView("candidateId"));
            writer.string(QStringView(candidate.candidateId));
        });
    writer.endObject();
}

} // namespace zelk
