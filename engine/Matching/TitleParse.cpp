#include "Matching/TitleParse.h"

#include "Matching/Fold.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Remarks that don't make another recording. They are matched as whole words anywhere in a remark.
const QRegularExpression &neutralPhrases() {
    static const QRegularExpression expression(u"(?<![\\p{L}\\p{N}])(?:"
                                               u"(?:(?:19|20)\\d\\d )?(?:digital(?:ly)? )?re-?master(?:ed)?(?: "
                                               u"(?:version|edition|mix))?(?: (?:in )?(?:19|20)\\d\\d)?"
                                               u"(?: (?:version|edition|mix))?"
                                               u"|original(?: (?:mix|version))?"
                                               u"|(?:single|album|lp) version"
                                               u"|(?:mono|stereo)(?: (?:mix|version))?"
                                               u"|explicit(?: version)?"
                                               u"|bonus track(?: version)?"
                                               u"|(?:super )?deluxe(?: (?:edition|version))?"
                                               u"|official(?: (?:music|lyrics?|hd))?(?: (?:audio|video|visuali[sz]er))"
                                               u")(?![\\p{L}\\p{N}])"_s);
    return expression;
}

const QRegularExpression &versionWords() {
    static const QRegularExpression expression(
        u"(?<![\\p{L}\\p{N}])(?:remix(?:ed)?|mix|edit|extended|club|dub|vip|bootleg|mash-?up|rework|live|unplugged|"
        u"acoustic|"
        u"instrumental|karaoke|cover|demo|a ?cappella|acapella|sped[ -]up|slowed)(?![\\p{L}\\p{N}])"_s);
    return expression;
}

const QRegularExpression &featuring() {
    static const QRegularExpression expression(u"(?<![\\p{L}\\p{N}])(?:feat|ft|featuring)(?![\\p{L}\\p{N}])\\.? *"_s);
    return expression;
}

QString openers() {
    return u"([{【「〔"_s;
}
QString closers() {
    return u")]}】」〕"_s;
}

enum class Remark { Neutral, Version, Featured, Title };

/// Sorts one remark (what stands in brackets or behind the last " - ") into its kind and enters what it says.
Remark take(const QString &remark, bool bracketed, ParsedTitle &parsed) {
    const auto match = featuring().match(remark);
    if (match.hasMatch() && match.capturedStart() == 0) {
        parsed.featured += foldedArtists(remark.mid(match.capturedEnd()));
        return Remark::Featured;
    }
    if (bracketed && remark.startsWith("with "_L1)) {
        parsed.featured += foldedArtists(remark.mid(5));
        return Remark::Featured;
    }
    QString rest = remark;
    rest.replace(neutralPhrases(), u" "_s);
    const QStringList restWords = joinedWords(rest.simplified()).split(u' ', Qt::SkipEmptyParts);
    const bool wasNeutral = rest != remark;
    const bool nothingLeft =
        std::all_of(restWords.begin(), restWords.end(), [](const QString &word) { return word == "and"_L1; });
    if (wasNeutral && nothingLeft) {
        return Remark::Neutral;
    }
    if (versionWords().match(rest).hasMatch()) {
        QString spelled = rest;
        spelled.replace(QRegularExpression(u"a ?cappella|acapella"_s), u"acappella"_s);
        spelled.replace(QRegularExpression(u"mash-up"_s), u"mashup"_s);
        spelled.replace(QRegularExpression(u"(?<![\\p{L}\\p{N}])remixed(?: by)?(?![\\p{L}\\p{N}])"_s), u"remix"_s);
        parsed.version += wordsOf(spelled.simplified());
        return Remark::Version;
    }
    return Remark::Title;
}

/// Takes the bracketed remarks out of `text`; those that belong to the title stay, without their brackets.
QString withoutBrackets(const QString &text, ParsedTitle &parsed) {
    QString left;
    qsizetype i = 0;
    while (i < text.size()) {
        if (!openers().contains(text[i])) {
            left += text[i++];
            continue;
        }
        const qsizetype start = ++i;
        int depth = 1;
        for (; i < text.size() && depth > 0; ++i) {
            depth += openers().contains(text[i]) ? 1 : closers().contains(text[i]) ? -1 : 0;
        }
        const QString inside = text.mid(start, i - start - (depth == 0 ? 1 : 0)).simplified();
        if (!inside.isEmpty() && take(inside, true, parsed) == Remark::Title) {
            left += u' ' + inside + u' ';
        }
    }
    return left.simplified();
}

