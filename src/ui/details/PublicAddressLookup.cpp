#include "ui/details/PublicAddressLookup.h"

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <cstdlib>

namespace trotlet::ui {

QUrl PublicAddressLookup::defaultService() {
    const char* env = std::getenv("TROTLET_PUBLIC_IP_URL");
    return QUrl(QString::fromUtf8(env && *env ? env : "https://api.ipify.org"));
}

PublicAddressLookup::PublicAddressLookup(QUrl service, QObject* parent)
    : QObject(parent), service_(std::move(service)) {
    state_.service = service_.host().toStdString();
    timeout_.setSingleShot(true);
    timeout_.setInterval(timeoutMs);
    connect(&timeout_, &QTimer::timeout, this, [this] {
        if (!reply_) return;
        QNetworkReply* reply = reply_;
        reply_.clear();
        reply->abort();
        reply->deleteLater();
        fail("The address service did not answer. Try again in a moment.");
    });
}

PublicAddressLookup::~PublicAddressLookup() {
    if (reply_) reply_->abort();
}

void PublicAddressLookup::request() {
    if (reply_) return;
    if (!network_) {
        // Built on the first press: a panel that never asks never opens a connection.
        network_ = new QNetworkAccessManager(this);
        network_->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    }
    QNetworkRequest request(service_);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Trotlet"));
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    ++requests_;
    reply_ = network_->get(request);
    QNetworkReply* reply = reply_;
    connect(reply, &QNetworkReply::downloadProgress, this, [reply](qint64 received, qint64) {
        if (received > maxBodyBytes) reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finish(reply); });
    timeout_.start();
    state_.status = panel::PublicAddressState::Status::loading;
    emit changed();
}

void PublicAddressLookup::finish(QNetworkReply* reply) {
    reply->deleteLater();
    if (reply != reply_) return;  // timed out already
    reply_.clear();
    timeout_.stop();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError && status == 0) {
        fail("Couldn't reach " + state_.service + ". Check the connection and try again.");
        return;
    }
    if (status != 200) {
        fail("The address service answered with an error (" + std::to_string(status) + ").");
        return;
    }
    const QByteArray body = reply->read(maxBodyBytes + 1);
    const auto address =
        panel::parsePublicAddress(std::string_view(body.constData(), size_t(body.size())));
    if (!address) {
        fail("The address service sent an answer that is not an address.");
        return;
    }
    state_.status = panel::PublicAddressState::Status::found;
    state_.address = *address;
    state_.error.clear();
    state_.fetchedAt = clock_ ? clock_() : QDateTime::currentSecsSinceEpoch();
    emit changed();
}

void PublicAddressLookup::fail(const std::string& message) {
    state_.status = panel::PublicAddressState::Status::failed;
    state_.error = message;
    emit changed();
}

}  // namespace trotlet::ui
