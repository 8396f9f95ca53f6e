#include <gtest/gtest.h>

#include <set>

#include <QElapsedTimer>

#include "BuildInfo.h"

#include "weather/OpenMeteoRequests.h"
#include "weather/qt/NetworkErrorClass.h"
#include "weather/qt/OpenMeteoClient.h"
#include "weather/tests/LocalHttpServer.h"
#include "weather/tests/OpenMeteoSamples.h"

namespace trotlet::weather {
namespace {

using testing::HttpRequest;
using testing::HttpResponse;
using testing::LocalHttpServer;

constexpr UnixTime kFirst = 1795852800;

WeatherLocation paris(std::string zone = "") {
    return {2988507, "Paris", "Île-de-France", "France", "FR", 48.85341, 2.3488, std::move(zone)};
}

OpenMeteoClientOptions optionsFor(const LocalHttpServer& server) {
    OpenMeteoClientOptions o;
    o.geocodingBase = server.base("/v1/search");
    o.forecastBase = server.base("/v1/forecast");
    o.requestTimeoutMs = 400;
    o.resourceTimeoutMs = 1200;
    o.recogniser = [](std::string_view) { return std::vector<LanguageHypothesis>{}; };
    o.clock = [] { return kFirst + 4600; };
    return o;
}

template <typename T>
WeatherResult<T> await(const std::function<std::shared_ptr<FetchHandle>(std::function<void(WeatherResult<T>)>)>& start) {
    std::optional<WeatherResult<T>> out;
    auto handle = start([&](WeatherResult<T> r) { out = std::move(r); });
    EXPECT_TRUE(testing::spinUntil([&] { return out.has_value(); }, 10000));
    if (!out) return WeatherError::cancelled();
    return std::move(*out);
}

WeatherResult<WeatherReport> fetch(OpenMeteoClient& client, const WeatherLocation& place) {
    return await<WeatherReport>([&](auto done) { return client.forecast(place, std::move(done)); });
}

WeatherResult<std::vector<WeatherLocation>> find(OpenMeteoClient& client, const std::string& q,
                                                 const std::string& lang = "en") {
    return await<std::vector<WeatherLocation>>([&](auto done) { return client.search(q, lang, std::move(done)); });
}

TEST(OpenMeteoClient, SendsTheDocumentedForecastRequestAndDecodesTheAnswer) {
    LocalHttpServer server([](const HttpRequest& r) {
        if (r.path() != "/v1/forecast") return HttpResponse{HttpResponse::Kind::normal, 404, "{}"};
        return HttpResponse{HttpResponse::Kind::normal, 200, samples::forecastJson(kFirst).dump()};
    });
    OpenMeteoClient client(optionsFor(server));
    auto result = fetch(client, paris());
    ASSERT_FALSE(errorOf(result)) << errorOf(result)->message();
    const auto& report = std::get<WeatherReport>(result);
    EXPECT_EQ(report.location.timezone, "Europe/Paris");
    EXPECT_EQ(report.fetchedAt, kFirst + 4600);
    EXPECT_EQ(report.hourly.size(), 37u);

    ASSERT_EQ(server.requests().size(), 1u);
    const HttpRequest& sent = server.requests()[0];
    EXPECT_EQ(sent.method, "GET");
    EXPECT_EQ(server.base("") + sent.target, forecastURL(server.base("/v1/forecast"), paris()));
    EXPECT_EQ(sent.query("timezone"), "auto");
    EXPECT_EQ(sent.query("latitude"), "48.8534");
    EXPECT_EQ(sent.headers.at("user-agent"), "Trotlet/" + std::string(build::version) + " (Linux tray app)");
    EXPECT_EQ(sent.headers.count("cookie"), 0u);
}

TEST(OpenMeteoClient, FaultsBecomeTheirWeatherErrors) {
    struct Case {
        const char* name;
        HttpResponse response;
        WeatherError expected;
    };
    const std::string whole = samples::forecastJson(kFirst).dump();
    const Case cases[] = {
        {"503", {HttpResponse::Kind::normal, 503, "Service Unavailable"}, WeatherError::server(503)},
        {"404", {HttpResponse::Kind::normal, 404, "{\"reason\":\"nope\"}"}, WeatherError::server(404)},
        {"200 with garbage", {HttpResponse::Kind::normal, 200, "<html>hello</html>"}, WeatherError::badResponse()},
        {"200 with half a JSON", {HttpResponse::Kind::normal, 200, whole.substr(0, whole.size() / 2)},
         WeatherError::badResponse()},
        {"body cut short by the connection", {HttpResponse::Kind::truncate, 200, whole.substr(0, 300)},
         WeatherError::offline()},
        {"dropped connection", {HttpResponse::Kind::drop, 200, ""}, WeatherError::offline()},
        {"no answer past the time-out", {HttpResponse::Kind::hang, 200, ""}, WeatherError::offline()},
        {"answer slower than the time-out", {HttpResponse::Kind::normal, 200, whole, 900}, WeatherError::offline()},
        {"trickle past the overall time-out", {HttpResponse::Kind::trickle, 200, ""}, WeatherError::offline()},
    };
    for (const auto& c : cases) {
        LocalHttpServer server([&](const HttpRequest&) { return c.response; });
        OpenMeteoClient client(optionsFor(server));
        QElapsedTimer clock;
        clock.start();
        auto result = fetch(client, paris());
        ASSERT_TRUE(errorOf(result)) << c.name;
        EXPECT_EQ(*errorOf(result), c.expected) << c.name << ": got " << errorOf(result)->name();
        EXPECT_LT(clock.elapsed(), 3000) << c.name;
        if (c.response.kind == HttpResponse::Kind::trickle) {
            EXPECT_GE(clock.elapsed(), 1100) << c.name;  // the idle time-out never fired
        }
    }
    EXPECT_EQ(WeatherError::server(503).message(), "Open-Meteo is unavailable (503)");
}

TEST(OpenMeteoClient, RefusedPortIsOffline) {
    quint16 port;
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        port = probe.serverPort();
    }
    OpenMeteoClientOptions o;
    o.forecastBase = "http://127.0.0.1:" + std::to_string(port) + "/v1/forecast";
    o.geocodingBase = "http://127.0.0.1:" + std::to_string(port) + "/v1/search";
    OpenMeteoClient client(o);
    auto result = fetch(client, paris());
    ASSERT_TRUE(errorOf(result));
    EXPECT_EQ(*errorOf(result), WeatherError::offline());
    auto search = find(client, "Paris");
    ASSERT_TRUE(errorOf(search));
    EXPECT_EQ(errorOf(search)->message(), "You're offline");
}

TEST(OpenMeteoClient, CancellingDeliversCancelledOnce) {
    LocalHttpServer server([](const HttpRequest&) { return HttpResponse{HttpResponse::Kind::hang}; });
    OpenMeteoClient client(optionsFor(server));
    int calls = 0;
    std::optional<WeatherError> error;
    auto handle = client.forecast(paris(), [&](WeatherResult<WeatherReport> r) {
        ++calls;
        if (auto* e = errorOf(r)) error = *e;
    });
    testing::spinUntil([&] { return !server.requests().empty(); });
    handle->cancel();
    handle->cancel();
    testing::spinFor(100);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(error, WeatherError::cancelled());
}

TEST(OpenMeteoClient, ClassificationTable) {
    using E = QNetworkReply::NetworkError;
    struct Case {
        E error;
        std::optional<int> status;
        bool cancelled, timedOut;
        std::optional<WeatherError> expected;
    } cases[] = {
        {E::NoError, 200, false, false, std::nullopt},
        {E::NoError, 204, false, false, std::nullopt},
        {E::NoError, 302, false, false, WeatherError::server(302)},
        {E::ServiceUnavailableError, 503, false, false, WeatherError::server(503)},
        {E::ContentNotFoundError, 404, false, false, WeatherError::server(404)},
        {E::OperationCanceledError, std::nullopt, true, false, WeatherError::cancelled()},
        {E::OperationCanceledError, std::nullopt, false, true, WeatherError::offline()},
        {E::OperationCanceledError, std::nullopt, false, false, WeatherError::cancelled()},
        {E::HostNotFoundError, std::nullopt, false, false, WeatherError::offline()},
        {E::ConnectionRefusedError, std::nullopt, false, false, WeatherError::offline()},
        {E::RemoteHostClosedError, std::nullopt, false, false, WeatherError::offline()},
        {E::TimeoutError, std::nullopt, false, false, WeatherError::offline()},
        {E::SslHandshakeFailedError, std::nullopt, false, false, WeatherError::offline()},
        {E::ProxyConnectionRefusedError, std::nullopt, false, false, WeatherError::offline()},
        {E::ProxyAuthenticationRequiredError, std::nullopt, false, false, WeatherError::offline()},
        {E::UnknownNetworkError, std::nullopt, false, false, WeatherError::offline()},
        {E::ProtocolFailure, std::nullopt, false, false, WeatherError::badResponse()},
        {E::ProtocolUnknownError, std::nullopt, false, false, WeatherError::badResponse()},
        {E::UnknownContentError, std::nullopt, false, false, WeatherError::badResponse()},
        {E::NoError, std::nullopt, false, false, WeatherError::badResponse()},
    };
    for (const auto& c : cases)
        EXPECT_EQ(classifyReply(c.error, c.status, c.cancelled, c.timedOut), c.expected) << static_cast<int>(c.error);
    // Cut off at the size limit: an answer came, so not offline, unless its status says more.
    EXPECT_EQ(classifyReply(E::OperationCanceledError, 200, false, false, true), WeatherError::badResponse());
    EXPECT_EQ(classifyReply(E::OperationCanceledError, 503, false, false, true), WeatherError::server(503));
}

TEST(OpenMeteoClient, SearchSendsOneRequestPerLanguageAndMergesThem) {
    LocalHttpServer server([](const HttpRequest& r) {
        const std::string lang = r.query("language");
        if (lang == "fr") return HttpResponse{HttpResponse::Kind::normal, 503, "busy"};
        if (lang == "vi")
            return HttpResponse{HttpResponse::Kind::normal, 200,
                                R"({"results":[{"id":1581130,"name":"Hà Nội","latitude":21.0245,"longitude":105.84117,
                                "country_code":"VN","country":"Việt Nam","population":7785000,"timezone":"Asia/Bangkok"}]})"};
        return HttpResponse{HttpResponse::Kind::normal, 200,
                            R"({"results":[{"id":99,"name":"Hanoi","latitude":40.1,"longitude":-80.1,"country_code":"US",
                            "country":"United States","admin1":"Ohio","population":120},
                            {"id":1581130,"name":"Hanoi","latitude":21.0245,"longitude":105.84117,"country_code":"VN",
                            "country":"Vietnam","population":7785000,"timezone":"Asia/Bangkok"}]})"};
    });
    auto options = optionsFor(server);
    options.recogniser = [](std::string_view) {
        return std::vector<LanguageHypothesis>{{"vi", 1.0}, {"fr", 0.5}};
    };
    OpenMeteoClient client(options);
    auto result = find(client, "  Hà Nội ");
    ASSERT_FALSE(errorOf(result));
    const auto& places = std::get<0>(result);
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[0].id, 1581130);  // the big city first, whichever answer named it
    EXPECT_EQ(places[0].name, "Hanoi");
    EXPECT_EQ(places[1].id, 99);
    ASSERT_EQ(server.requests().size(), 3u);  // en, vi, fr (fr failed and was ignored)
    std::set<std::string> languages;
    for (const auto& r : server.requests()) {
        languages.insert(r.query("language"));
        EXPECT_EQ(r.query("name"), "Hà Nội");
        EXPECT_EQ(r.query("count"), "8");
        EXPECT_EQ(r.query("format"), "json");
    }
    EXPECT_EQ(languages, (std::set<std::string>{"en", "vi", "fr"}));
}

