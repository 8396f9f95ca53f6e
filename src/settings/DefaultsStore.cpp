#include "settings/DefaultsStore.h"

#include <cassert>
#include <charconv>
#include <cmath>

namespace trotlet::settings {

std::optional<SettingValue> InMemorySettingsBacking::read(const std::string& key) const {
    auto it = values_.find(key);
    if (it == values_.end()) return std::nullopt;
    return it->second;
}

void InMemorySettingsBacking::write(const std::string& key,
                                    const std::optional<SettingValue>& value) {
    ++writeCount_;
    if (value)
        values_[key] = *value;
    else
        values_.erase(key);
}

DefaultsStore::DefaultsStore(std::shared_ptr<SettingsBacking> backing)
    : backing_(backing ? std::move(backing) : std::make_shared<InMemorySettingsBacking>()),
      owner_(std::this_thread::get_id()) {}

void DefaultsStore::assertOwningThread() const {
    // Settings take no locks: the groups and their observers assume one thread.
    assert(std::this_thread::get_id() == owner_ && "settings used off the main thread");
}

std::optional<SettingValue> DefaultsStore::object(const std::string& key) const {
    assertOwningThread();
    return backing_->read(key);
}

std::string DefaultsStore::string(const std::string& key, const std::string& fallback) const {
    auto value = object(key);
    if (value && value->is_string()) return value->get<std::string>();
    return fallback;
}

void DefaultsStore::set(const std::optional<SettingValue>& value, const std::string& key) {
    assertOwningThread();
    if (value && value->is_null()) {
        backing_->write(key, std::nullopt);
        return;
    }
    backing_->write(key, value);
}

bool DefaultsStore::isEphemeral() const { return backing_->isInMemory(); }

SettingValue DefaultsStore::typedArgumentValue(std::string_view text) {
    if (text == "true" || text == "YES") return true;
    if (text == "false" || text == "NO") return false;
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (!text.empty()) {
        long long whole = 0;
        auto [end, error] = std::from_chars(first, last, whole);
        if (error == std::errc() && end == last) return whole;
        double number = 0;
        auto [dEnd, dError] = std::from_chars(first, last, number);
        // "nan" and "inf" are words a user might mean literally, and no setting wants them.
        if (dError == std::errc() && dEnd == last && std::isfinite(number)) return number;
    }
    return std::string(text);
}

std::map<std::string, SettingValue> DefaultsStore::argumentDomain(
    const std::vector<std::string>& args) {
    std::map<std::string, SettingValue> domain;
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        const std::string& word = args[i];
        if (word.size() < 2 || word[0] != '-' || word[1] == '-') continue;
        const std::string key = word.substr(1);
        const std::string& value = args[++i];
        // Keys without a dot belong to no settings group, and the "NS"/"Apple" prefixes name
        // toolkit-wide defaults that a session preset must never change.
        if (key.find('.') == std::string::npos) continue;
        if (key.rfind("NS", 0) == 0 || key.rfind("Apple", 0) == 0) continue;
        domain[key] = typedArgumentValue(value);
    }
    return domain;
}

DefaultsStore DefaultsStore::ephemeral(const std::vector<std::string>& args) {
    return DefaultsStore(std::make_shared<InMemorySettingsBacking>(argumentDomain(args)));
}

}  // namespace trotlet::settings
