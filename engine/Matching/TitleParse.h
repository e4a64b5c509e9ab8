#pragma once

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// A title taken apart. All texts are folded (see fold()).
struct ParsedTitle {
    /// What is left when featured artists, versions and neutral remarks are gone; never empty for a title that isn't.
    QString core;
    /// The artists behind "feat.", "ft." and "featuring", or behind "with" in brackets.
    QStringList featured;
    /// The words of all version remarks, sorted, each once: {"club", "mix"}. Two recordings with different ones differ.
    QStringList version;
    /// The words of that kind that stand in the core without brackets or a dash, sorted: "Song Live" has {"live"}.
    QStringList bareVersion;
    /// The numbers in the core, "part two" and "pt. II" counting as 2, in their order.
    QStringList numbers;

    bool operator==(const ParsedTitle &) const = default;
};

ParsedTitle parseTitle(const QString &title);

/// Takes one text of artists apart at commas, semicolons, slashes with spaces, "and", "feat." and "x"; folded.
QStringList foldedArtists(const QString &artists);

} // namespace zelk::engine
