#pragma once

#include "Platform/Question.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>
#include <utility>
#include <vector>

namespace zelk {

class DialogHost;

// One question as its dialog shows it.
class QuestionLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the question")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString yes READ yes CONSTANT)
    Q_PROPERTY(QString no READ no CONSTANT)

public:
    explicit QuestionLogic(Question::Wording wording) : m_wording(std::move(wording)) {}

    const QString &title() const { return m_wording.title; }
    const QString &text() const { return m_wording.text; }
    const QString &yes() const { return m_wording.yes; }
    const QString &no() const { return m_wording.no; }

    Q_INVOKABLE void accept() { Q_EMIT answered(Question::Answer::yes); }
    Q_INVOKABLE void refuse() { Q_EMIT answered(Question::Answer::no); }
    Q_INVOKABLE void dismiss() { Q_EMIT answered(Question::Answer::none); }

Q_SIGNALS:
    void answered(zelk::Question::Answer answer);

private:
    const Question::Wording m_wording;
};

// Questions as windows of their own, each in front of whatever else is open. Escape refuses; closing the window answers
// nothing.
class QuestionDialog final : public Question {
public:
    // `host` must outlive it.
    explicit QuestionDialog(DialogHost &host);
    // What is still open stays unanswered.
    ~QuestionDialog() override;
    Q_DISABLE_COPY_MOVE(QuestionDialog)

    QFuture<Answer> ask(const Wording &wording) override;

private:
    class Open;
    void close(const Open *open);

    DialogHost &m_host;
    QObject m_context; // ends what is queued
    std::vector<std::unique_ptr<Open>> m_open;
};

} // namespace zelk
