#include "metrics/MetricKinds.h"

namespace trotlet::metrics {

std::vector<std::string_view> MetricKinds::names() const {
    std::vector<std::string_view> out;
    for (size_t i = 0; i < singles.size(); ++i)
        if (contains(singles[i])) out.push_back(MetricKindNames[i]);
    return out;
}

MetricKinds MetricKinds::fromName(std::string_view name) {
    for (size_t i = 0; i < singles.size(); ++i)
        if (MetricKindNames[i] == name) return singles[i];
    return MetricKinds();
}

}  // namespace trotlet::metrics
