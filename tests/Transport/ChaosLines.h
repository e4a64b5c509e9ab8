#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <random>

namespace zelk::chaos {

/// The one source of chance of a history: the same seed gives the same history on every machine.
class Chance {
public:
    explicit Chance(std::uint64_t seed) : _next(seed) {}

    /// 0 to `below` - 1.
    int below(int below) { return static_cast<int>(_next() % static_cast<std::uint64_t>(below)); }
    /// True once in `times`.
    bool oneIn(int times) { return below(times) == 0; }
    template<typename List>
    auto &of(List &list) {
        return list[static_cast<decltype(list.size())>(below(static_cast<int>(list.size())))];
    }

private:
    std::mt19937_64 _next;
};

/// The ways to answer a request, right and wrong.
enum class Answer { Wrapped, Bare, Nothing, Null, Failure, FailureWithoutWord };
constexpr int answers = 6;

/// A line that answers the request of that id with one track of the title `tag`, in one of the many ways to write it.
QByteArray replyLine(Answer answer, std::uint64_t id, const QString &tag, Chance &chance);
/// A log event whose message is `message`, or an unknown one of that name.
QByteArray eventLine(const QString &message, bool isUnknown);
/// A line that is neither, of whatever kind; never empty and without a line feed or a carriage return.
QByteArray junkLine(Chance &chance);
/// `line` with something in it that no line may have.
QByteArray spoilt(QByteArray line, Chance &chance);

} // namespace zelk::chaos
