#include "Services/UpdateVersion.h"

#include <QList>

#include <algorithm>

namespace zelk {

namespace {

// ASCII alone: another script's digits would not be ordered by their characters.
bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

bool isLetter(QChar character) {
    return character.isLetter();
}

QList<QStringView> partsOf(QStringView version) {
    if (const auto build = version.indexOf(u'+'); build >= 0)
        version = version.first(build);
    QList<QStringView> parts;
    for (qsizetype at = 0; at < version.size();) {
        const auto kind = isDigit(version[at]) ? isDigit : isLetter;
        const auto start = at;
        while (at < version.size() && kind(version[at]))
            ++at;
        if (at > start)
            parts.append(version.sliced(start, at - start));
        else
            ++at;
    }
    return parts;
}

bool isNumber(QStringView part) {
    return isDigit(part.front());
}

QStringView withoutZeros(QStringView number) {
    while (!number.isEmpty() && number.front() == u'0')
        number = number.sliced(1);
    return number;
}

std::weak_ordering compareParts(QStringView left, QStringView right) {
    if (isNumber(left) != isNumber(right))
        return isNumber(left) ? std::weak_ordering::greater : std::weak_ordering::less;
    if (!isNumber(left))
        return left.compare(right, Qt::CaseInsensitive) <=> 0;
    left = withoutZeros(left);
    right = withoutZeros(right);
    if (left.size() != right.size())
        return left.size() <=> right.size();
    return left.compare(right) <=> 0;
}

/// Of a part against its lack.
std::weak_ordering compareWithNothing(QStringView part) {
    if (!isNumber(part))
        return std::weak_ordering::less;
    return withoutZeros(part).isEmpty() ? std::weak_ordering::equivalent : std::weak_ordering::greater;
}

std::weak_ordering reversed(std::weak_ordering order) {
    if (std::is_eq(order))
        return order;
    return std::is_lt(order) ? std::weak_ordering::greater : std::weak_ordering::less;
}

} // namespace

std::weak_ordering compareVersions(QStringView left, QStringView right) {
    const auto lefts = partsOf(left);
    const auto rights = partsOf(right);
    for (qsizetype i = 0; i < std::max(lefts.size(), rights.size()); ++i) {
        std::weak_ordering order = std::weak_ordering::equivalent;
        if (i >= rights.size())
            order = compareWithNothing(lefts[i]);
        else if (i >= lefts.size())
            order = reversed(compareWithNothing(rights[i]));
        else
            order = compareParts(lefts[i], rights[i]);
        if (std::is_neq(order))
            return order;
    }
    return std::weak_ordering::equivalent;
}

bool isVersion(QStringView text) {
    return !text.isEmpty() && isDigit(text.front());
}

} // namespace zelk
