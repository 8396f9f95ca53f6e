// settings.json as the app opens it: the file decoded into the settings groups (every key read
// with its default for a missing or mistyped value) and the app reading those values. A file
// that does not decode is kept aside byte for byte; one that does is written back with every
// key it held, known or not.

#include <unistd.h>

#include "platform/linux/AtomicFile.h"
#include "settings/AppSettings.h"
#include "settings/qt/SettingsFile.h"

#include "Consumers.h"
#include "FuzzSupport.h"

using namespace trotlet;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::TempFolder folder;
    const std::string path = folder.path() + "/settings.json";
    const std::string contents(fuzz::bytes(data, size));
    FUZZ_CHECK(platform::writeAtomically(path, contents));

    auto file = settings::SettingsFile::open(path, 1'790'000'000);
    if (const auto& kept = file->keptAside()) {
        const auto copy = platform::readWholeFile(*kept);
        FUZZ_CHECK(copy.status == platform::ReadStatus::ok && copy.contents == contents);
        FUZZ_CHECK(file->isWritable());
        ::unlink(kept->c_str());
    } else {
        FUZZ_CHECK(file->problem().empty());
    }

    {
        settings::AppSettings appSettings{settings::DefaultsStore(file), size % 2 == 0};
        fuzz::consumeSettings(appSettings);
        appSettings.general().setLaunchAtLogin(!appSettings.general().launchAtLogin());
    }
    const auto written = platform::readWholeFile(path);
    FUZZ_CHECK(written.status == platform::ReadStatus::ok);
    auto reopened = settings::SettingsFile::open(path, 1'790'000'000);
    FUZZ_CHECK(!reopened->keptAside());
    for (const auto& key : {"general.launchAtLogin", "monitoring.updateInterval", "layout.overview",
                            "weather.location", "x.unknown"})
        FUZZ_CHECK(reopened->read(key) == file->read(key));
    ::unlink(path.c_str());
    return 0;
}
