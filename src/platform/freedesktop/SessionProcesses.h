#pragma once

#include <QDBusConnection>
#include <QObject>

#include <cstdint>
#include <vector>

namespace trotlet::platform {

// Finds the processes that serve the desktop session through its bus: the bus itself, the
// session manager, the user's service manager and the tray host (the StatusNotifier watcher).
// Their names vary by desktop, their bus names do not. Asks once, without waiting; `found`
// reports the PIDs when the answers are in.
class SessionProcesses : public QObject {
    Q_OBJECT
public:
    SessionProcesses(const QDBusConnection& bus, QObject* parent = nullptr);

    const std::vector<std::int32_t>& pids() const { return pids_; }

    // The well-known bus names asked about.
    static const QStringList& busNames();

signals:
    void found(const std::vector<std::int32_t>& pids);

private:
    QDBusConnection bus_;
    std::vector<std::int32_t> pids_;
    int pending_ = 0;
};

}  // namespace trotlet::platform
