#pragma once

#include <QString>

namespace zelk {

/// What a feed says is new, as text to read: paragraphs and list points on lines of their own, without tags, comments,
/// scripts and styles. It is taken apart here and not by an HTML engine, which would open the files and addresses that
/// the text names. Plain text stays as it is. At most 20,000 characters.
QString plainReleaseNotes(const QString &notes);

} // namespace zelk
