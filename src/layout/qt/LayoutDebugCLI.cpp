#include "layout/qt/LayoutDebugCLI.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "layout/LayoutSelfCheck.h"
#include "settings/qt/SettingsFile.h"

namespace trotlet::layout {

namespace {

// A private directory for the persistence round trip, removed again on the way out, so the
// harness never touches the user's own settings.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::error_code error;
        auto base = std::filesystem::temp_directory_path(error);
        if (error) base = "/tmp";
        std::string pattern = (base / "trotlet-layout-XXXXXX").string();
        if (::mkdtemp(pattern.data())) path_ = pattern;
    }
    ~ScratchDirectory() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace

std::optional<int> LayoutDebugCLI::run(const std::vector<std::string>& args) {
    bool ours = false;
    for (size_t i = 1; i < args.size(); ++i)
        if (args[i] == "--dump-layout") ours = true;
    if (!ours) return std::nullopt;

    ScratchDirectory scratch;
    LayoutSelfCheck::Options options;
    if (!scratch.path().empty()) {
        // Each call opens the file afresh, as the next app session would.
        const std::string file = scratch.path() + "/settings.json";
        options.openSettings = [file] { return settings::SettingsFile::open(file, 0); };
        options.settingsDescription = "settings file in a scratch directory";
    }
    const auto report = LayoutSelfCheck::run(options);
    const std::string text = report.json.dump(2) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    for (const auto& failure : report.failures)
        std::fprintf(stderr, "trotlet: --dump-layout: %s\n", failure.c_str());
    return report.ok() ? 0 : 1;
}

}  // namespace trotlet::layout
