#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

namespace trotlet::metrics {

// Low power mode on Linux: power-profiles-daemon's ActiveProfile is "power-saver". The daemon
// answers on the system bus as org.freedesktop.UPower.PowerProfiles (0.20 and later) or as
// net.hadess.PowerProfiles (older). Reads are asynchronous and the answer is cached, so a
// sampling tick never waits on D-Bus; profile changes arrive as PropertiesChanged signals.
// Without the daemon (or without a system bus) the mode stays off.
class PowerProfiles : public QObject {
    Q_OBJECT
public:
    explicit PowerProfiles(QObject* parent = nullptr);

    bool lowPowerMode() const { return lowPower_; }
    bool answered() const { return answered_; }

    // Starts an asynchronous read of ActiveProfile (and subscribes to changes on first use).
    // Changes arrive as signals, so a read is only repeated after a minute, in case the daemon
    // started later or a signal was missed; calling this on every tick costs nothing.
    void refresh();

    // One blocking read with a short time-out, for the one-shot dump.
    static bool queryOnce(int timeoutMs = 250);

signals:
    void lowPowerModeChanged(bool on);

private slots:
    void onPropertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList&);

private:
    void apply(const QString& profile);
    bool subscribed_ = false;
    QElapsedTimer sinceRead_;
    bool lowPower_ = false;
    bool answered_ = false;
};

}  // namespace trotlet::metrics
