#pragma once

#include <QObject>
#include <QThread>
#include <QTimer>

#include <memory>

#include "metrics/DayHistory.h"
#include "metrics/MetricHistory.h"
#include "metrics/MetricsProvider.h"
#include "metrics/SamplingPlan.h"
#include "metrics/WifiExtras.h"

namespace trotlet::metrics {

class PowerProfiles;
class SamplerWorker;

// Keeps the latest sample and the chart histories, and samples on a timer with the kinds and
// interval its consumers need (see SamplingPlan). The provider runs on a sampling thread of its
// own, because a reading can block (a slow sysfs attribute, the first statvfs of a volume); the
// result is published on the thread that owns the store (the main thread) through `updated`.
// A tick that comes while a sample is still running is skipped, never queued.
//
// Besides the recent ring it keeps the day's per-minute history. The first tick of each minute
// also reads the charted kinds the tier leaves out (disk activity and the GPU while the panel is
// closed); those readings go only into the day, and the published sample keeps the tier's kinds,
// so no consumer sees a reading appear once a minute.
class MetricsStore : public QObject {
    Q_OBJECT
public:
    // `lowPower`, when given, supplies battery.lowPowerMode (the real provider's readers cannot
    // ask D-Bus); mock and fixture providers keep their own.
    explicit MetricsStore(std::unique_ptr<MetricsProvider> provider, QObject* parent = nullptr,
                          size_t historyCapacity = 180);
    ~MetricsStore() override;

    void setLowPowerSource(PowerProfiles* lowPower);
    // Supplies the Wi-Fi network's name and band (the kernel's files do not say them).
    void setWifiSource(WifiSource* wifi) { wifi_ = wifi; }

    void setTier(ConsumerTier tier);
    void setUpdateInterval(double seconds);  // monitoring.updateInterval
    void setProcessListVisible(bool visible);
    // Kinds the menu bar's settings add to every tier (see planFor).
    void setExtraKinds(MetricKinds kinds);
    ConsumerTier tier() const { return tier_; }
    SamplingPlan plan() const { return planFor(tier_, updateIntervalSec_, processListVisible_, extraKinds_); }

    void start();  // samples at once, then on the plan's interval
    void stop();
    bool isRunning() const { return timer_.isActive(); }

    // Asks for one sample now (outside the timer); ignored while one is running.
    void sampleNow();

    bool hasSnapshot() const { return sampleCount_ > 0; }
    const MetricsSnapshot& latest() const { return latest_; }
    MetricKinds latestKinds() const { return latestKinds_; }
    const MetricHistory& history() const { return history_; }
    const DayHistory& dayHistory() const { return day_; }
    quint64 sampleCount() const { return sampleCount_; }
    quint64 skippedTicks() const { return skippedTicks_; }
    QString providerName() const { return providerName_; }

signals:
    void updated();  // on the store's thread, after latest() and history() changed

private:
    void applyPlan();
    // A plan change that asks for more: sample now, or right after the sample in flight.
    void sampleSoon();
    void deliver(const MetricsSnapshot& snapshot, MetricKinds kinds, MetricKinds dayOnly);

    QThread thread_;
    SamplerWorker* worker_ = nullptr;
    QTimer timer_;
    PowerProfiles* lowPower_ = nullptr;
    WifiSource* wifi_ = nullptr;
    QString providerName_;
    ConsumerTier tier_ = ConsumerTier::menuBarOnly;
    double updateIntervalSec_ = 2;
    bool processListVisible_ = false;
    MetricKinds extraKinds_;
    bool inFlight_ = false;
    bool resampleAfterDelivery_ = false;
    MetricsSnapshot latest_;
    MetricKinds latestKinds_;
    MetricHistory history_;
    DayHistory day_;
    quint64 sampleCount_ = 0;
    quint64 skippedTicks_ = 0;
};

}  // namespace trotlet::metrics
