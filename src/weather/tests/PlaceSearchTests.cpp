#include <gtest/gtest.h>

#include "weather/LanguageGuess.h"
#include "weather/PlaceSearch.h"
#include "weather/UnicodeText.h"
#include "weather/tests/OpenMeteoSamples.h"

namespace trotlet::weather {
namespace {

SearchHit hit(std::int64_t id, std::string name, std::optional<std::int64_t> population,
              std::optional<std::string> region = std::nullopt,
              std::optional<std::string> country = std::nullopt) {
    SearchHit h;
    h.place.id = id;
    h.place.name = std::move(name);
    h.place.region = std::move(region);
    h.place.country = std::move(country);
    h.population = population;
    return h;
}

std::vector<std::string> names(const std::vector<WeatherLocation>& places) {
    std::vector<std::string> out;
    for (const auto& p : places) out.push_back(p.name);
    return out;
}

TEST(UnicodeText, TrimCountAndLowercase) {
    EXPECT_EQ(unicode::trimmed("\t Paris \n"), "Paris");
    EXPECT_EQ(unicode::trimmed("\xE3\x80\x80東京\xC2\xA0"), "東京");  // ideographic and no-break spaces
    EXPECT_EQ(unicode::characterCount("a"), 1u);
    EXPECT_EQ(unicode::characterCount("Hà Nội"), 6u);
    EXPECT_EQ(unicode::characterCount("e\xCC\x81"), 1u);  // e + combining acute
    EXPECT_EQ(unicode::characterCount("東"), 1u);
    EXPECT_EQ(unicode::lowercased("ÎLE-DE-FRANCE|МОСКВА|ĐÀ"), "île-de-france|москва|đà");
    // Malformed UTF-8 never throws and never loses the valid part.
    EXPECT_EQ(unicode::encode(unicode::decode("ab\xE3\x80")), "ab\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(PlaceSearch, ScriptClasses) {
    struct Case {
        const char* query;
        QueryScript script;
    } cases[] = {
        {"Paris", QueryScript::latin},      {"Hà Nội", QueryScript::latin},
        {"St. Louis 2", QueryScript::latin}, {"東京", QueryScript::han},
        {"北京", QueryScript::han},         {"佐々木", QueryScript::han},  // 々 counts as Han
        {"とうきょう", QueryScript::kana},  {"東京タワー", QueryScript::kana},
        {"Москва", QueryScript::other},     {"서울", QueryScript::other},
    };
    for (const auto& c : cases) EXPECT_EQ(classifyScript(c.query), c.script) << c.query;
}

TEST(PlaceSearch, LetterTableNamesLanguagesTheRecogniserMisses) {
    struct Case {
        const char* query;
        const char* first;
    } cases[] = {{"Hà Nội", "vi"}, {"Đà Nẵng", "vi"}, {"Straße", "de"}, {"Москва", "ru"},
                 {"Київ", "uk"},   {"서울", "ko"},    {"とうきょう", "ja"}, {"Łódź", "pl"},
                 {"İstanbul", "tr"}, {"Αθήνα", "el"}};
    for (const auto& c : cases) {
        auto h = letterTableHypotheses(c.query);
        ASSERT_FALSE(h.empty()) << c.query;
        EXPECT_EQ(h.front().code, c.first) << c.query;
    }
    EXPECT_TRUE(letterTableHypotheses("Paris").empty());
    // A firm letter outranks a shared one seen earlier.
    auto mixed = letterTableHypotheses("Müßen");
    ASSERT_EQ(mixed.size(), 1u);
    EXPECT_DOUBLE_EQ(mixed[0].probability, 1.0);
    auto merged = mergeHypotheses({{"vi", 1.0}}, {{"un", 0.9}, {"VI", 0.4}, {"fr", 0.3}, {"zh-Hant", 0.2}});
    EXPECT_EQ(merged, (std::vector<LanguageHypothesis>{{"vi", 1.0}, {"fr", 0.3}, {"zh", 0.2}}));
}

TEST(PlaceSearch, QueryLanguages) {
    EXPECT_EQ(queryLanguages("en", {}, QueryScript::latin), (std::vector<std::string>{"en"}));
    EXPECT_EQ(queryLanguages("en", {{"vi", 1.0}}, QueryScript::latin),
              (std::vector<std::string>{"en", "vi"}));
    // The second hypothesis needs 0.25; a third is never taken.
    EXPECT_EQ(queryLanguages("en", {{"fr", 0.7}, {"de", 0.24}}, QueryScript::latin),
              (std::vector<std::string>{"en", "fr"}));
    EXPECT_EQ(queryLanguages("en", {{"fr", 0.5}, {"de", 0.3}, {"it", 0.2}}, QueryScript::latin),
              (std::vector<std::string>{"en", "fr", "de"}));
    EXPECT_EQ(queryLanguages("en", {{"ja", 1.0}}, QueryScript::kana), (std::vector<std::string>{"en", "ja"}));
    EXPECT_EQ(queryLanguages("ja", {}, QueryScript::han), (std::vector<std::string>{"ja", "zh"}));
    EXPECT_EQ(queryLanguages("", {}, QueryScript::han), (std::vector<std::string>{"en", "zh", "ja"}));
}

TEST(PlaceSearch, PlanSendsNothingBelowTwoCharactersAndAddsTheCitySuffix) {
    EXPECT_TRUE(planSearch("a", "en", {}).empty());
    EXPECT_TRUE(planSearch("  b \n", "en", {}).empty());
    EXPECT_TRUE(planSearch("東", "en", {}).empty());
    EXPECT_EQ(planSearch(" ab ", "en", {}), (std::vector<SearchRequest>{{"ab", "en"}}));
    EXPECT_EQ(planSearch("北京", "en", {}),
              (std::vector<SearchRequest>{{"北京", "en"}, {"北京", "zh"}, {"北京", "ja"},
                                          {"北京市", "en"}, {"北京市", "zh"}, {"北京市", "ja"}}));
    // A name that already ends in a place suffix is sent as typed only.
    EXPECT_EQ(planSearch("大阪府", "ja", {}),
              (std::vector<SearchRequest>{{"大阪府", "ja"}, {"大阪府", "zh"}}));
}

TEST(PlaceSearch, DecodesGeocodingAnswers) {
    auto hits = decodeSearchHits(samples::geocodingParis());
    ASSERT_TRUE(hits);
    ASSERT_EQ(hits->size(), 3u);
    const auto& p = (*hits)[0];
    EXPECT_EQ(p.place.id, 2988507);
    EXPECT_EQ(p.place.region, "Île-de-France");
    EXPECT_EQ(p.place.countryCode, "FR");
    EXPECT_EQ(p.place.timezone, "Europe/Paris");
    EXPECT_EQ(p.population, 2138551);
    EXPECT_FALSE((*hits)[2].population);
    // No "results": no match, not an error.
    auto none = decodeSearchHits(R"({"generationtime_ms":0.3})");
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->empty());
    for (std::string bad : {"", "garbage", "[]", R"({"results":{}})", R"({"results":[{"id":1}]})",
                            R"({"results":[{"id":"1","name":"X","latitude":1,"longitude":2}]})"})
        EXPECT_FALSE(decodeSearchHits(bad)) << bad;
}

TEST(PlaceSearch, RankingIsStableAndPopulationFirst) {
    std::vector<SearchHit> hits = {hit(1, "Village", 800), hit(2, "City", 8000000), hit(3, "Town", std::nullopt),
                                   hit(4, "Hamlet", 800)};
    auto byPop = ranked(hits, true);
    EXPECT_EQ(byPop[0].place.id, 2);
    EXPECT_EQ(byPop[1].place.id, 1);  // equal populations keep gathered order
    EXPECT_EQ(byPop[2].place.id, 4);
    EXPECT_EQ(byPop[3].place.id, 3);
    auto kept = ranked(hits, false);
    EXPECT_EQ(kept[0].place.id, 1);
}

TEST(PlaceSearch, DeduplicatesByIdAndByNameRegionCountry) {
    std::vector<SearchHit> hits = {hit(1, "Paris", 2, "Île-de-France", "France"),
                                   hit(1, "Parigi", 2, "Île-de-France", "Francia"),
                                   hit(7, "PARIS", 2, "ÎLE-DE-FRANCE", "FRANCE"),
                                   hit(8, "Paris", 2, std::nullopt, "France"),
                                   hit(9, "Paris", 2, std::nullopt, "France")};
    auto out = deduplicated(hits);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0].place.id, 1);
    EXPECT_EQ(out[1].place.id, 8);
}

