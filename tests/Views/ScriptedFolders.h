#pragma once

#include "Platform/FolderPanel.h"
#include "Support/OneShot.h"

#include <QStringList>

#include <optional>

namespace zelk {

// Answers the question for a folder as the test tells it.
class ScriptedFolders final : public FolderPanel {
public:
    QFuture<std::optional<QString>> choose(const QString &title, const QString &start) override {
        titles += title;
        starts += start;
        auto answer = std::make_shared<OneShot<std::optional<QString>>>(nullptr);
        const auto future = answer->future();
        if (holds)
            held = std::move(answer);
        else
            answer->fulfil(next);
        return future;
    }
    // The answer that was held back.
    void release() { held->fulfil(next); }

    std::optional<QString> next;
    bool holds = false;
    QStringList titles;
    QStringList starts;

private:
    std::shared_ptr<OneShot<std::optional<QString>>> held;
};

} // namespace zelk
