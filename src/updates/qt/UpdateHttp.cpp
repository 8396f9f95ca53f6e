#include "updates/qt/UpdateHttp.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

#include "BuildInfo.h"

namespace trotlet::updates {

namespace {

struct Transfer {
    bool finished = false;
    bool timedOut = false;
    bool tooLarge = false;
};

}  // namespace

UpdateHttp::UpdateHttp() : manager_(std::make_unique<QNetworkAccessManager>()) {
    manager_->setCache(nullptr);
    manager_->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

UpdateHttp::~UpdateHttp() { cancelAll(); }

void UpdateHttp::cancelAll() {
    for (QNetworkReply* reply : manager_->findChildren<QNetworkReply*>()) reply->abort();
}

void UpdateHttp::get(const std::string& url, const HttpLimits& limits, Done done,
                     std::function<void(qint64, qint64)> progress) {
    QNetworkRequest request(QUrl(QString::fromStdString(url), QUrl::StrictMode));
    request.setRawHeader("User-Agent",
                         QByteArray("Trotlet/") + build::version + " (Linux tray app)");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // Updates need no session: no cookie is sent or kept.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    QNetworkReply* reply = manager_->get(request);
    auto state = std::make_shared<Transfer>();

    auto* idle = new QTimer(reply);
    auto* total = new QTimer(reply);
    idle->setSingleShot(true);
    total->setSingleShot(true);
    auto expire = [state, reply] {
        if (state->finished) return;
        state->timedOut = true;
        reply->abort();
    };
    QObject::connect(idle, &QTimer::timeout, reply, expire);
    QObject::connect(total, &QTimer::timeout, reply, expire);
    const int idleMs = limits.idleTimeoutMs;
    const qint64 maxBytes = limits.maxBytes;
    QObject::connect(reply, &QNetworkReply::metaDataChanged, idle,
                     [idle, idleMs] { idle->start(idleMs); });
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [idle, idleMs, state, reply, maxBytes, progress](qint64 got, qint64 size) {
                         idle->start(idleMs);
                         // Judged on what arrived: a promise of more bytes than wanted
                         // may still end short, and that is a different fault.
                         if (got > maxBytes) {
                             state->tooLarge = true;
                             reply->abort();
                             return;
                         }
                         if (progress) progress(got, size);
                     });
    idle->start(idleMs);
    total->start(limits.totalTimeoutMs);

    QObject::connect(reply, &QNetworkReply::finished, reply, [state, reply, idle, total, done] {
        if (state->finished) return;
        state->finished = true;
        idle->stop();
        total->stop();
        HttpResult result;
        if (reply->isOpen()) result.body = reply->readAll();
        const QVariant code = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        result.httpStatus = code.isValid() ? code.toInt() : 0;
        if (state->timedOut)
            result.status = HttpResult::Status::timeout;
        else if (state->tooLarge)
            result.status = HttpResult::Status::tooLarge;
        else if (reply->error() == QNetworkReply::OperationCanceledError)
            result.status = HttpResult::Status::cancelled;
        else if (result.httpStatus >= 300)
            result.status = HttpResult::Status::httpStatus;
        else if (reply->error() != QNetworkReply::NoError)
            result.status = HttpResult::Status::network;
        else
            result.status = HttpResult::Status::ok;
        reply->deleteLater();
        done(std::move(result));
    });
}

}  // namespace trotlet::updates