TEST(PlaceSearch, OnlyTheFirstRequestsFailureCounts) {
    std::vector<SearchAnswer> answers = {
        {"en", std::vector<SearchHit>{hit(1, "Paris", 20000)}},
        {"fr", WeatherError::offline()},
        {"de", std::vector<SearchHit>{hit(2, "Paris", 2000000, "Île-de-France", "Frankreich"),
                                      hit(1, "Paris", 20000)}},
    };
    auto ok = combineAnswers(answers, "Paris", QueryScript::latin, true);
    ASSERT_FALSE(errorOf(ok));
    EXPECT_EQ(std::get<0>(ok).size(), 2u);
    EXPECT_EQ(std::get<0>(ok)[0].id, 2);  // 2 million before 20 000

    std::swap(answers[0], answers[1]);
    auto failed = combineAnswers(answers, "Paris", QueryScript::latin, true);
    ASSERT_TRUE(errorOf(failed));
    EXPECT_EQ(*errorOf(failed), WeatherError::offline());
    EXPECT_TRUE(names(std::get<0>(combineAnswers({}, "Paris", QueryScript::latin, true))).empty());
}

TEST(PlaceSearch, HanAndKanaQueriesShowNativeNames) {
    std::vector<SearchAnswer> answers = {
        {"en", std::vector<SearchHit>{hit(1850147, "Tokyo", 8336599)}},
        {"zh", std::vector<SearchHit>{hit(1850147, "东京", 8336599)}},
        {"ja", std::vector<SearchHit>{hit(1850147, "東京", 8336599), hit(5, "Tōkyō-mura", 10)}},
    };
    // The name written the way the user typed it wins, whichever answer brought it.
    auto traditional = combineAnswers(answers, "東京", QueryScript::han, true);
    EXPECT_EQ(names(std::get<0>(traditional)), (std::vector<std::string>{"東京", "Tōkyō-mura"}));
    auto simplified = combineAnswers(answers, "东京", QueryScript::han, true);
    EXPECT_EQ(names(std::get<0>(simplified)), (std::vector<std::string>{"东京", "Tōkyō-mura"}));
    auto kana = combineAnswers(answers, "とうきょう", QueryScript::kana, true);
    EXPECT_EQ(names(std::get<0>(kana)), (std::vector<std::string>{"東京", "Tōkyō-mura"}));
    // Latin queries keep the names as asked.
    auto latin = combineAnswers(answers, "Tokyo", QueryScript::latin, true);
    EXPECT_EQ(names(std::get<0>(latin)), (std::vector<std::string>{"Tokyo", "Tōkyō-mura"}));
}

}  // namespace
}  // namespace trotlet::weather
