#include "metrics/SnapshotMask.h"

namespace trotlet::metrics {

MetricsSnapshot restrictedTo(MetricsSnapshot s, MetricKinds kinds) {
    if (!kinds.contains(MetricKinds::cpu)) s.cpu = {};
    if (!kinds.contains(MetricKinds::memory)) s.memory = {};
    if (!kinds.contains(MetricKinds::diskIO)) {
        s.disks.readBps.reset();
        s.disks.writeBps.reset();
        s.disks.totalReadBytes.reset();
        s.disks.totalWrittenBytes.reset();
    }
    if (!kinds.contains(MetricKinds::volumes)) s.disks.volumes.clear();
    if (!kinds.contains(MetricKinds::network)) s.network = {};
    if (!kinds.contains(MetricKinds::battery)) s.battery = {};
    if (!kinds.contains(MetricKinds::sensors)) s.thermal = {};
    if (!kinds.contains(MetricKinds::gpu)) s.gpu.reset();
    if (!kinds.contains(MetricKinds::processes)) s.processes = {};
    if (!kinds.contains(MetricKinds::system)) s.system = {};
    return s;
}

}  // namespace trotlet::metrics
