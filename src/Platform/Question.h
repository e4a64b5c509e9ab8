#pragma once

#include <QFuture>
#include <QString>

namespace zelk {

/// Asks the user a question with two answers.
class Question {
public:
    struct Wording {
        QString title;
        QString text;
        QString yes; ///< what the button says that agrees
        QString no;
    };
    enum class Answer : quint8 {
        yes,
        no,
        none, ///< the question was closed, could not be shown, or went with the application
    };

    virtual ~Question() = default;

    /// Shows the question, on the main thread; the future is always kept, and never fails.
    virtual QFuture<Answer> ask(const Wording &wording) = 0;
};

} // namespace zelk
