#include "Styling/Tokens.h"

#include <QCoreApplication>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelk::Tokens {

namespace Source {

QString logoAsset(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return u"ServiceAppleMusic"_s;
    case PlaylistSourceId::spotify:
        return u"ServiceSpotify"_s;
    }
    return {};
}

QColor accent(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return QColor(apple);
    case PlaylistSourceId::spotify:
        return QColor(spotify);
    }
    return {};
}

QString displayName(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return u"Apple Music"_s;
    case PlaylistSourceId::spotify:
        return u"Spotify"_s;
    }
    return {};
}

QString sfSymbol(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return u"music.note"_s;
    case PlaylistSourceId::spotify:
        return u"music.note.list"_s;
    }
    return {};
}

QString logoAsset(SourceId source) {
    switch (source) {
    case SourceId::soulseek:
        return u"ServiceSoulseek"_s;
    case SourceId::bandcamp:
        return u"ServiceBandcamp"_s;
    case SourceId::soundcloud:
        return u"ServiceSoundCloud"_s;
    case SourceId::youtube:
        return u"ServiceYouTube"_s;
    }
    return {};
}

QColor accent(SourceId source) {
    switch (source) {
    case SourceId::soulseek:
        return QColor(soulseek);
    case SourceId::bandcamp:
        return QColor(bandcamp);
    case SourceId::soundcloud:
        return QColor(soundcloud);
    case SourceId::youtube:
        return QColor(youtube);
    }
    return {};
}

QString displayName(SourceId source) {
    switch (source) {
    case SourceId::soulseek:
        return u"Soulseek"_s;
    case SourceId::bandcamp:
        return u"Bandcamp"_s;
    case SourceId::soundcloud:
        return u"SoundCloud"_s;
    case SourceId::youtube:
        return u"YouTube"_s;
    }
    return {};
}

DownloadSourceStyle downloadStyle(const std::optional<QString> &raw) {
    static constexpr std::array known{SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube};
    for (const SourceId source : known) {
        if (raw && *raw == wireName(source))
            return {displayName(source), accent(source), logoAsset(source)};
    }
    return {QCoreApplication::translate("zelk", "Unknown"), QColor(), std::nullopt};
}

} // namespace Source

namespace Status {

QString symbol(StatusRole role) {
    switch (role) {
    case StatusRole::queued:
        return u"circle"_s;
    case StatusRole::working:
        return u"arrow.triangle.2.circlepath"_s;
    case StatusRole::review:
        return u"exclamationmark.triangle.fill"_s;
    case StatusRole::done:
        return u"checkmark.circle.fill"_s;
    case StatusRole::failed:
        return u"xmark.circle.fill"_s;
    case StatusRole::skipped:
        return u"minus.circle"_s;
    case StatusRole::present:
        return u"checkmark.seal.fill"_s;
    }
    return {};
}

Ink color(StatusRole role) {
    switch (role) {
    case StatusRole::queued:
    case StatusRole::skipped:
        return Ink::secondary;
    case StatusRole::working:
        return Ink::accent;
    case StatusRole::review:
        return Ink::orange;
    case StatusRole::done:
    case StatusRole::present:
        return Ink::green;
    case StatusRole::failed:
        return Ink::red;
    }
    return Ink::primary;
}

} // namespace Status

namespace PhaseStyle {

QString symbol(Phase phase) {
    switch (phase) {
    case Phase::searching:
        return u"magnifyingglass"_s;
    case Phase::downloading:
        return u"arrow.down.circle"_s;
    case Phase::converting:
        return u"waveform"_s;
    case Phase::tagging:
        return u"tag"_s;
    case Phase::verifying:
        return u"checkmark.shield"_s;
    }
    return {};
}

QString label(Phase phase) {
    switch (phase) {
    case Phase::searching:
        return QCoreApplication::translate("zelk", "Searching");
    case Phase::downloading:
        return QCoreApplication::translate("zelk", "Downloading");
    case Phase::converting:
        return QCoreApplication::translate("zelk", "Converting");
    case Phase::tagging:
        return QCoreApplication::translate("zelk", "Tagging");
    case Phase::verifying:
        return QCoreApplication::translate("zelk", "Verifying");
    }
    return {};
}

} // namespace PhaseStyle

} // namespace zelk::Tokens
