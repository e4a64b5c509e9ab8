#pragma once

#include "Platform/Question.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace zelk {

class UserDefaults;

/// One thing that the user allows or refuses: asked once, then answered from the user's defaults, where the answer can
/// be changed. It lives on the main thread, under a shared pointer.
class RememberedConsent : public std::enable_shared_from_this<RememberedConsent> {
public:
    /// The answer is kept under `key`: "allowed" or "denied". Once the question's owner has let it go, nothing is
    /// asked.
    RememberedConsent(std::shared_ptr<UserDefaults> defaults, QString key, std::weak_ptr<Question> question,
                      Question::Wording wording);

    /// None while the user has given none.
    std::optional<bool> answer() const;
    /// The user's answer, from then on.
    void setAnswer(bool isAllowed);
    /// The answer, asked for if there is none; still none when the question was left unanswered. Whoever asks while the
    /// question stands waits for the same one.
    QCoro::Task<std::optional<bool>> ask();

private:
    using Asking = QFuture<Question::Answer>;

    const std::shared_ptr<UserDefaults> _defaults;
    const QString _key;
    const std::weak_ptr<Question> _question;
    const Question::Wording _wording;
    std::shared_ptr<Asking> _asking; ///< the question that stands
};

} // namespace zelk
