#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QByteArray>
#include <QPointer>

class QNetworkAccessManager;
class QNetworkReply;

namespace trotlet::updates {

// One finished GET: the whole body, or why there is none. A body cut short keeps what arrived,
// so a download can say how far it got.
struct HttpResult {
    enum class Status { ok, network, timeout, httpStatus, tooLarge, cancelled };
    Status status = Status::network;
    int httpStatus = 0;
    QByteArray body;
};

struct HttpLimits {
    // Give up when no byte arrived for this long, or when the whole exchange takes longer.
    int idleTimeoutMs = 15000;
    int totalTimeoutMs = 120000;
    qint64 maxBytes = 64 << 20;
};

// The update traffic: plain GETs without cookies or cache, redirects only to addresses at
// least as safe. Lives on the thread that made it; callbacks come back there.
class UpdateHttp {
public:
    UpdateHttp();
    ~UpdateHttp();

    using Done = std::function<void(HttpResult)>;
    // `progress` (optional) hears received and total bytes (total -1 when unknown).
    void get(const std::string& url, const HttpLimits& limits, Done done,
             std::function<void(qint64, qint64)> progress = {});
    // Aborts every transfer under way; each reports `cancelled`.
    void cancelAll();

private:
    std::unique_ptr<QNetworkAccessManager> manager_;
};

}  // namespace trotlet::updates
