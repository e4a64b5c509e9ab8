#include "Matching/Fold.h"

namespace zelk::engine {

namespace {

bool losesItsMarks(char32_t base) {
    switch (QChar::script(base)) {
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
        return true;
    default:
        return false;
    }
}

/// Before normalisation, which would turn some of these into a space and a combining mark, and behind it, since it also
/// makes some of other signs.
QString withPlainSigns(const QString &text) {
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case 0x2018: // single quotes, primes, accents and modifier letters that people type for an apostrophe
        case 0x2019:
        case 0x201A:
        case 0x201B:
        case 0x2032:
        case 0x02B9:
        case 0x02BB:
        case 0x02BC:
        case 0x00B4:
        case 0x0060:
        case 0xFF07:
            plain += u'\'';
            break;
        case 0x201C:
        case 0x201D:
        case 0x201E:
        case 0x201F:
        case 0x2033:
        case 0x00AB:
        case 0x00BB:
            plain += u'"';
            break;
        case 0x2010:
        case 0x2011:
        case 0x2012:
        case 0x2013:
        case 0x2014:
        case 0x2015:
        case 0x2212:
        case 0xFE58:
        case 0xFE63:
            plain += u'-';
            break;
        default:
            plain += c;
        }
    }
    return plain;
}

/// Letters that have no decomposition and that people spell with plain ones.
const char16_t *spelledOut(char32_t c) {
    switch (c) {
    case 0x00F8:
        return u"o";
    case 0x0142:
        return u"l";
    case 0x0111:
    case 0x00F0:
        return u"d";
    case 0x00E6:
        return u"ae";
    case 0x0153:
        return u"oe";
    case 0x00FE:
        return u"th";
    case 0x00DF:
        return u"ss";
    case 0x0131:
        return u"i";
    case u'&':
    case u'+':
        return u" and ";
    default:
        return nullptr;
    }
}

} // namespace

QString fold(const QString &text) {
    const QString composed = withPlainSigns(text).normalized(QString::NormalizationForm_KC);
    const QString cased = withPlainSigns(composed).toCaseFolded();
    // Case-folded again, since some capitals, such as the dotted I, have a small form only once they are taken apart.
    const QString decomposed = cased.normalized(QString::NormalizationForm_D).toCaseFolded();
    QString folded;
    folded.reserve(decomposed.size());
    bool strip = false;
    for (qsizetype i = 0; i < decomposed.size(); ++i) {
        char32_t c = decomposed[i].unicode();
        if (decomposed[i].isHighSurrogate() && i + 1 < decomposed.size() && decomposed[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(decomposed[i], decomposed[i + 1]);
            ++i;
        }
        if (QChar::isMark(c)) {
            if (!strip) {
                folded += QChar::fromUcs4(c);
            }
            continue;
        }
        strip = losesItsMarks(c);
        if (const char16_t *spelling = spelledOut(c)) {
            folded += QStringView(spelling);
        } else {
            folded += QChar::fromUcs4(c);
        }
    }
    return folded.normalized(QString::NormalizationForm_C).simplified();
}

QStringList wordsOf(const QString &folded) {
    QStringList words;
    QString word;
    const auto finish = [&] {
        if (!word.isEmpty()) {
            words += word;
            word.clear();
        }
    };
    for (qsizetype i = 0; i < folded.size(); ++i) {
        const QChar c = folded[i];
        if (c == u'\'') {
            continue;
        }
        if (c.isHighSurrogate() && i + 1 < folded.size()) {
            word += c;
            word += folded[++i];
        } else if (c.isLetterOrNumber() || c.isMark()) {
            word += c;
        } else {
            finish();
        }
    }
    finish();
    if (words.isEmpty() && !folded.isEmpty()) {
        words += QString(folded).remove(u' ');
    }
    return words;
}

QString joinedWords(const QString &folded) {
    return wordsOf(folded).join(u' ');
}

} // namespace zelk::engine
