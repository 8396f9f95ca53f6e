#pragma once

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <optional>
#include <string>

#include "metrics/WifiExtras.h"

namespace trotlet::platform {

// The Wi-Fi network's name, band and strength from NetworkManager on the system bus: the device
// of the interface (GetDeviceByIpIface), its active access point, and that point's Ssid,
// Frequency and Strength. Everything is asynchronous: `extrasFor` answers from what it has and
// asks again in the background when the interface changed or the answer is older than
// `refreshAfterMs`. Without NetworkManager the answer is simply none.
class NetworkManagerWifi : public QObject, public metrics::WifiSource {
    Q_OBJECT
public:
    static constexpr int refreshAfterMs = 30'000;

    explicit NetworkManagerWifi(const QDBusConnection& systemBus, QObject* parent = nullptr);

    std::optional<metrics::WifiExtras> extrasFor(const std::string& interface) override;
    int lookups() const { return lookups_; }

signals:
    void updated();

private:
    void lookUp(const QString& interface, quint64 generation);
    void readAccessPoint(const QString& devicePath, const QString& interface, quint64 generation);
    void finish(std::optional<metrics::WifiExtras> extras, quint64 generation);

    QDBusConnection bus_;
    std::string interface_;
    std::optional<metrics::WifiExtras> extras_;
    QElapsedTimer age_;
    bool inFlight_ = false;
    quint64 generation_ = 0;
    int lookups_ = 0;
};

}  // namespace trotlet::platform
