// The feed of updates. The input is the file.
#include "Fuzzing.h"

#include "Services/Appcast.h"
#include "Services/ReleaseNotes.h"
#include "Services/UpdateError.h"
#include "Services/UpdateVersion.h"

namespace zelk::fuzz {

namespace {

constexpr qsizetype longestVersion = 64;
constexpr qsizetype signatureSize = 64;
constexpr qsizetype longestNotes = 20'000;

void checkItem(const AppcastItem &item) {
    holds(isVersion(item.version) && item.version.size() <= longestVersion,
          "an item has a version that can be ordered");
    holds(!item.shortVersion.isEmpty() && item.shortVersion.size() <= longestVersion &&
              item.shortVersion == item.shortVersion.simplified(),
          "what a person reads of a version is a short line");
    holds(item.length > 0, "an item has a length");
    holds(item.signature.isEmpty() || item.signature.size() == signatureSize, "a signature has its size");
    const QString notes = plainReleaseNotes(item.notes);
    holds(notes.size() <= longestNotes && notes == notes.trimmed(), "what is new is a text of some length");
}

void checkOrder(const QString &a, const QString &b, const QString &c) {
    holds(std::is_eq(compareVersions(a, a)), "a version equals itself");
    const auto ab = compareVersions(a, b);
    const auto bc = compareVersions(b, c);
    holds(std::is_lt(ab) == std::is_gt(compareVersions(b, a)), "older one way is newer the other way");
    if (std::is_lteq(ab) && std::is_lteq(bc))
        holds(std::is_lteq(compareVersions(a, c)), "versions stand in one order");
    if (std::is_eq(ab) && std::is_eq(bc))
        holds(std::is_eq(compareVersions(a, c)), "what equals the same is equal");
}

void checkNewest(const std::vector<AppcastItem> &items) {
    const QString current = QStringLiteral("1.2");
    const auto newest = newestAbove(current, items);
    if (newest)
        holds(std::is_gt(compareVersions(newest->version, current)), "only what is newer is an update");
    for (const auto &item : items) {
        const auto &best = newest ? newest->version : current;
        holds(std::is_lteq(compareVersions(item.version, best)), "the newest is offered");
    }
}

} // namespace

void fuzz(QByteArrayView input) {
    std::vector<AppcastItem> items;
    try {
        items = readAppcast(input.toByteArray());
    } catch (const UpdateError &error) {
        holds(error.problem() == UpdateProblem::unreadableFeed, "what is no feed is called so");
        return;
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        checkItem(items[i]);
        const auto &next = items[(i + 1) % items.size()].version;
        checkOrder(items[i].version, next, items[(i + 2) % items.size()].version);
        checkOrder(items[i].version, next, items[i].shortVersion);
    }
    checkNewest(items);
}

} // namespace zelk::fuzz
