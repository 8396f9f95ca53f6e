#include "weather/qt/WeatherPolishCLI.h"

#include <QApplication>

#include "platform/linux/AtomicFile.h"
#include "snapshot/SnapshotRunner.h"
#include "snapshot/WeatherPolishPictures.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherText.h"
#include "weather/qt/WeatherHarness.h"

namespace trotlet::weather {

namespace {

constexpr int kCodes[] = {0,  1,  2,  3,  45, 48, 51, 53, 55, 56, 57, 61, 63, 65, 66,
                          67, 71, 73, 75, 77, 80, 81, 82, 85, 86, 95, 96, 99, 100};

struct Moment {
    const char* part;
    int hour;
};
constexpr Moment kMoments[] = {{"morning", 8}, {"afternoon", 14}, {"evening", 19}, {"night", 23}};

}  // namespace

int WeatherPolishCLI::run(const std::optional<std::string>& dir) {
    auto rows = nlohmann::ordered_json::array();
    auto all = [](const std::string&) { return true; };
    // The header's width for the greeting, in characters of the header font (about 34).
    auto header = [](const std::string& s) { return s.size() <= 34; };
    for (int code : kCodes) {
        const WeatherCondition condition = conditionFromWmo(code);
        for (bool isDay : {true, false}) {
            for (const auto& m : kMoments) {
                const bool sunUp = isDay;
                GreetingInput input{condition, m.hour, sunUp, "Melbourne"};
                rows.push_back({
                    {"code", code},
                    {"isDay", isDay},
                    {"partOfDay", m.part},
                    {"condition", std::string(rawName(condition))},
                    {"title", title(code, isDay)},
                    {"symbol", symbol(code, isDay)},
                    {"icon", symbolIconName(symbol(code, isDay))},
                    {"intensity", intensity(code)},
                    {"isWet", isWet(condition)},
                    {"phrase", greetingPhrase(condition, partOfDay(m.hour), sunUp)},
                    {"greetingHere", greetingLine(input, m.hour, std::string("Henry"), all)},
                    {"greetingAway", greetingLine(input, (m.hour + 12) % 24, std::string("Henry"), all)},
                    {"greetingNarrow", greetingLine(input, (m.hour + 12) % 24, std::string("Henry"), header)},
                });
            }
        }
    }
    nlohmann::ordered_json out;
    out["rows"] = std::move(rows);
    out["noCondition"] = {{"morning", greetingPhrase(std::nullopt, PartOfDay::morning, true)},
                          {"afternoon", greetingPhrase(std::nullopt, PartOfDay::afternoon, true)},
                          {"evening", greetingPhrase(std::nullopt, PartOfDay::evening, false)},
                          {"night", greetingPhrase(std::nullopt, PartOfDay::night, false)}};
    if (dir) {
        platform::ensureDirectory(*dir);
        // The words as they are drawn: each place's card and header sky, in both schemes.
        snapshot::SnapshotRunner::prepareEnvironment();
        static int argc = 1;
        static char name[] = "trotlet";
        static char* argv[] = {name, nullptr};
        QApplication app(argc, argv);
        snapshot::SnapshotRunner::prepareApplication();
        std::string error;
        const auto pictures = snapshot::writeWeatherPolishPictures(*dir, error);
        if (!error.empty()) return harness::failure(error);
        auto list = nlohmann::ordered_json::array();
        for (const auto& picture : pictures) list.push_back({{"place", picture.place}, {"file", picture.file}});
        out["pictures"] = std::move(list);
        const std::string path = *dir + "/weather-polish.json";
        auto written = platform::writeAtomically(path, out.dump(2) + "\n");
        if (!written) return harness::failure("cannot write " + path + ": " + written.error);
        out["file"] = path;
    }
    harness::printJson(out);
    return 0;
}

}  // namespace trotlet::weather
