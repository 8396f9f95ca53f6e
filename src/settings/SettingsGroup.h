#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "settings/DefaultsStore.h"
#include "settings/RawEnum.h"

namespace trotlet::settings {

// Typed views of a stored value. Each gives nothing when the value is missing or of another
// type, so the caller's default applies. A bool is never a number; a whole-numbered double
// counts as an integer and an integer as a double, since JSON does not keep the difference.
namespace stored {
std::optional<bool> asBool(const std::optional<SettingValue>& value);
std::optional<int> asInt(const std::optional<SettingValue>& value);
std::optional<double> asDouble(const std::optional<SettingValue>& value);
std::optional<std::string> asString(const std::optional<SettingValue>& value);
std::optional<std::vector<std::string>> asStringList(const std::optional<SettingValue>& value);

template <typename E, size_t N>
std::optional<E> asEnum(const std::optional<SettingValue>& value,
                        const std::array<std::string_view, N>& names) {
    auto raw = asString(value);
    if (!raw) return std::nullopt;
    return fromRawName<E>(*raw, names);
}
}  // namespace stored

// Common ground of the settings groups: a reference to the session's store and the observers.
// A setter changes the property, tells the observers (which read the new value from the group)
// and then writes the key; setting the current value does none of this. Values read from the
// store are never written back, so a wrong-typed stored value stays until the user changes it.
class SettingsGroup {
public:
    using Observer = std::function<void(const std::string& key)>;
    using ObserverId = int;

    SettingsGroup(const SettingsGroup&) = delete;
    SettingsGroup& operator=(const SettingsGroup&) = delete;

    ObserverId observe(Observer observer);
    void unobserve(ObserverId id);

protected:
    explicit SettingsGroup(DefaultsStore& store) : store_(store) {}
    ~SettingsGroup() = default;

    template <typename T>
    void update(T& property, T value, const std::string& key) {
        if (property == value) return;
        property = std::move(value);
        changed(key, SettingValue(property));
    }

    template <typename E, size_t N>
    void updateRaw(E& property, E value, const std::array<std::string_view, N>& names,
                   const std::string& key) {
        if (property == value) return;
        property = value;
        changed(key, SettingValue(std::string(rawName(value, names))));
    }

    // Notifies the observers, then stores the value (nothing removes the key).
    void changed(const std::string& key, std::optional<SettingValue> value);

    DefaultsStore& store_;

private:
    std::map<ObserverId, Observer> observers_;
    ObserverId nextId_ = 1;
};

}  // namespace trotlet::settings
