#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

namespace trotlet::settings {

// A stored value: bool, integer, double, string or array of strings (a date as an ISO-8601 string).
using SettingValue = nlohmann::json;

// Where values live: the JSON settings file, or memory for in-memory sessions.
class SettingsBacking {
public:
    virtual ~SettingsBacking() = default;
    virtual std::optional<SettingValue> read(const std::string& key) const = 0;
    virtual void write(const std::string& key,
                       const std::optional<SettingValue>& value) = 0;  // nullopt removes
    // True when nothing written here outlives the session.
    virtual bool isInMemory() const { return false; }
};

// A dictionary that lives as long as the session: the backing of `--skip-onboarding` runs
// and of tests. The user's settings file is never consulted.
class InMemorySettingsBacking final : public SettingsBacking {
public:
    InMemorySettingsBacking() = default;
    explicit InMemorySettingsBacking(std::map<std::string, SettingValue> values)
        : values_(std::move(values)) {}

    std::optional<SettingValue> read(const std::string& key) const override;
    void write(const std::string& key, const std::optional<SettingValue>& value) override;
    bool isInMemory() const override { return true; }

    const std::map<std::string, SettingValue>& values() const { return values_; }
    // How many writes and removals reached the dictionary; tests use it to prove that an
    // unchanged setting writes nothing.
    int writeCount() const { return writeCount_; }

private:
    std::map<std::string, SettingValue> values_;
    int writeCount_ = 0;
};

// The key-value store behind every settings group. Copies share one backing. Like the groups
// built on it, it belongs to the thread that created it (the main thread); debug builds assert
// that every access comes from there.
class DefaultsStore {
public:
    explicit DefaultsStore(std::shared_ptr<SettingsBacking> backing);

    std::optional<SettingValue> object(const std::string& key) const;
    // The stored value when it is a string, else the fallback.
    std::string string(const std::string& key, const std::string& fallback) const;
    // Stores the value under the key; no value removes the key.
    void set(const std::optional<SettingValue>& value, const std::string& key);
    // Stores an enumeration by its raw string.
    template <typename E, size_t N>
    void setRaw(E value, const std::array<std::string_view, N>& names, const std::string& key) {
        set(SettingValue(std::string(names[static_cast<size_t>(value)])), key);
    }
    bool isEphemeral() const;

    // In-memory store from dash-prefixed `-key value` argument pairs (keys containing "." and
    // not beginning with "NS" or "Apple"; values typed as bool, integer, double or string).
    static DefaultsStore ephemeral(const std::vector<std::string>& args);
    // The pairs `ephemeral` keeps, typed; exposed so the filtering can be checked on its own.
    static std::map<std::string, SettingValue> argumentDomain(const std::vector<std::string>& args);
    // "true"/"YES" and "false"/"NO" are bools, whole numbers integers, other numbers doubles
    // (read in the "C" locale), anything else a string.
    static SettingValue typedArgumentValue(std::string_view text);

    const std::shared_ptr<SettingsBacking>& backing() const { return backing_; }

private:
    void assertOwningThread() const;

    std::shared_ptr<SettingsBacking> backing_;
    std::thread::id owner_;
};

}  // namespace trotlet::settings
