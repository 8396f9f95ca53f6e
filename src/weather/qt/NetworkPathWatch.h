#pragma once

#include <functional>
#include <memory>

#include <QObject>

namespace trotlet::weather {

// Tells whether the computer has a usable network path. The weather store runs it only
// while fetches fail, to retry as soon as the network comes back.
class NetworkPathWatch {
public:
    virtual ~NetworkPathWatch() = default;
    // Reports arrive on the main thread: once with the current state when it is known, then
    // on every change. A stopped watch reports nothing, even reports already queued.
    virtual void start(std::function<void(bool satisfied)> report) = 0;
    virtual void stop() = 0;
};

// Qt's QNetworkInformation reachability (NetworkManager's backend on most desktops).
// Without a backend the watch stays silent and the backoff alone decides.
class SystemNetworkPathWatch : public QObject, public NetworkPathWatch {
    Q_OBJECT
public:
    SystemNetworkPathWatch();
    ~SystemNetworkPathWatch() override;
    void start(std::function<void(bool)> report) override;
    void stop() override;

private:
    std::function<void(bool)> report_;
    quint64 generation_ = 0;
    QMetaObject::Connection connection_;
};

}  // namespace trotlet::weather
