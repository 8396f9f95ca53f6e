#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <functional>

#include "panel/PublicAddress.h"

class QNetworkAccessManager;
class QNetworkReply;

namespace trotlet::ui {

// Asks an address-echo service for this computer's public address, once per request and only
// when the user presses the button: no request is ever made on its own. The answer is kept with
// its time; a failure keeps a sentence for the user. The service is
// $TROTLET_PUBLIC_IP_URL, else https://api.ipify.org (plain text or {"ip": …} both work).
class PublicAddressLookup : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<qint64()>;  // Unix seconds

    explicit PublicAddressLookup(QUrl service = defaultService(), QObject* parent = nullptr);
    ~PublicAddressLookup() override;

    static QUrl defaultService();
    static constexpr int timeoutMs = 10'000;
    static constexpr qint64 maxBodyBytes = 4096;

    // One request; ignored while one is in flight.
    void request();
    const panel::PublicAddressState& state() const { return state_; }
    int requestsMade() const { return requests_; }
    void setClock(Clock clock) { clock_ = std::move(clock); }

signals:
    void changed();

private:
    void finish(QNetworkReply* reply);
    void fail(const std::string& message);

    QUrl service_;
    QNetworkAccessManager* network_ = nullptr;
    QPointer<QNetworkReply> reply_;
    QTimer timeout_;
    panel::PublicAddressState state_;
    Clock clock_;
    int requests_ = 0;
};

}  // namespace trotlet::ui
