#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>

namespace zelk {

// A text of a file of translations.
struct TranslatedText {
    QString context;
    QString source;
    QString translation;
    QString state; // "unfinished" and the like; empty is what it should be
};

inline QList<TranslatedText> translatedTexts(const QString &path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return {};
    QList<TranslatedText> found;
    TranslatedText text;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"name") {
            text.context = reader.readElementText();
        } else if (reader.name() == u"source") {
            text.source = reader.readElementText();
        } else if (reader.name() == u"translation") {
            text.state = reader.attributes().value(QStringLiteral("type")).toString();
            text.translation = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            found += text;
        }
    }
    return found;
}

// The English texts that German has other words for, wherever they stand.
inline QStringList foreignTexts(const QString &path) {
    QStringList translated;
    QStringList kept;
    const auto texts = translatedTexts(path);
    for (const auto &each : texts)
        (each.translation.trimmed() == each.source ? kept : translated) += each.source;
    translated.removeIf([&](const QString &text) { return kept.contains(text); });
    return translated;
}

} // namespace zelk
