#pragma once

#include <QIODevice>
#include <QXmlStreamReader>

namespace zelk::engine {

/// Reads XML that a stranger may have written. Whatever it holds, the memory in use stays small: entities may not be
/// declared, and neither a single tag, text or comment nor the nesting goes beyond what a playlist could ever need. The
/// first failure ends the reading: then there are no more elements.
class GuardedXml {
public:
    /// The device must outlive it.
    explicit GuardedXml(QIODevice &device);

    /// Goes to the next element within the one that it stands in; false if that ends before, then it stands behind it.
    bool nextElement();
    /// Passes over the rest of the element that it stands in.
    void skip();
    /// The text of the element that it stands in, without that of elements inside, cut where it is longer than any
    /// name; then stands behind it.
    QString text();
    /// Reads to the end of the document, which must be well-formed.
    void finish();

    QStringView name() const { return _xml.name(); }
    qint64 line() const { return _xml.lineNumber(); }

    void fail(const QString &why);
    /// What went wrong first, for people; empty while nothing has.
    QString problem() const;

private:
    /// Ends the stream when a single token takes too much of it.
    class Meter : public QIODevice {
    public:
        explicit Meter(QIODevice &source);
        bool isSequential() const override { return true; }
        void beginToken() { _sinceToken = 0; }
        bool isOver() const;

    protected:
        qint64 readData(char *data, qint64 most) override;
        qint64 writeData(const char *, qint64) override { return -1; }

    private:
        QIODevice &_source;
        qint64 _sinceToken = 0;
    };

    QXmlStreamReader::TokenType next();

    Meter _meter;
    QXmlStreamReader _xml;
    int _depth = 0;
};

} // namespace zelk::engine
