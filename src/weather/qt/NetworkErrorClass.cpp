#include "weather/qt/NetworkErrorClass.h"

namespace trotlet::weather {

std::optional<WeatherError> classifyReply(QNetworkReply::NetworkError error,
                                          std::optional<int> httpStatus, bool cancelledByCaller,
                                          bool timedOut, bool tooLarge) {
    if (cancelledByCaller) return WeatherError::cancelled();
    if (timedOut) return WeatherError::offline();
    if (httpStatus && (*httpStatus < 200 || *httpStatus > 299)) return WeatherError::server(*httpStatus);
    if (tooLarge) return WeatherError::badResponse();
    switch (error) {
        case QNetworkReply::NoError:
            // A non-HTTP answer (no status at all) is not one the service gives.
            return httpStatus ? std::nullopt : std::optional(WeatherError::badResponse());
        case QNetworkReply::OperationCanceledError:
            return WeatherError::cancelled();
        case QNetworkReply::ProtocolUnknownError:
        case QNetworkReply::ProtocolInvalidOperationError:
        case QNetworkReply::ProtocolFailure:
        case QNetworkReply::UnknownContentError:
        case QNetworkReply::ContentReSendError:
        case QNetworkReply::UnknownServerError:
            return WeatherError::badResponse();
        default:
            return WeatherError::offline();
    }
}

}  // namespace trotlet::weather
