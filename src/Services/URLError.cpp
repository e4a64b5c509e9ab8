#include "Services/URLError.h"

namespace zelk {

URLError::Code URLError::codeOf(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return Code::cannotFindHost;
    case QNetworkReply::ProxyNotFoundError:
        return Code::dnsLookupFailed;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::ProxyConnectionRefusedError:
        return Code::cannotConnectToHost;
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::UnknownNetworkError: // how an unreachable network is told
        return Code::notConnectedToInternet;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Code::timedOut;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ProxyConnectionClosedError:
        return Code::networkConnectionLost;
    default:
        return Code::other;
    }
}

} // namespace zelk
