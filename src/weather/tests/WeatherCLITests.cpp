// Runs the weather harnesses as a user would, from outside the binary, against the
// stand-in Open-Meteo server (fake_open_meteo.py) on 127.0.0.1.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

#include "BuildInfo.h"

namespace trotlet::weather {
namespace {

struct CliRun {
    int exitCode = -1;
    std::string out;
    std::string err;
    nlohmann::json json() const { return nlohmann::json::parse(out, nullptr, false); }
};

class WeatherCLITest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        home = new QTemporaryDir();
        server = new QProcess();
        server->setProgram("python3");
        server->setArguments({QString(TROTLET_SOURCE_DIR) + "/src/weather/tests/fake_open_meteo.py", "--log",
                              home->filePath("requests.log")});
        server->start();
        ASSERT_TRUE(server->waitForStarted(5000));
        ASSERT_TRUE(server->waitForReadyRead(10000)) << "the stand-in server did not print its port";
        port = QString::fromUtf8(server->readLine()).trimmed().toInt();
        ASSERT_GT(port, 0);
    }
    static void TearDownTestSuite() {
        server->kill();
        server->waitForFinished(5000);
        delete server;
        delete home;
    }

    static std::string base(const char* path) { return "http://127.0.0.1:" + std::to_string(port) + path; }

    static QProcessEnvironment environment() {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove("LANGUAGE");
        env.remove("TROTLET_WEATHER_CACHE");
        env.insert("LC_ALL", "C.UTF-8");
        env.insert("HOME", home->filePath("home"));
        env.insert("XDG_DATA_HOME", home->filePath("data"));
        env.insert("XDG_CONFIG_HOME", home->filePath("config"));
        env.insert("TROTLET_OPEN_METEO_GEOCODING", QString::fromStdString(base("/v1/search")));
        env.insert("TROTLET_OPEN_METEO_FORECAST", QString::fromStdString(base("/v1/forecast")));
        return env;
    }

    static CliRun run(const QStringList& args, QProcessEnvironment env = environment()) {
        QProcess p;
        p.setProcessEnvironment(env);
        p.start(TROTLET_BINARY, args);
        CliRun r;
        if (!p.waitForFinished(60000)) {
            p.kill();
            return r;
        }
        r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        r.out = p.readAllStandardOutput().toStdString();
        r.err = p.readAllStandardError().toStdString();
        return r;
    }

    static std::vector<std::string> loggedRequests() {
        QFile f(home->filePath("requests.log"));
        std::vector<std::string> lines;
        if (!f.open(QIODevice::ReadOnly)) return lines;
        for (const QByteArray& line : f.readAll().split('\n'))
            if (!line.isEmpty()) lines.push_back(line.toStdString());
        return lines;
    }

    static inline QTemporaryDir* home = nullptr;
    static inline QProcess* server = nullptr;
    static inline int port = 0;
};

