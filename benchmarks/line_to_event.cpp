// How much dearer a line becomes by being turned into a ServerEvent than by the parser's bare parse of it: measured
// line by line in one run, the two taking turns, so that what else the machine does falls on both. Prints ratios, which
// carry over from machine to machine, and nanoseconds, which don't.
#include "Transport/LineDecoder.h"

#include <QFile>
#include <QJsonDocument>

#include <simdjson.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <vector>

namespace {

constexpr int rounds = 201;
constexpr int copies = 40;
constexpr double budget = 3.6;

struct Line {
    QByteArray padded;
    qsizetype size;
    QByteArrayView view() const { return QByteArrayView(padded).first(size); }
};

double threadNanoseconds() {
    // The thread's own time: what other programs take of the processor isn't counted.
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e9 + double(now.tv_nsec);
}

template<class Work>
double nanosecondsPerLine(const std::vector<Line> &lines, Work work) {
    // Long enough that the clock's own cost doesn't show, short enough that the two ways meet the same weather.
    const int turns = std::max(1, int(2'000 / lines.size()));
    const double start = threadNanoseconds();
    for (int turn = 0; turn < turns; ++turn) {
        for (const Line &line : lines)
            work(line);
    }
    return (threadNanoseconds() - start) / (double(turns) * double(lines.size()));
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// Returns the median ratio of decoding to parsing; prints besides the ratio of the quickest rounds.
double measure(const char *name, const std::vector<Line> &lines) {
    simdjson::dom::parser parser;
    zelk::LineDecoder decoder;
    std::size_t events = 0;
    std::size_t parsed = 0;
    std::vector<double> parse;
    std::vector<double> decode;
    std::vector<double> qt;
    std::vector<double> decodeRatio;
    std::vector<double> qtRatio;
    for (int round = 0; round < rounds; ++round) {
        parse.push_back(nanosecondsPerLine(lines, [&](const Line &line) {
            parsed += parser.parse(line.padded.constData(), std::size_t(line.size), false).error() == simdjson::SUCCESS;
        }));
        decode.push_back(nanosecondsPerLine(lines, [&](const Line &line) {
            // As the client does it: a reply first, then an event.
            events += decoder.parse(line.view()) && !decoder.response() && decoder.event();
        }));
        if (round % 16 == 0) {
            qt.push_back(nanosecondsPerLine(lines, [&](const Line &line) {
                parsed += QJsonDocument::fromJson(line.view().toByteArray()).isObject();
            }));
            qtRatio.push_back(qt.back() / parse.back());
        }
        decodeRatio.push_back(decode.back() / parse.back());
    }
    std::printf("%-18s %4zu lines  parse %6.0f ns  event %6.0f ns  ratio median %.2f min %.2f  QJsonDocument %.2f\n",
                name, lines.size(), median(parse), median(decode), median(decodeRatio),
                *std::min_element(decode.begin(), decode.end()) / *std::min_element(parse.begin(), parse.end()),
                median(qtRatio));
    if (events == 0 || parsed == 0)
        std::abort();
    return median(decodeRatio);
}

// The run once more, with other tracks: other ids and other texts wherever a real run would bring new ones, so that
// nothing is quick here because it was seen in the last round.
QByteArray withOtherTracks(QByteArray line, int copy) {
    const QByteArray mark = QByteArray::number(copy);
    line.replace("#", "#" + mark);
    for (const char *key : {"label", "title", "artist", "album", "sizeText", "speedText", "persistentID"}) {
        const QByteArray start = QByteArray("\"") + key + "\":\"";
        line.replace(start, start + mark);
    }
    line.replace("/cover/", "/cover/" + mark);
    return line;
}

} // namespace

int main(int argc, char **argv) {
    QFile file(QFile::decodeName(argc > 1 ? argv[1] : ZELK_RUN_LINES));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "can't read %s\n", qPrintable(file.fileName()));
        return 1;
    }
    const QList<QByteArray> run = file.readAll().split('\n');
    std::vector<Line> all;
    std::map<QByteArray, std::vector<Line>> byEvent;
    zelk::LineDecoder decoder;
    for (int copy = 0; copy < copies; ++copy) {
        for (const QByteArray &original : run) {
            if (original.isEmpty())
                continue;
            const QByteArray text = withOtherTracks(original, copy);
            const Line line{text + QByteArray(zelk::LineDecoder::padding, '\0'), text.size()};
            if (!decoder.parse(line.view()) || !decoder.event()) {
                std::fprintf(stderr, "no event: %s\n", text.constData());
                return 1;
            }
            all.push_back(line);
            byEvent[text.mid(10, text.indexOf('"', 10) - 10)].push_back(line);
        }
    }
    for (const auto &[name, lines] : byEvent)
        measure(name.constData(), lines);
    const double ratio = measure("the whole run", all);
    std::printf("line to event: %.2f times the bare parse, budget %.2f\n", ratio, budget);
    return 0;
}
