#include "Terminal/PlainText.h"

#include <QList>
#include <QTextBoundaryFinder>

#include <cwchar>
#include <locale.h>

namespace zelk::engine {

namespace {

constexpr char32_t unreadable = 0xFFFD;
constexpr char32_t joiner = 0x200D;
constexpr char32_t nonJoiner = 0x200C;
constexpr char32_t emojiForm = 0xFE0F;
constexpr char32_t firstPictograph = 0x1F000;

bool isBreak(char32_t c) {
    return c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r' || c == 0x85 || c == 0x2028 || c == 0x2029;
}

/// While it lives, this thread knows the widths of all characters, whatever language the user's terminal is set to.
class WidthsKnown {
public:
    WidthsKnown() {
        static const locale_t everything = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        _before = everything ? ::uselocale(everything) : nullptr;
    }
    ~WidthsKnown() {
        if (_before) {
            ::uselocale(_before);
        }
    }
    WidthsKnown(const WidthsKnown &) = delete;
    WidthsKnown &operator=(const WidthsKnown &) = delete;

private:
    locale_t _before = nullptr;
};

int columnsOf(char32_t c) {
    if (c == emojiForm) { // makes what it follows wide in some terminals: rather too short than wrapped
        return 1;
    }
    const int columns = ::wcwidth(static_cast<wchar_t>(c));
    return columns >= 0 ? columns : c >= firstPictograph ? 2 : 1;
}

} // namespace

QString plainText(const QString &text) {
    QString plain;
    plain.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        const QChar::Category category = QChar::category(c);
        if (isBreak(c)) {
            plain += u' ';
        } else if (category == QChar::Other_Control || category == QChar::Other_Surrogate) {
            plain += QChar(static_cast<char16_t>(unreadable));
        } else if (category != QChar::Other_Format || c == joiner || c == nonJoiner) {
            plain += QChar::fromUcs4(c);
        }
    }
    return plain;
}

int columnsOf(const QString &text) {
    const WidthsKnown known;
    int columns = 0;
    for (const char32_t c : text.toUcs4()) {
        columns += columnsOf(c);
    }
    return columns;
}

QString cutTo(const QString &text, int columns) {
    if (columnsOf(text) <= columns) {
        return text;
    }
    if (columns < 1) {
        return {};
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype kept = 0;
    int used = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        used += columnsOf(text.mid(kept, next - kept));
        if (used > columns - 1) {
            break;
        }
        kept = next;
    }
    return text.left(kept) + u'…';
}

QString padded(const QString &text, int columns) {
    return text + QString(std::max(0, columns - columnsOf(text)), u' ');
}

QString paddedLeft(const QString &text, int columns) {
    return QString(std::max(0, columns - columnsOf(text)), u' ') + text;
}

} // namespace zelk::engine
