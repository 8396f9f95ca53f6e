#include "metrics/qt/MetricsStore.h"

#include <QMetaObject>
#include <QPointer>

#include <functional>

#include <chrono>
#include <cmath>

#include "metrics/SnapshotMask.h"
#include "metrics/qt/PowerProfiles.h"

namespace trotlet::metrics {

// Owns the provider on the sampling thread; only that thread touches it.
class SamplerWorker : public QObject {
public:
    explicit SamplerWorker(std::unique_ptr<MetricsProvider> provider)
        : provider_(std::move(provider)) {}

    void sample(MetricKinds kinds, bool fullList, Timestamp now, QPointer<MetricsStore> store,
                std::function<void(MetricsSnapshot, MetricKinds)> deliver) {
        provider_->setFullProcessList(fullList);
        MetricsSnapshot s = provider_->sample(kinds, now);
        if (!store) return;
        QMetaObject::invokeMethod(
            store.data(),
            [deliver = std::move(deliver), s = std::move(s), kinds]() { deliver(s, kinds); },
            Qt::QueuedConnection);
    }

private:
    std::unique_ptr<MetricsProvider> provider_;
};

MetricsStore::MetricsStore(std::unique_ptr<MetricsProvider> provider, QObject* parent,
                           size_t historyCapacity)
    : QObject(parent), history_(historyCapacity) {
    providerName_ = QString::fromStdString(provider->name());
    worker_ = new SamplerWorker(std::move(provider));
    worker_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_.setObjectName(QStringLiteral("trotlet-sampler"));
    thread_.start(QThread::LowPriority);
    timer_.setTimerType(Qt::CoarseTimer);
    connect(&timer_, &QTimer::timeout, this, &MetricsStore::sampleNow);
}

MetricsStore::~MetricsStore() {
    timer_.stop();
    thread_.quit();
    thread_.wait();
}

void MetricsStore::setLowPowerSource(PowerProfiles* lowPower) { lowPower_ = lowPower; }

void MetricsStore::setTier(ConsumerTier tier) {
    if (tier == tier_) return;
    const bool more = tier > tier_;
    tier_ = tier;
    applyPlan();
    // Opening the panel should not wait a whole slow interval for the kinds it adds.
    if (more && timer_.isActive()) sampleSoon();
}

void MetricsStore::setUpdateInterval(double seconds) {
    updateIntervalSec_ = seconds;
    applyPlan();
}

void MetricsStore::setProcessListVisible(bool visible) {
    if (visible == processListVisible_) return;
    processListVisible_ = visible;
    if (visible && timer_.isActive()) sampleSoon();
}

void MetricsStore::setExtraKinds(MetricKinds kinds) {
    if (kinds == extraKinds_) return;
    const bool more = !extraKinds_.contains(kinds);
    extraKinds_ = kinds;
    if (more && timer_.isActive()) sampleSoon();
}

void MetricsStore::sampleSoon() {
    if (inFlight_)
        resampleAfterDelivery_ = true;
    else
        sampleNow();
}

void MetricsStore::applyPlan() {
    if (!timer_.isActive()) return;
    const int ms = static_cast<int>(std::lround(plan().intervalSec * 1000));
    if (timer_.interval() != ms) timer_.start(ms);
}

void MetricsStore::start() {
    timer_.start(static_cast<int>(std::lround(plan().intervalSec * 1000)));
    sampleNow();
}

void MetricsStore::stop() {
    timer_.stop();
    resampleAfterDelivery_ = false;
}

void MetricsStore::sampleNow() {
    if (inFlight_) {
        ++skippedTicks_;
        return;
    }
    inFlight_ = true;
    if (lowPower_) lowPower_->refresh();
    const SamplingPlan p = plan();
    const Timestamp now = std::chrono::system_clock::now();
    const MetricKinds dayOnly(day_.dueKinds(now, DayHistory::kinds()).rawValue & ~p.kinds.rawValue);
    const MetricKinds kinds = p.kinds | dayOnly;
    QPointer<MetricsStore> self(this);
    auto deliver = [self, dayOnly](MetricsSnapshot s, MetricKinds sampled) {
        if (self) self->deliver(s, sampled, dayOnly);
    };
    SamplerWorker* worker = worker_;
    QMetaObject::invokeMethod(
        worker,
        [worker, kinds, p, now, self, deliver]() {
            worker->sample(kinds, p.fullProcessList, now, self, deliver);
        },
        Qt::QueuedConnection);
}

void MetricsStore::deliver(const MetricsSnapshot& snapshot, MetricKinds kinds,
                           MetricKinds dayOnly) {
    inFlight_ = false;
    day_.append(snapshot, kinds);
    if (dayOnly.isEmpty()) {
        latest_ = snapshot;
        latestKinds_ = kinds;
    } else {
        latestKinds_ = MetricKinds(kinds.rawValue & ~dayOnly.rawValue);
        latest_ = restrictedTo(snapshot, latestKinds_);
    }
    if (lowPower_ && latestKinds_.contains(MetricKinds::battery))
        latest_.battery.lowPowerMode = lowPower_->lowPowerMode();
    if (wifi_ && latestKinds_.contains(MetricKinds::network) &&
        latest_.network.interfaceKind == InterfaceKind::wifi && latest_.network.interface)
        if (const auto extras = wifi_->extrasFor(*latest_.network.interface))
            mergeWifiExtras(latest_.network, *extras);
    history_.append(latest_, latestKinds_);
    ++sampleCount_;
    emit updated();
    if (resampleAfterDelivery_ && timer_.isActive()) {
        resampleAfterDelivery_ = false;
        sampleNow();
    }
}

}  // namespace trotlet::metrics
