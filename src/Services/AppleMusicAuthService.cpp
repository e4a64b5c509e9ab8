#include "Services/AppleMusicAuthService.h"

#include "Platform/MusicAuthorization.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Services/SignInModel.h"
#include "Services/URLError.h"
#include "Services/URLSession.h"
#include "State/SettingsStore.h"
#include "State/SyncStore.h"
#include "Support/Cancelled.h"
#include "Support/Logger.h"
#include "Support/SharedInstance.h"
#include "Support/Task.h"
#include "Transport/HelperError.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStringDecoder>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AppleMusicAuthService)
};

QString devTokenCode() {
    return u"applemusic_dev_token"_s;
}

/// Whether the failure reads as a passing absence of the service.
bool isAbsence(const std::exception_ptr &failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const URLError &error) {
        return error.code() != URLError::Code::other;
    } catch (const HelperError &error) {
        const auto *engine = std::get_if<HelperError::EngineError>(&error.value);
        return engine && engine->code == devTokenCode();
    } catch (...) {
        return false;
    }
}

bool isCancellation(const std::exception_ptr &failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const Cancelled &) {
        return true;
    } catch (...) {
        return false;
    }
}

QString connectFailureMessage(const std::exception_ptr &failure) {
    if (isAbsence(failure))
        return Texts::tr("Cloud Apple Music isn't available right now. zelk will keep using your local Music library.");
    return Texts::tr("Apple Music connection failed: ") + describe(failure);
}

QString developerTokenIn(const URLSession::Response &response) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(response.body);
    const QString token = text.trimmed();
    if (response.status != 200 || decoder.hasError() || token.isEmpty())
        throw HelperError::engineError(devTokenCode(), u"Developer token unavailable."_s);
    return token;
}

} // namespace

/// What a sign-in under way holds, so that the service may go before it.
struct AppleMusicAuthService::Core {
    const Logger logger{"applemusic-auth"};
    const Operations operations;
    const QUrl devTokenURL;
    std::stop_source lifetime = {};

    static QCoro::Task<> connect(std::shared_ptr<Core> core, SignInModel &model);
    static QCoro::Task<> connectAuthorized(std::shared_ptr<Core> core, SignInModel &model, QPointer<SyncStore> alive);
    static QCoro::Task<QString> requestUserToken(std::shared_ptr<Core> core);
};

AppleMusicAuthService::AppleMusicAuthService(Operations operations, const QUrl &devTokenURL)
    : _core(std::make_shared<Core>(Core{.operations = std::move(operations), .devTokenURL = devTokenURL})) {
    if (!devTokenURL.isValid() || devTokenURL.host().isEmpty())
        qFatal("The URL of developer tokens is none: %s", qUtf8Printable(devTokenURL.toString()));
}

AppleMusicAuthService::~AppleMusicAuthService() {
    _core->lifetime.request_stop();
}

AppleMusicAuthService &AppleMusicAuthService::shared() {
    return SharedInstance<AppleMusicAuthService>::get();
}

QUrl AppleMusicAuthService::compiledDevTokenURL() {
    return QUrl(QStringLiteral("https://" ZELK_SERVICE_HOST "/applemusic/dev-token"), QUrl::StrictMode);
}

QCoro::Task<> AppleMusicAuthService::connect(SignInModel &model) {
    return Core::connect(_core, model);
}

QCoro::Task<> AppleMusicAuthService::Core::connect(std::shared_ptr<Core> core, SignInModel &model) {
    // The stores go with the model.
    const QPointer<SyncStore> sync = model.sync();
    std::exception_ptr failure;
    try {
        auto authorizing = core->operations.authorization->request();
        const auto status = co_await authorizing;
        if (!sync || core->lifetime.stop_requested())
            co_return;
        if (status != ConsentStatus::authorized) {
            sync->setBanner(SyncBanner::warning(
                Texts::tr("Apple Music access was not granted. Using your local library instead.")));
            co_return;
        }
        auto connecting = connectAuthorized(core, model, sync);
        co_await connecting;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!failure || !sync || isCancellation(failure))
        co_return;
    core->logger.error(u"apple music connect failed: "_s + logText(failure));
    sync->setBanner(SyncBanner::warning(connectFailureMessage(failure)));
}

QCoro::Task<> AppleMusicAuthService::Core::connectAuthorized(std::shared_ptr<Core> core, SignInModel &model,
                                                             QPointer<SyncStore> alive) {
    auto requesting = requestUserToken(core);
    const QString userToken = co_await requesting;
    if (!alive)
        co_return;
    auto storing = model.storeAccountToken(AccountService::applemusic, userToken);
    co_await storing;
    if (!alive || !model.settings())
        co_return;
    auto refreshing = model.settings()->refresh();
    co_await refreshing;
}

QCoro::Task<QString> AppleMusicAuthService::Core::requestUserToken(std::shared_ptr<Core> core) {
    const auto stop = core->lifetime.get_token();
    auto loading = core->operations.session->get(core->devTokenURL, stop);
    const auto response = co_await loading;
    if (stop.stop_requested())
        throw Cancelled();
    const QString developerToken = developerTokenIn(response);
    const auto provider = core->operations.makeTokenProvider();
    auto requesting = provider->userToken(developerToken, MusicTokenRequestOption::ignoreCache, stop);
    co_return co_await requesting;
}

} // namespace zelk
