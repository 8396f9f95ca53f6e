#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/AppSettings.h"

namespace trotlet::settings {

// Every group key by its stored name, read and written through the groups. The settings screen
// binds each control to a key through this one table, so a control can only ever change its own
// key, with the key's own type, and only through the group's setter (which refuses a write of
// the value already held).
namespace keyed {

// The keys of the seven groups, in the order the groups declare them.
const std::vector<std::string>& keys();

// The value as the group holds it, typed as it is stored (an enumeration as its raw string);
// null for an optional key that holds nothing. Nothing for an unknown key.
std::optional<SettingValue> value(const AppSettings& settings, const std::string& key);

// Hands the value to the key's setter. False, and nothing written, for an unknown key or a value
// of the wrong type (a string that names no case of an enumeration, a number for a bool, a
// fraction for an integer key). Null clears an optional key.
bool set(AppSettings& settings, const std::string& key, const SettingValue& value);

}  // namespace keyed
}  // namespace trotlet::settings
