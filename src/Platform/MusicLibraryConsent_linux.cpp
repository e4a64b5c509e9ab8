#include "Platform/MusicLibraryConsent.h"

#include "Platform/RememberedConsent.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"
#include "Support/Task.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

/// What the main thread alone touches.
struct Library {
    std::shared_ptr<RememberedConsent> consent;
    QString file;
    TaskScope lifetime;

    ConsentStatus status() const {
        const auto answer = consent->answer();
        if (answer == false)
            return ConsentStatus::denied;
        const QFileInfo info(file);
        if (answer == true && info.isFile() && info.isReadable())
            return ConsentStatus::authorized;
        return ConsentStatus::undetermined;
    }
};

void startAsking(const std::shared_ptr<Library> &library, const OneShotRef<ConsentStatus> &asked) {
    startTask(&library->lifetime, [library, asked](const std::stop_token &) -> QCoro::Task<> {
        auto asking = library->consent->ask();
        co_await asking;
        asked->fulfil(library->status());
    });
}

/// Asks on the main thread. The promise is the job's alone, so that it is kept even if the job never runs.
QFuture<ConsentStatus> ask(const std::shared_ptr<Library> &library) {
    const auto asked = std::make_shared<OneShot<ConsentStatus>>(std::make_exception_ptr(Cancelled()));
    SerialExecutor::main()->post([library, asked] { startAsking(library, asked); });
    return asked->future();
}

class ExportedLibraryConsent final : public MusicLibraryConsent {
public:
    ExportedLibraryConsent(std::shared_ptr<RememberedConsent> consent, QString file)
        : _library(std::make_shared<Library>()) {
        _library->consent = std::move(consent);
        _library->file = std::move(file);
    }

    ConsentStatus determine(bool askIfNeeded) override {
        const bool isMain = SerialExecutor::main()->isCurrent();
        Q_ASSERT_X(isMain != askIfNeeded, "MusicLibraryConsent", "only asking blocks, and never the main thread");
        if (isMain)
            return _library->status();
        try {
            return ask(_library).result();
        } catch (const Cancelled &) {
            return ConsentStatus::undetermined;
        }
    }

    bool wasAnswered() const override { return _library->consent->answer().has_value(); }

private:
    const std::shared_ptr<Library> _library;
};

} // namespace

std::shared_ptr<MusicLibraryConsent> MusicLibraryConsent::make(std::shared_ptr<RememberedConsent> consent,
                                                               QString libraryFile) {
    return std::make_shared<ExportedLibraryConsent>(std::move(consent), std::move(libraryFile));
}

} // namespace zelk
