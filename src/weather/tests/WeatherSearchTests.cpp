#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLocale>

#include "weather/qt/WeatherFormat.h"
#include "weather/qt/WeatherSearch.h"
#include "weather/tests/LocalHttpServer.h"
#include "weather/tests/ScriptedFetcher.h"

namespace trotlet::weather {
namespace {

using testing::ScriptedFetcher;

WeatherLocation place(std::int64_t id, std::string name) { return {id, std::move(name), {}, {}, {}, 1.0, 2.0, ""}; }

constexpr int kDebounce = 60;

TEST(WeatherSearch, OneLetterSendsNothingTwoAreSentAfterTheDebounce) {
    ScriptedFetcher fetcher;
    WeatherSearch search(&fetcher, "en", kDebounce);
    search.setQuery("a");
    testing::spinFor(kDebounce * 3);
    EXPECT_TRUE(fetcher.searches.empty());
    EXPECT_EQ(search.state(), WeatherSearch::State::idle);

    QElapsedTimer clock;
    clock.start();
    search.setQuery(" ab ");
    EXPECT_EQ(search.state(), WeatherSearch::State::loading);
    ASSERT_TRUE(testing::spinUntil([&] { return !fetcher.searches.empty(); }));
    EXPECT_GE(clock.elapsed(), kDebounce - 5);
    EXPECT_EQ(fetcher.searches[0]->query, "ab");
    EXPECT_EQ(fetcher.searches[0]->language, "en");
    EXPECT_EQ(search.state(), WeatherSearch::State::searching);
    fetcher.answerSearch(0, std::vector<WeatherLocation>{});
    EXPECT_EQ(search.state(), WeatherSearch::State::empty);
    EXPECT_TRUE(search.resultsAreCurrent());
}

TEST(WeatherSearch, TypingQuicklySendsOneRequestForTheLastText) {
    ScriptedFetcher fetcher;
    // A generous debounce so a loaded machine still types "quickly" next to it.
    const int debounce = 400;
    WeatherSearch search(&fetcher, "fr", debounce);
    for (const char* text : {"Par", "Pari", "Paris"}) {
        search.setQuery(text);
        testing::spinFor(20);
    }
    ASSERT_TRUE(testing::spinUntil([&] { return !fetcher.searches.empty(); }));
    testing::spinFor(debounce);
    ASSERT_EQ(fetcher.searches.size(), 1u);
    EXPECT_EQ(fetcher.searches[0]->query, "Paris");
    fetcher.answerSearch(0, std::vector<WeatherLocation>{place(1, "Paris"), place(2, "Paris TX")});
    EXPECT_EQ(search.state(), WeatherSearch::State::results);
    EXPECT_EQ(search.resultsQuery(), "Paris");
    search.setQuery("Paris ");  // same trimmed text: still current
    EXPECT_TRUE(search.resultsAreCurrent());
    search.setQuery("Paris,");
    EXPECT_FALSE(search.resultsAreCurrent());  // stale at once
    EXPECT_EQ(search.results().size(), 2u);    // kept, dimmed by the UI
}

TEST(WeatherSearch, AStaleAnswerNeverLands) {
    ScriptedFetcher fetcher;
    WeatherSearch search(&fetcher, "en", kDebounce);
    search.setQuery("Lond");
    ASSERT_TRUE(testing::spinUntil([&] { return !fetcher.searches.empty(); }));
    search.setQuery("Londo");
    EXPECT_TRUE(fetcher.searches[0]->cancelled);
    fetcher.answerSearch(0, std::vector<WeatherLocation>{place(1, "Londrina")});
    EXPECT_TRUE(search.results().empty());
    ASSERT_TRUE(testing::spinUntil([&] { return fetcher.searches.size() == 2; }));
    fetcher.answerSearch(1, WeatherError::offline());
    EXPECT_EQ(search.state(), WeatherSearch::State::failed);
    EXPECT_EQ(search.error()->message(), "You're offline");
}

TEST(WeatherSearch, ResolvePicksTheHighlightedRowOrSearchesAfresh) {
    ScriptedFetcher fetcher;
    WeatherSearch search(&fetcher, "en", kDebounce);
    search.setQuery("Toky");
    ASSERT_TRUE(testing::spinUntil([&] { return fetcher.searches.size() == 1; }));
    fetcher.answerSearch(0, std::vector<WeatherLocation>{place(1, "Tokyo"), place(2, "Tokyo Station")});

    std::optional<WeatherLocation> chosen;
    bool answered = false;
    auto capture = [&](std::optional<WeatherLocation> p) {
        answered = true;
        chosen = std::move(p);
    };
    search.resolve(1, capture);  // current list: the highlighted row, not the first
    ASSERT_TRUE(answered);
    EXPECT_EQ(chosen->id, 2);
    answered = false;
    search.resolve(5, capture);
    EXPECT_TRUE(answered);
    EXPECT_FALSE(chosen);

    // Return right after typing "Tokyo" over the list for "Toky": a fresh search decides.
    search.setQuery("Tokyo");
    answered = false;
    search.resolve(1, capture);
    EXPECT_FALSE(answered);
    auto fresh = std::find_if(fetcher.searches.begin(), fetcher.searches.end(),
                              [](const auto& c) { return c->query == "Tokyo" && !c->finished; });
    ASSERT_NE(fresh, fetcher.searches.end());
    (*fresh)->finished = true;
    (*fresh)->done(std::vector<WeatherLocation>{place(3, "Tōkyō"), place(1, "Tokyo")});
    ASSERT_TRUE(answered);
    EXPECT_EQ(chosen->id, 3);

    // Still typing while the fresh search runs: no answer to choose.
    search.setQuery("Tokyo T");
    answered = false;
    search.resolve(0, capture);
    const size_t n = fetcher.searches.size();
    search.setQuery("Tokyo To");
    fetcher.answerSearch(n - 1, std::vector<WeatherLocation>{place(4, "Tokyo Tower")});
    ASSERT_TRUE(answered);
    EXPECT_FALSE(chosen);

    // One letter: nothing.
    search.setQuery("T");
    answered = false;
    search.resolve(0, capture);
    ASSERT_TRUE(answered);
    EXPECT_FALSE(chosen);
}

TEST(WeatherSearch, ClearEmptiesEverything) {
    ScriptedFetcher fetcher;
    WeatherSearch search(&fetcher, "en", kDebounce);
    search.setQuery("Oslo");
    search.clear();
    testing::spinFor(kDebounce * 2);
    EXPECT_TRUE(fetcher.searches.empty());
    EXPECT_EQ(search.query(), "");
    EXPECT_EQ(search.state(), WeatherSearch::State::idle);
}

TEST(WeatherSearch, PreferredLanguageFromTheEnvironment) {
    // The test runs with LC_ALL=C.UTF-8; without LANGUAGE the fallback is English.
    ::unsetenv("LANGUAGE");
    EXPECT_EQ(WeatherSearch::preferredLanguage(), "en");
}

TEST(WeatherFormat, TimesInThePlacesZoneWithACachedFormatter) {
    const UnixTime t = 1795824000;  // 2026-11-28 00:00 UTC
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale de(QLocale::German, QLocale::Germany);
    EXPECT_EQ(WeatherFormat::string(t, "jmm", "Asia/Tokyo", 0, de), "09:00");
    EXPECT_EQ(WeatherFormat::string(t, "jmm", "Asia/Tokyo", 0, us), "9:00 AM");
    EXPECT_EQ(WeatherFormat::string(t, "j", "America/New_York", 0, de), "19");
    EXPECT_EQ(WeatherFormat::string(t, "EEE", "America/New_York", 0, us), "Fri");
    EXPECT_EQ(WeatherFormat::string(t, "EEE", "Asia/Tokyo", 0, us), "Sat");
    EXPECT_EQ(WeatherFormat::string(t, "MMMd", "Asia/Tokyo", 0, us), "Nov 28");
    EXPECT_EQ(WeatherFormat::string(t, "MMMd", "Asia/Tokyo", 0, de), "28 Nov.");
    // Unknown or pending zones fall back to the answer's fixed offset.
    EXPECT_EQ(WeatherFormat::string(t, "jmm", "auto", 5 * 3600 + 1800, de), "05:30");
    EXPECT_EQ(WeatherFormat::string(t, "jmm", "Not/AZone", -3600, de), "23:00");
    const size_t before = WeatherFormat::cachedFormatters();
    WeatherFormat::string(t + 60, "jmm", "Asia/Tokyo", 0, de);
    EXPECT_EQ(WeatherFormat::cachedFormatters(), before);
}

}  // namespace
}  // namespace trotlet::weather
