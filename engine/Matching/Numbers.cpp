#include "Matching/Numbers.h"

#include <QHash>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Words that a number follows, and the form in which two spellings of one are equal.
const QHash<QString, QString> &counters() {
    static const QHash<QString, QString> forms = {
        {u"pt"_s, u"pt"_s},       {u"part"_s, u"pt"_s}, {u"vol"_s, u"vol"_s},   {u"volume"_s, u"vol"_s},
        {u"chapter"_s, u"ch"_s},  {u"ch"_s, u"ch"_s},   {u"no"_s, u"no"_s},     {u"number"_s, u"no"_s},
        {u"side"_s, u"side"_s},   {u"act"_s, u"act"_s}, {u"scene"_s, u"sc"_s},  {u"book"_s, u"book"_s},
        {u"phase"_s, u"phase"_s}, {u"op"_s, u"op"_s},   {u"opus"_s, u"op"_s},   {u"movement"_s, u"mvt"_s},
        {u"mvt"_s, u"mvt"_s},     {u"teil"_s, u"pt"_s}, {u"partie"_s, u"pt"_s}, {u"parte"_s, u"pt"_s}};
    return forms;
}

QString spelledNumber(const QString &word) {
    static const QHash<QString, QString> values = {
        {u"one"_s, u"1"_s},  {u"two"_s, u"2"_s},  {u"three"_s, u"3"_s},   {u"four"_s, u"4"_s},
        {u"five"_s, u"5"_s}, {u"six"_s, u"6"_s},  {u"seven"_s, u"7"_s},   {u"eight"_s, u"8"_s},
        {u"nine"_s, u"9"_s}, {u"ten"_s, u"10"_s}, {u"eleven"_s, u"11"_s}, {u"twelve"_s, u"12"_s}};
    return values.value(word);
}

/// The value of a Roman numeral below 40; empty for anything else.
QString romanNumber(const QString &word) {
    static const QRegularExpression expression(u"^(x{0,3})(ix|iv|v?i{0,3})$"_s);
    const auto match = expression.match(word);
    if (word.isEmpty() || !match.hasMatch()) {
        return {};
    }
    static const QStringList units = {QString(), u"i"_s,  u"ii"_s,  u"iii"_s,  u"iv"_s,
                                      u"v"_s,    u"vi"_s, u"vii"_s, u"viii"_s, u"ix"_s};
    return QString::number(10 * match.capturedLength(1) + units.indexOf(match.captured(2)));
}

bool isDigits(const QString &word) {
    return !word.isEmpty() && std::all_of(word.begin(), word.end(), [](QChar c) { return c.isDigit(); });
}

/// "pt2" is "pt", "2".
QStringList parted(const QStringList &words) {
    QStringList result;
    for (const QString &word : words) {
        const auto digit = std::find_if(word.begin(), word.end(), [](QChar c) { return c.isDigit(); });
        const qsizetype letters = digit - word.begin();
        if (letters > 0 && isDigits(word.mid(letters)) && counters().contains(word.left(letters))) {
            result += word.left(letters);
            result += word.mid(letters);
        } else {
            result += word;
        }
    }
    return result;
}

/// The word in digits if it is a number where it stands: after a counter nearly everything is, a single Roman letter
/// also at a title's end.
QString numberAt(const QStringList &words, qsizetype i) {
    const QString &word = words[i];
    const bool counted = i > 0 && counters().contains(words[i - 1]);
    if (const QString value = spelledNumber(word); !value.isEmpty()) {
        return value;
    }
    if (word.size() > 1 || counted || (i > 0 && i == words.size() - 1)) {
        if (const QString value = romanNumber(word); !value.isEmpty()) {
            return value;
        }
    }
    return counted && word.size() == 1 && word[0] >= u'a' && word[0] <= u'z' ? word : QString();
}

/// Every run of digits inside of a word, and every Chinese numeral below 11, as plain digits.
void collectDigits(const QString &word, QStringList &numbers) {
    static const QString chinese = u"一二三四五六七八九十"_s;
    QString run;
    const auto finish = [&] {
        while (run.size() > 1 && run.startsWith(u'0')) {
            run.remove(0, 1);
        }
        if (!run.isEmpty()) {
            numbers += run;
        }
        run.clear();
    };
    for (const QChar c : word) {
        if (c.isDigit()) {
            run += QChar(u'0' + c.digitValue());
            continue;
        }
        finish();
        if (const qsizetype value = chinese.indexOf(c); value >= 0) {
            numbers += QString::number(value + 1);
        }
    }
    finish();
}

} // namespace

QStringList withPlainNumbers(const QStringList &words, QStringList &numbers) {
    const QStringList apart = parted(words);
    QStringList plain;
    for (qsizetype i = 0; i < apart.size(); ++i) {
        if (const QString number = numberAt(apart, i); !number.isEmpty()) {
            numbers += number;
            plain += number;
        } else {
            collectDigits(apart[i], numbers);
            const bool counts = i + 1 < apart.size() && (isDigits(apart[i + 1]) || !numberAt(apart, i + 1).isEmpty());
            plain += counts ? counters().value(apart[i], apart[i]) : apart[i];
        }
    }
    return plain;
}

} // namespace zelk::engine