TEST_F(WeatherCLITest, SearchSendsExactlyTheDocumentedRequest) {
    const size_t before = loggedRequests().size();
    CliRun r = run({"--weather-search", "Paris"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    auto j = r.json();
    ASSERT_FALSE(j.is_discarded()) << r.out;
    EXPECT_EQ(j["language"], "en");
    ASSERT_EQ(j["places"].size(), 2u);
    EXPECT_EQ(j["places"][0]["id"], 2988507);  // Paris, France before Paris, Texas
    EXPECT_EQ(j["places"][0]["region"], "Île-de-France");
    EXPECT_EQ(j["places"][0]["timezone"], "Europe/Paris");
    auto logged = loggedRequests();
    ASSERT_EQ(logged.size(), before + 1);
    EXPECT_EQ(logged.back(), "/v1/search?name=Paris&count=8&language=en&format=json\tTrotlet/" +
                                 std::string(build::version) + " (Linux tray app)");
}

TEST_F(WeatherCLITest, SearchWithALanguageReturnsTheLocalName) {
    CliRun r = run({"--weather-search", "Hanoi", "--lang", "vi"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    auto j = r.json();
    ASSERT_FALSE(j["places"].empty());
    EXPECT_EQ(j["places"][0]["name"], "Hà Nội");
    EXPECT_EQ(j["requests"][0], base("/v1/search") + "?name=Hanoi&count=8&language=vi&format=json");
}

TEST_F(WeatherCLITest, DumpPrintsTheReportAndItsTexts) {
    CliRun r = run({"--weather-dump", "Tokyo"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    auto j = r.json();
    ASSERT_FALSE(j.is_discarded()) << r.out;
    EXPECT_EQ(j["report"]["location"]["timezone"], "Asia/Tokyo");
    EXPECT_EQ(j["report"]["utcOffsetSeconds"], 9 * 3600);
    EXPECT_EQ(j["report"]["hourly"].size(), 37u);
    EXPECT_EQ(j["report"]["daily"].size(), 7u);
    const std::string request = j["request"];
    EXPECT_EQ(request.rfind(base("/v1/forecast") + "?latitude=35.6895&longitude=139.6917&current=", 0), 0u) << request;
    EXPECT_NE(request.find("&timezone=Asia%2FTokyo&forecast_days=7&forecast_hours=36&past_hours=1"), std::string::npos);
    const auto& d = j["derived"];
    ASSERT_TRUE(d["conditions"].is_object());
    EXPECT_EQ(d["conditions"]["source"], "current");
    EXPECT_EQ(d["age"], "just now");
    const std::string menu = d["menuBarText"];
    EXPECT_EQ(menu.substr(menu.size() - 3), "°C");
    EXPECT_FALSE(std::string(d["greeting"]).empty());
}

TEST_F(WeatherCLITest, EndToEndAndRecoveryPassOffline) {
    CliRun e2e = run({"--weather-e2e"});
    EXPECT_EQ(e2e.exitCode, 0) << e2e.out.substr(0, 2000) << e2e.err;
    auto j = e2e.json();
    EXPECT_EQ(j["ok"], true);
    EXPECT_EQ(j["places"].size(), 8u);
    CliRun recovery = run({"--weather-recovery"});
    EXPECT_EQ(recovery.exitCode, 0) << recovery.out.substr(0, 3000) << recovery.err;
    auto k = recovery.json();
    EXPECT_EQ(k["ok"], true);
    EXPECT_EQ(k["trace"].back(), "watch network off");
}

TEST_F(WeatherCLITest, PolishWritesTheTextTable) {
    QTemporaryDir out;
    CliRun r = run({"--weather-polish", out.filePath("polish")});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    auto j = r.json();
    EXPECT_EQ(j["rows"].size(), 29u * 2u * 4u);
    EXPECT_TRUE(QFile::exists(out.filePath("polish/weather-polish.json")));
    ASSERT_EQ(j["pictures"].size(), 5u * 2u * 2u);  // places, card and header, light and dark
    for (const auto& picture : j["pictures"]) {
        const QImage image(out.filePath("polish/" + QString::fromStdString(picture["file"].get<std::string>())));
        EXPECT_FALSE(image.isNull()) << picture["file"];
    }
    CliRun plain = run({"--weather-polish"});
    EXPECT_EQ(plain.exitCode, 0);
}

TEST_F(WeatherCLITest, ErrorsAndFailures) {
    struct Case {
        QStringList args;
        int exitCode;
        std::string err;
    } cases[] = {
        {{"--weather-search"}, 2, "trotlet: --weather-search needs a place name\nRun `Trotlet --help` for usage.\n"},
        {{"--weather-dump", "--lang", "fr"}, 2,
         "trotlet: --weather-dump needs a place name\nRun `Trotlet --help` for usage.\n"},
        {{"--weather-search", "Paris", "--lang"}, 2,
         "trotlet: --lang needs a language code\nRun `Trotlet --help` for usage.\n"},
        {{"--weather-dump", "Atlantis"}, 1, "trotlet: no place found for \"Atlantis\"\n"},
    };
    for (const auto& c : cases) {
        CliRun r = run(c.args);
        EXPECT_EQ(r.exitCode, c.exitCode) << c.args.join(' ').toStdString();
        EXPECT_EQ(r.err, c.err) << c.args.join(' ').toStdString();
    }
    // With the service out of reach the search says so and fails.
    QProcessEnvironment env = environment();
    env.insert("TROTLET_OPEN_METEO_GEOCODING", "http://127.0.0.1:1/v1/search");
    CliRun offline = run({"--weather-search", "Paris"}, env);
    EXPECT_EQ(offline.exitCode, 1);
    EXPECT_EQ(offline.err, "trotlet: weather search failed: You're offline\n");
}

TEST_F(WeatherCLITest, HarnessesNeverWriteTheUsersFiles) {
    run({"--weather-dump", "Berlin"});
    run({"--weather-recovery"});
    for (const char* sub : {"home", "data", "config"})
        EXPECT_FALSE(QDir(home->filePath(sub)).exists()) << sub;
}

}  // namespace
}  // namespace trotlet::weather
