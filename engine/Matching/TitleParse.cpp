#include "Matching/TitleParse.h"

#include "Matching/Fold.h"
#include "Matching/Numbers.h"

#include <QRegularExpression>

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

/// Words that make another recording, where they stand in a remark.
const QRegularExpression &versionWords() {
    static const QRegularExpression expression(
        u"(?<![\\p{L}\\p{N}])(?:remix|mix|edit|extended|club|dub|vip|bootleg|mashup|rework|live|unplugged|acoustic|"
        u"instrumental|karaoke|cover|demo|acappella|sped up|slowed)(?![\\p{L}\\p{N}])"_s);
    return expression;
}

/// The version words in one spelling each.
QString withPlainVersions(QString text) {
    struct Spelling {
        QRegularExpression any;
        QString plain;
    };
    static const auto whole = [](const QString &words) {
        return QRegularExpression(u"(?<![\\p{L}\\p{N}])(?:%1)(?![\\p{L}\\p{N}])"_s.arg(words));
    };
    static const Spelling spellings[] = {{whole(u"a[ -]?cc?app?ell?a"_s), u"acappella"_s},
                                         {whole(u"mash[ -]up"_s), u"mashup"_s},
                                         {whole(u"re-work(?:ed)?|reworked"_s), u"rework"_s},
                                         {whole(u"re-?mix(?:ed)?(?: by)?"_s), u"remix"_s},
                                         {whole(u"sped-?up"_s), u"sped up"_s}};
    for (const Spelling &spelling : spellings) {
        text.replace(spelling.any, spelling.plain);
    }
    return text;
}

const QRegularExpression &featuring() {
    static const QRegularExpression expression(u"(?<![\\p{L}\\p{N}])(?:feat|ft|featuring)(?![\\p{L}\\p{N}])\\.? *"_s);
    return expression;
}

/// In brackets, "with" names a guest, but nobody is called "you".
const QRegularExpression &withGuest() {
    static const QRegularExpression expression(
        u"^with (?!(?:me|you|u|him|her|it|us|them|my|your|his|our|their|this|that|no|out|or)(?![\\p{L}\\p{N}]))"_s);
    return expression;
}

QString openers() {
    return u"([{【「『〔〈《"_s;
}
QString closers() {
    return u")]}】」』〕〉》"_s;
}

/// Enters what a remark (what stands in brackets or behind the last " - ") says, and returns what of it belongs to the
/// title.
QString takeRemark(QString remark, bool bracketed, ParsedTitle &parsed) {
    if (const auto guest = withGuest().match(remark); bracketed && guest.hasMatch()) {
        parsed.featured += foldedArtists(remark.mid(guest.capturedEnd()));
        return {};
    }
    if (const auto guest = featuring().match(remark); guest.hasMatch()) {
        parsed.featured += foldedArtists(remark.mid(guest.capturedEnd()));
        remark = remark.left(guest.capturedStart()).simplified();
    }
    QString rest = remark;
    rest.replace(neutralPhrases(), u" "_s);
    const QStringList restWords = wordsOf(rest.simplified());
    const bool nothingLeft = std::all_of(restWords.begin(), restWords.end(), [](const QString &word) {
        return word == "and"_L1 || !word[0].isLetterOrNumber(); // "Stereo / Remastered 2009"
    });
    if (rest != remark && nothingLeft) {
        return {};
    }
    const QString plain = withPlainVersions(rest);
    if (!versionWords().match(plain).hasMatch()) {
        return remark;
    }
    for (const QString &word : wordsOf(plain.simplified())) {
        if (word != "version"_L1) { // "Live Version" is "Live"
            parsed.version += word;
        }
    }
    return {};
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
        left += u' ' + takeRemark(inside, true, parsed) + u' ';
    }
    return left.simplified();
}

QString withoutTrailingRemarks(QString text, ParsedTitle &parsed) {
    for (qsizetype dash = text.lastIndexOf(" - "_L1); dash > 0; dash = text.lastIndexOf(" - "_L1)) {
        ParsedTitle attempt = parsed;
        if (!takeRemark(text.mid(dash + 3).simplified(), false, attempt).isEmpty()) {
            break;
        }
        parsed = attempt;
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
    static const QRegularExpression yearApart(u" - ((?:19|20)\\d\\d) - (?=(?:digital(?:ly)? )?re-?master)"_s);
    const QString folded = fold(title).replace(yearApart, u" - \\1 "_s);
    QString text = withoutBrackets(folded, parsed);
    text = withoutTrailingRemarks(text, parsed);
    text = withoutFeatured(text, parsed);
    QStringList words = wordsOf(text);
    if (words.isEmpty()) { // a title that is all remark, such as "(Live)", is its own name
        words = wordsOf(folded);
    }
    parsed.core = withPlainNumbers(words, parsed.numbers).join(u' ');
    const QString bare = withPlainVersions(parsed.core);
    for (auto match = versionWords().globalMatch(bare); match.hasNext();) {
        parsed.bareVersion += match.next().captured();
    }
    std::sort(parsed.bareVersion.begin(), parsed.bareVersion.end());
    std::sort(parsed.version.begin(), parsed.version.end());
    parsed.version.removeDuplicates();
    parsed.featured.removeDuplicates();
    return parsed;
}

} // namespace zelk::engine
