#include "weather/qt/NetworkPathWatch.h"

#include <QNetworkInformation>
#include <QTimer>

namespace trotlet::weather {

namespace {

std::optional<bool> satisfied(QNetworkInformation::Reachability r) {
    switch (r) {
        case QNetworkInformation::Reachability::Unknown: return std::nullopt;
        case QNetworkInformation::Reachability::Disconnected: return false;
        // A local or captive-portal-only link cannot reach Open-Meteo either.
        case QNetworkInformation::Reachability::Local:
        case QNetworkInformation::Reachability::Site: return false;
        case QNetworkInformation::Reachability::Online: return true;
    }
    return std::nullopt;
}

}  // namespace

SystemNetworkPathWatch::SystemNetworkPathWatch() = default;

SystemNetworkPathWatch::~SystemNetworkPathWatch() { stop(); }

void SystemNetworkPathWatch::start(std::function<void(bool)> report) {
    stop();
    report_ = std::move(report);
    const quint64 generation = ++generation_;
    if (!QNetworkInformation::instance() &&
        !QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
        return;
    QNetworkInformation* info = QNetworkInformation::instance();
    if (!info) return;
    auto deliver = [this, generation](QNetworkInformation::Reachability r) {
        if (generation != generation_ || !report_) return;
        if (auto s = satisfied(r)) report_(*s);
    };
    connection_ = connect(info, &QNetworkInformation::reachabilityChanged, this, deliver, Qt::QueuedConnection);
    // The first report with the current state, after start() has returned.
    const auto current = info->reachability();
    QTimer::singleShot(0, this, [deliver, current] { deliver(current); });
}

void SystemNetworkPathWatch::stop() {
    ++generation_;
    report_ = nullptr;
    if (connection_) disconnect(connection_);
    connection_ = {};
}

}  // namespace trotlet::weather
