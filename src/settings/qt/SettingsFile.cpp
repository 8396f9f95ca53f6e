#include "settings/qt/SettingsFile.h"

#include <cstdio>
#include <ctime>

#include "json/ParseBounded.h"
#include "platform/linux/AtomicFile.h"
#include "platform/linux/XdgPaths.h"

namespace trotlet::settings {

namespace {

std::string directoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

}  // namespace

std::string SettingsFile::standardPath() {
    return platform::XdgPaths::configDir() + "/settings.json";
}

std::shared_ptr<SettingsFile> SettingsFile::open(const std::string& path,
                                                 long long nowUnixSeconds) {
    std::shared_ptr<SettingsFile> file(new SettingsFile(path));
    const platform::ReadResult read = platform::readWholeFile(path);
    if (read.status == platform::ReadStatus::missing) return file;

    std::string reason;
    if (read.status == platform::ReadStatus::unreadable) {
        reason = "cannot be read (" + read.error + ")";
    } else if (json::nestsDeeperThan(read.contents)) {
        reason = "nests deeper than " + std::to_string(json::kMaxNesting) + " levels";
    } else {
        SettingValue parsed = json::parseBounded<SettingValue>(read.contents);
        if (parsed.is_object()) {
            file->document_ = std::move(parsed);
            return file;
        }
        reason = parsed.is_discarded() ? "is not valid JSON" : "does not hold a JSON object";
    }

    file->keptAside_ = platform::keepAside(path, "corrupt", platform::localStamp(nowUnixSeconds));
    if (file->keptAside_) {
        file->problem_ = path + " " + reason + "; kept it as " + *file->keptAside_ +
                         " and started from the defaults";
    } else {
        // Writing now would destroy the only copy of whatever the user had.
        file->writable_ = false;
        file->problem_ = path + " " + reason +
                         " and could not be moved aside; using the defaults without saving";
    }
    return file;
}

std::optional<SettingValue> SettingsFile::read(const std::string& key) const {
    auto it = document_.find(key);
    if (it == document_.end() || it->is_null()) return std::nullopt;
    return *it;
}

void SettingsFile::write(const std::string& key, const std::optional<SettingValue>& value) {
    if (value && !value->is_null())
        document_[key] = *value;
    else
        document_.erase(key);
    save();
}

void SettingsFile::save() {
    if (!writable_) return;
    if (!platform::ensureDirectory(directoryOf(path_))) {
        problem_ = "cannot create the folder for " + path_;
        std::fprintf(stderr, "trotlet: %s\n", problem_.c_str());
        return;
    }
    const auto result = platform::writeAtomically(
        path_, document_.dump(2, ' ', false, SettingValue::error_handler_t::replace) + "\n");
    if (!result) {
        problem_ = "cannot save " + path_ + ": " + result.error;
        std::fprintf(stderr, "trotlet: %s\n", problem_.c_str());
    }
}

DefaultsStore standardDefaultsStore() {
    auto file = SettingsFile::open(SettingsFile::standardPath(),
                                   static_cast<long long>(std::time(nullptr)));
    if (!file->problem().empty()) std::fprintf(stderr, "trotlet: %s\n", file->problem().c_str());
    return DefaultsStore(file);
}

}  // namespace trotlet::settings
