#include "Platform/RememberedConsent.h"

#include "Platform/UserDefaults.h"

#include <QCoroFuture>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

RememberedConsent::RememberedConsent(std::shared_ptr<UserDefaults> defaults, QString key,
                                     std::weak_ptr<Question> question, Question::Wording wording)
    : _defaults(std::move(defaults)), _key(std::move(key)), _question(std::move(question)),
      _wording(std::move(wording)) {}

std::optional<bool> RememberedConsent::answer() const {
    const QString kept = _defaults->value(_key).toString();
    if (kept == u"allowed")
        return true;
    if (kept == u"denied")
        return false;
    return {};
}

void RememberedConsent::setAnswer(bool isAllowed) {
    _defaults->set(_key, isAllowed ? u"allowed"_s : u"denied"_s);
}

QCoro::Task<std::optional<bool>> RememberedConsent::ask() {
    const auto self = shared_from_this();
    if (const auto known = answer())
        co_return known;
    if (!_asking) {
        const auto question = _question.lock();
        if (!question)
            co_return std::nullopt;
        _asking = std::make_shared<Asking>(question->ask(_wording));
    }
    const auto asking = _asking;
    const auto given = co_await *asking;
    // The first of those who waited may have asked anew by now.
    if (_asking == asking)
        _asking.reset();
    // The first keeps the answer; meanwhile it may have been given elsewhere, and that was later.
    if (!answer() && given != Question::Answer::none)
        setAnswer(given == Question::Answer::yes);
    co_return answer();
}

} // namespace zelk
