#pragma once

#include "Platform/Question.h"
#include "Platform/UrlOpener.h"
#include "Support/OneShot.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <exception>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace zelk {

/// Answers questions as the test tells it; without an answer they stand open.
class ScriptedQuestion final : public Question {
public:
    std::optional<Answer> next;

    QFuture<Answer> ask(const Wording &wording) override {
        asked.push_back(wording);
        auto answer = std::make_shared<OneShot<Answer>>(std::make_exception_ptr(std::exception()));
        const auto future = answer->future();
        if (next)
            answer->fulfil(*next);
        else
            _open.push_back(std::move(answer));
        return future;
    }
    ~ScriptedQuestion() override { settle(Answer::none); }

    /// Answers what stands open.
    void settle(Answer given) {
        for (const auto &each : std::exchange(_open, {}))
            each->fulfil(given);
    }

    std::vector<Wording> asked;

private:
    std::vector<OneShotRef<Answer>> _open;
};

/// Keeps the URLs that it is given, and does with them what the test tells it.
class ScriptedOpener final : public UrlOpener {
public:
    bool opens = true;
    std::function<void(const QUrl &)> onOpen = [](const QUrl &) {};

    bool open(const QUrl &url) override {
        opened.append(url);
        if (opens)
            onOpen(url);
        return opens;
    }

    QList<QUrl> opened;
};

} // namespace zelk