TEST(OpenMeteoClient, SearchFailsOnlyWithTheFirstRequestsFailure) {
    LocalHttpServer server([](const HttpRequest& r) {
        if (r.query("language") == "en") return HttpResponse{HttpResponse::Kind::normal, 200, "not json"};
        return HttpResponse{HttpResponse::Kind::normal, 200, samples::geocodingParis()};
    });
    auto options = optionsFor(server);
    options.recogniser = [](std::string_view) { return std::vector<LanguageHypothesis>{{"fr", 0.9}}; };
    OpenMeteoClient client(options);
    auto result = find(client, "Paris");
    ASSERT_TRUE(errorOf(result));
    EXPECT_EQ(*errorOf(result), WeatherError::badResponse());
}

TEST(OpenMeteoClient, ShortQueriesSendNothingAndNoResultsIsEmpty) {
    LocalHttpServer server([](const HttpRequest&) {
        return HttpResponse{HttpResponse::Kind::normal, 200, R"({"generationtime_ms":0.2})"};
    });
    OpenMeteoClient client(optionsFor(server));
    auto one = find(client, " a ");
    ASSERT_FALSE(errorOf(one));
    EXPECT_TRUE(std::get<0>(one).empty());
    EXPECT_TRUE(server.requests().empty());
    auto two = find(client, "ab");
    ASSERT_FALSE(errorOf(two));
    EXPECT_TRUE(std::get<0>(two).empty());
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].query("name"), "ab");
}

