#include "Transport/HelperProtocolCatalogue.h"

#include <algorithm>

namespace zelk {

std::size_t qHash(const ArtworkRef &ref, std::size_t seed) {
    const std::size_t content = match(
        ref, [](const ArtworkRef::None &) { return std::size_t{0}; },
        [&](const ArtworkRef::Url &url) { return ::qHash(url.text, seed); },
        [&](const ArtworkRef::AppleMusic &music) { return ::qHash(music.persistentID, seed); },
        [&](const ArtworkRef::Mosaic &mosaic) {
            return ::qHashRange(mosaic.trackIds.cbegin(), mosaic.trackIds.cend(), seed);
        });
    return ::qHashMulti(seed, ref.value.index(), content);
}

namespace {

bool isLowerOrDigit(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

bool isPlainInPath(char16_t c) {
    return isLowerOrDigit(c) || (c >= u'A' && c <= u'Z') || c == u'/' || c == u'-' || c == u'.' || c == u'_';
}

// Whether a text is a URL of the plain kind that nearly all are, "https://img.example.net/a/b_1.jpg", which QUrl would
// take and give back unchanged. That it isn't says nothing.
bool isPlainUrl(QStringView text) {
    constexpr QStringView scheme = u"https://";
    if (!text.startsWith(scheme))
        return false;
    auto at = text.utf16() + scheme.size();
    const auto *const end = text.utf16() + text.size();
    // A leading digit might be the start of an address, "--" that of an encoded name, and 63 is the longest label.
    const auto *const host = at;
    char16_t before = u'.';
    for (; at != end && *at != u'/'; before = *at++) {
        const bool separator = *at == u'.' || *at == u'-';
        if (separator ? !isLowerOrDigit(before) : !isLowerOrDigit(*at))
            return false;
    }
    if (at == host || at == end || at - host > 63 || *host <= u'9' || !isLowerOrDigit(before))
        return false;
    return std::all_of(at, end, isPlainInPath);
}

} // namespace

ArtworkRef artworkOfUrlText(QString text) {
    if (isPlainUrl(text))
        return {ArtworkRef::Url{std::move(text)}};
    const QUrl url(text);
    return url.isValid() ? ArtworkRef::url(url) : ArtworkRef::none();
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
            writer.string(QStringView(url.text));
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
