#pragma once

#include <memory>
#include <optional>
#include <string>

#include "settings/DefaultsStore.h"

namespace trotlet::settings {

// The user's persistent settings: one JSON object in `$XDG_CONFIG_HOME/trotlet/settings.json`,
// read once when opened and rewritten atomically on every change. Keys this version does not
// know are kept and written back untouched.
//
// A file that is not a JSON object, or cannot be read, is renamed aside under a stamped name
// ("settings.corrupt-<yyyyMMdd-HHmmss>.json") and the session starts from the defaults. When
// even the rename fails, the session runs on the defaults but never writes over that file.
class SettingsFile final : public SettingsBacking {
public:
    // `nowUnixSeconds` stamps the name of a file kept aside.
    static std::shared_ptr<SettingsFile> open(const std::string& path, long long nowUnixSeconds);
    static std::string standardPath();

    std::optional<SettingValue> read(const std::string& key) const override;
    void write(const std::string& key, const std::optional<SettingValue>& value) override;

    const std::string& path() const { return path_; }
    // Where an unreadable file was moved, when one was.
    const std::optional<std::string>& keptAside() const { return keptAside_; }
    // The last problem met on opening or writing, for the log; empty when none.
    const std::string& problem() const { return problem_; }
    bool isWritable() const { return writable_; }

private:
    explicit SettingsFile(std::string path) : path_(std::move(path)) {}
    void save();

    std::string path_;
    SettingValue document_ = SettingValue::object();
    std::optional<std::string> keptAside_;
    std::string problem_;
    bool writable_ = true;
};

// The store for an ordinary session: the settings file at its standard path. Problems go to
// stderr as one line each; they never stop the app.
DefaultsStore standardDefaultsStore();

}  // namespace trotlet::settings
