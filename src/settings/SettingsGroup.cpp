#include "settings/SettingsGroup.h"

#include <cmath>
#include <limits>

namespace trotlet::settings {

namespace stored {

std::optional<bool> asBool(const std::optional<SettingValue>& value) {
    if (value && value->is_boolean()) return value->get<bool>();
    return std::nullopt;
}

std::optional<int> asInt(const std::optional<SettingValue>& value) {
    if (!value || !value->is_number()) return std::nullopt;
    if (value->is_number_unsigned()) {
        auto n = value->get<unsigned long long>();
        if (n > static_cast<unsigned long long>(std::numeric_limits<int>::max()))
            return std::nullopt;
        return static_cast<int>(n);
    }
    if (value->is_number_integer()) {
        auto n = value->get<long long>();
        if (n < std::numeric_limits<int>::min() || n > std::numeric_limits<int>::max())
            return std::nullopt;
        return static_cast<int>(n);
    }
    const double d = value->get<double>();
    if (!std::isfinite(d) || d != std::trunc(d) || d < std::numeric_limits<int>::min() ||
        d > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(d);
}

std::optional<double> asDouble(const std::optional<SettingValue>& value) {
    if (!value || !value->is_number()) return std::nullopt;
    return value->get<double>();
}

std::optional<std::string> asString(const std::optional<SettingValue>& value) {
    if (value && value->is_string()) return value->get<std::string>();
    return std::nullopt;
}

std::optional<std::vector<std::string>> asStringList(const std::optional<SettingValue>& value) {
    if (!value || !value->is_array()) return std::nullopt;
    std::vector<std::string> list;
    for (const auto& item : *value) {
        if (!item.is_string()) return std::nullopt;
        list.push_back(item.get<std::string>());
    }
    return list;
}

}  // namespace stored

SettingsGroup::ObserverId SettingsGroup::observe(Observer observer) {
    const ObserverId id = nextId_++;
    observers_.emplace(id, std::move(observer));
    return id;
}

void SettingsGroup::unobserve(ObserverId id) { observers_.erase(id); }

void SettingsGroup::changed(const std::string& key, std::optional<SettingValue> value) {
    // A copy, so an observer may subscribe or unsubscribe while being told.
    const auto observers = observers_;
    for (const auto& [id, observer] : observers)
        if (observer) observer(key);
    store_.set(value, key);
}

}  // namespace trotlet::settings