TEST(OpenMeteoClient, HanQueriesAlsoAskForTheCity) {
    LocalHttpServer server([](const HttpRequest& r) {
        if (r.query("name") == "北京市" && r.query("language") == "zh")
            return HttpResponse{HttpResponse::Kind::normal, 200,
                                R"({"results":[{"id":1816670,"name":"北京市","latitude":39.9075,"longitude":116.39723,
                                "country_code":"CN","country":"中国","population":18960744,"timezone":"Asia/Shanghai"}]})"};
        if (r.query("language") == "en" && r.query("name") == "北京")
            return HttpResponse{HttpResponse::Kind::normal, 200,
                                R"({"results":[{"id":1816670,"name":"Beijing","latitude":39.9075,"longitude":116.39723,
                                "country_code":"CN","country":"China","population":18960744,"timezone":"Asia/Shanghai"},
                                {"id":7,"name":"Beijing Village","latitude":30,"longitude":110,"country_code":"CN",
                                "country":"China","population":300}]})"};
        return HttpResponse{HttpResponse::Kind::normal, 200, "{}"};
    });
    OpenMeteoClient client(optionsFor(server));
    auto result = find(client, "北京");
    ASSERT_FALSE(errorOf(result));
    const auto& places = std::get<0>(result);
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[0].name, "北京市");  // shown in the script the user typed
    EXPECT_EQ(server.requests().size(), 6u);
}

}  // namespace
}  // namespace trotlet::weather
