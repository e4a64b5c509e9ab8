#include "Views/QuestionDialog.h"

#include "Support/OneShot.h"
#include "Views/DialogHost.h"

#include <QQuickWindow>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

class QuestionDialog::Open {
public:
    explicit Open(const Wording &wording) : logic(wording) {}
    ~Open() { m_answer.fulfil(Answer::none); }
    Q_DISABLE_COPY_MOVE(Open)

    QFuture<Answer> future() const { return m_answer.future(); }
    void settle(Answer answer) { m_answer.fulfil(answer); }

    QuestionLogic logic;
    std::unique_ptr<QQuickWindow> window; // goes before what it shows

private:
    OneShot<Answer> m_answer{nullptr};
};

QuestionDialog::QuestionDialog(DialogHost &host) : m_host(host) {}

QuestionDialog::~QuestionDialog() = default;

QFuture<Question::Answer> QuestionDialog::ask(const Wording &wording) {
    m_open.push_back(std::make_unique<Open>(wording));
    Open *const open = m_open.back().get();
    QObject::connect(&open->logic, &QuestionLogic::answered, &m_context, [this, open](Answer given) {
        open->window->hide();
        open->settle(given);
        close(open);
    });
    const auto answer = open->future();
    open->window = m_host.make(u"QuestionDialog"_s, {{u"logic"_s, QVariant::fromValue(&open->logic)}});
    if (open->window)
        m_host.present(*open->window);
    else
        m_open.pop_back();
    return answer;
}

// On the next turn: the window is in the middle of telling what was pressed in it.
void QuestionDialog::close(const Open *open) {
    const auto take = [this, open] { std::erase_if(m_open, [open](const auto &each) { return each.get() == open; }); };
    QMetaObject::invokeMethod(&m_context, take, Qt::QueuedConnection);
}

} // namespace zelk
