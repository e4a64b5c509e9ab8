#include "Services/ReleaseNotes.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace zelk {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype limit = 20'000;
constexpr qsizetype longestReference = 10; // characters between "&" and ";"

/// What stands in them is never read.
bool hidesContent(const QString &tag) {
    static const QSet<QString> tags{u"script"_s, u"style"_s,  u"head"_s,     u"title"_s,  u"template"_s, u"noscript"_s,
                                    u"iframe"_s, u"object"_s, u"textarea"_s, u"select"_s, u"svg"_s,      u"math"_s};
    return tags.contains(tag);
}

bool breaksLine(const QString &tag) {
    static const QSet<QString> tags{u"br"_s,     u"div"_s,     u"li"_s,         u"tr"_s, u"ul"_s,
                                    u"ol"_s,     u"dt"_s,      u"dd"_s,         u"hr"_s, u"table"_s,
                                    u"header"_s, u"section"_s, u"blockquote"_s, u"pre"_s};
    return tags.contains(tag);
}

bool parts(const QString &tag) {
    static const QSet<QString> tags{u"p"_s, u"h1"_s, u"h2"_s, u"h3"_s, u"h4"_s, u"h5"_s, u"h6"_s, u"article"_s};
    return tags.contains(tag);
}

QString characterOf(QStringView reference) {
    static const QHash<QString, QString> names{
        {u"amp"_s, u"&"_s},    {u"lt"_s, u"<"_s},    {u"gt"_s, u">"_s},     {u"quot"_s, u"\""_s},
        {u"apos"_s, u"'"_s},   {u"nbsp"_s, u" "_s},  {u"ndash"_s, u"–"_s},  {u"mdash"_s, u"—"_s},
        {u"hellip"_s, u"…"_s}, {u"bull"_s, u"•"_s},  {u"middot"_s, u"·"_s}, {u"copy"_s, u"©"_s},
        {u"lsquo"_s, u"‘"_s},  {u"rsquo"_s, u"’"_s}, {u"ldquo"_s, u"“"_s},  {u"rdquo"_s, u"”"_s},
    };
    if (!reference.startsWith(u'#'))
        return names.value(reference.toString());
    const bool hexadecimal = reference.startsWith(u"#x", Qt::CaseInsensitive);
    bool good = false;
    const auto digits = reference.sliced(hexadecimal ? 2 : 1);
    const char32_t code = digits.toUInt(&good, hexadecimal ? 16 : 10);
    if (!good || code < 0x20 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {};
    return QString::fromUcs4(&code, 1);
}

class NotesReader {
public:
    explicit NotesReader(QStringView html) : _html(html) {}

    QString read() {
        while (_at < _html.size() && _text.size() < limit) {
            const QChar character = _html[_at];
            if (character == u'<' && readMarkup())
                continue;
            if (character == u'&' && readReference())
                continue;
            if (character.isSpace())
                _space = true;
            else
                put(QStringView(&character, 1));
            ++_at;
        }
        return _text.left(limit).trimmed();
    }

private:
    void put(QStringView text) {
        if (_space && !_text.isEmpty() && !_text.endsWith(u'\n'))
            _text += u' ';
        _space = false;
        _text += text;
    }

    /// At least that many line ends behind what was read.
    void breakLine(int count) {
        _space = false;
        int present = 0;
        while (present < _text.size() && _text[_text.size() - 1 - present] == u'\n')
            ++present;
        if (!_text.isEmpty() && present < count)
            _text += QString(count - present, u'\n');
    }

    bool readReference() {
        const auto end = _html.sliced(_at, std::min(longestReference + 2, _html.size() - _at)).indexOf(u';');
        if (end < 2)
            return false;
        const QString character = characterOf(_html.sliced(_at + 1, end - 1));
        if (character.isEmpty())
            return false;
        put(character);
        _at += end + 1;
        return true;
    }

    /// False for a "<" that only means less.
    bool readMarkup() {
        const auto rest = _html.sliced(_at);
        if (rest.startsWith(u"<!--")) {
            skipBehind(u"-->");
            return true;
        }
        const bool closes = rest.startsWith(u"</");
        const auto start = closes ? 2 : 1;
        if (rest.size() <= start || !(rest[start].isLetter() || rest[1] == u'!' || rest[1] == u'?'))
            return false;
        auto end = start;
        while (end < rest.size() && rest[end].isLetterOrNumber())
            ++end;
        const QString tag = rest.sliced(start, end - start).toString().toLower();
        skipTag();
        if (!closes && hidesContent(tag))
            skipContent(tag);
        else if (parts(tag))
            breakLine(2);
        else if (breaksLine(tag))
            breakLine(1);
        if (!closes && tag == u"li"_s)
            put(u"• ");
        if (tag == u"td"_s || tag == u"th"_s)
            _space = true;
        return true;
    }

    void skipBehind(QStringView mark) {
        const auto found = _html.indexOf(mark, _at, Qt::CaseInsensitive);
        _at = found < 0 ? _html.size() : found + mark.size();
    }

    /// To the end of the tag, which no quoted ">" is.
    void skipTag() {
        QChar quote;
        for (; _at < _html.size(); ++_at) {
            const QChar character = _html[_at];
            if (!quote.isNull()) {
                if (character == quote)
                    quote = {};
            } else if (character == u'"' || character == u'\'') {
                quote = character;
            } else if (character == u'>') {
                ++_at;
                return;
            }
        }
    }

    void skipContent(const QString &tag) {
        if (_html[_at - 1] != u'>' || (_at > 1 && _html[_at - 2] == u'/'))
            return;
        const auto found = _html.indexOf(QString(u"</"_s + tag), _at, Qt::CaseInsensitive);
        _at = found < 0 ? _html.size() : found;
        skipTag();
    }

    const QStringView _html;
    qsizetype _at = 0;
    bool _space = false;
    QString _text;
};

bool isMarkup(const QString &notes) {
    for (auto at = notes.indexOf(u'<'); at >= 0 && at + 1 < notes.size(); at = notes.indexOf(u'<', at + 1)) {
        const QChar next = notes[at + 1];
        if (next.isLetter() || next == u'/' || next == u'!')
            return true;
    }
    return false;
}

} // namespace

QString plainReleaseNotes(const QString &notes) {
    if (!isMarkup(notes))
        return notes.left(limit).trimmed();
    return NotesReader(notes).read();
}

} // namespace zelk
