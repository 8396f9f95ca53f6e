#pragma once

#include <optional>

#include <QNetworkReply>

#include "weather/WeatherError.h"

namespace trotlet::weather {

// How one finished HTTP exchange reads as a weather failure, first match wins:
//  1. the caller cancelled                    -> cancelled
//  2. one of our own time-outs fired          -> offline (the network did not deliver)
//  3. the server answered outside 200-299     -> server(status)
//  4. the answer outgrew the size limit       -> badResponse (it came, but no forecast is
//                                                that large)
//  5. Qt's own cancellation                   -> cancelled
//  6. protocol and undecodable-content errors -> badResponse
//  7. every other transport error (refused, host not found, dropped, TLS, proxy,
//     firewall) -> offline
// No error and a 2xx status is no failure (nothing).
std::optional<WeatherError> classifyReply(QNetworkReply::NetworkError error,
                                          std::optional<int> httpStatus, bool cancelledByCaller,
                                          bool timedOut, bool tooLarge = false);

}  // namespace trotlet::weather