QString withoutTrailingRemarks(QString text, ParsedTitle &parsed) {
    for (qsizetype dash = text.lastIndexOf(" - "_L1); dash > 0; dash = text.lastIndexOf(" - "_L1)) {
        if (take(text.mid(dash + 3).simplified(), false, parsed) == Remark::Title) {
            break;
        }
        text.truncate(dash);
        text = text.simplified();
    }
    return text;
}

QString withoutFeatured(QString text, ParsedTitle &parsed) {
    const auto match = featuring().match(text, 1);
    if (match.hasMatch() && match.capturedEnd() < text.size()) {
        parsed.featured += foldedArtists(text.mid(match.capturedEnd()));
        text.truncate(match.capturedStart());
    }
    return text.simplified();
}

QString asDigits(const QString &word) {
    static const QHash<QString, QString> values = {
        {u"one"_s, u"1"_s}, {u"two"_s, u"2"_s},   {u"three"_s, u"3"_s}, {u"four"_s, u"4"_s}, {u"five"_s, u"5"_s},
        {u"six"_s, u"6"_s}, {u"seven"_s, u"7"_s}, {u"eight"_s, u"8"_s}, {u"nine"_s, u"9"_s}, {u"ten"_s, u"10"_s},
        {u"i"_s, u"1"_s},   {u"ii"_s, u"2"_s},    {u"iii"_s, u"3"_s},   {u"iv"_s, u"4"_s},   {u"v"_s, u"5"_s},
        {u"vi"_s, u"6"_s},  {u"vii"_s, u"7"_s},   {u"viii"_s, u"8"_s},  {u"ix"_s, u"9"_s},   {u"x"_s, u"10"_s}};
    return values.value(word);
}

/// Spells "part two" and "pt ii" as "pt 2" and collects the numbers.
QStringList numbered(QStringList words, QStringList &numbers) {
    static const QSet<QString> counters = {u"pt"_s,      u"part"_s, u"vol"_s,   u"volume"_s,
                                           u"chapter"_s, u"no"_s,   u"number"_s};
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (i > 0 && counters.contains(words[i - 1]) && !asDigits(words[i]).isEmpty()) {
            words[i] = asDigits(words[i]);
        }
        const bool number = std::all_of(words[i].begin(), words[i].end(), [](QChar c) { return c.isDigit(); });
        if (number) {
            numbers += words[i];
        }
    }
    for (QString &word : words) {
        word = word == "part"_L1 ? u"pt"_s : word == "volume"_L1 ? u"vol"_s : word;
    }
    return words;
}

} // namespace

QStringList foldedArtists(const QString &artists) {
    static const QRegularExpression separators(
        u"\\s*[,;]\\s*|\\s+/\\s+|\\s+(?:and|x|vs\\.?)\\s+|\\s+(?:feat|ft|featuring)(?![\\p{L}\\p{N}])\\.?\\s*"_s);
    QStringList list;
    for (const QString &part : fold(artists).split(separators, Qt::SkipEmptyParts)) {
        QString words = joinedWords(part);
        if (words.startsWith("the "_L1)) {
            words.remove(0, 4);
        }
        if (!words.isEmpty() && !list.contains(words)) {
            list += words;
        }
    }
    return list;
}

ParsedTitle parseTitle(const QString &title) {
    ParsedTitle parsed;
    const QString folded = fold(title);
    QString text = withoutBrackets(folded, parsed);
    text = withoutTrailingRemarks(text, parsed);
    text = withoutFeatured(text, parsed);
    QStringList words = wordsOf(text);
    if (words.isEmpty()) { // a title that is all remark, such as "(Live)", is its own name
        words = wordsOf(folded);
    }
    parsed.core = numbered(words, parsed.numbers).join(u' ');
    std::sort(parsed.version.begin(), parsed.version.end());
    parsed.version.removeDuplicates();
    parsed.featured.removeDuplicates();
    return parsed;
}

} // namespace zelk::engine
