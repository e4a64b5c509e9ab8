#include "Playlists/GuardedXml.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr int deepest = 100;

/// In bytes: of a tag, a text, a comment.
constexpr qint64 longestToken = 1'000'000;

/// In characters: of a name or an address.
constexpr qsizetype longestText = 100'000;

} // namespace

GuardedXml::Meter::Meter(QIODevice &source) : _source(source) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool GuardedXml::Meter::isOver() const {
    return _sinceToken > longestToken;
}

qint64 GuardedXml::Meter::readData(char *data, qint64 most) {
    if (isOver()) {
        return -1;
    }
    const qint64 count = _source.read(data, most);
    _sinceToken += std::max<qint64>(count, 0);
    return count > 0 ? count : -1;
}

GuardedXml::GuardedXml(QIODevice &device) : _meter(device), _xml(&_meter) {
    _xml.setNamespaceProcessing(false);
}

QXmlStreamReader::TokenType GuardedXml::next() {
    _meter.beginToken();
    const auto token = _xml.readNext();
    if (token == QXmlStreamReader::DTD && !_xml.entityDeclarations().isEmpty()) {
        fail(u"it declares entities, which no playlist needs"_s);
    } else if (token == QXmlStreamReader::StartElement && ++_depth > deepest) {
        fail(u"it is nested more than %1 deep"_s.arg(deepest));
    } else if (token == QXmlStreamReader::EndElement) {
        --_depth;
    }
    return _xml.hasError() ? QXmlStreamReader::Invalid : token;
}

bool GuardedXml::nextElement() {
    for (;;) {
        switch (next()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            return false;
        default:
            break;
        }
    }
}

void GuardedXml::skip() {
    for (const int depth = _depth; _depth >= depth;) {
        const auto token = next();
        if (token == QXmlStreamReader::Invalid || token == QXmlStreamReader::EndDocument) {
            return;
        }
    }
}

QString GuardedXml::text() {
    QString text;
    for (const int depth = _depth; _depth >= depth;) {
        const auto token = next();
        if (token == QXmlStreamReader::Invalid || token == QXmlStreamReader::EndDocument) {
            break;
        }
        if (token == QXmlStreamReader::Characters && _depth == depth) {
            text += _xml.text().left(longestText - text.size());
        }
    }
    return text.simplified();
}

void GuardedXml::finish() {
    for (auto token = next(); token != QXmlStreamReader::EndDocument && token != QXmlStreamReader::Invalid;) {
        token = next();
    }
}

void GuardedXml::fail(const QString &why) {
    if (!_xml.hasError()) {
        _xml.raiseError(why);
    }
}

QString GuardedXml::problem() const {
    return !_xml.hasError()  ? QString()
           : _meter.isOver() ? u"a single text or tag in it has more than %1 bytes"_s.arg(longestToken)
                             : _xml.errorString();
}

} // namespace zelk::engine
