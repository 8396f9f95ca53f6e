#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "weather/LanguageGuess.h"
#include "weather/WeatherError.h"
#include "weather/WeatherLocation.h"

namespace trotlet::weather {

// The pure half of the place search: what to ask, in which languages, and how to turn the
// answers into one list. The client runs the requests; everything here is testable offline.

enum class QueryScript {
    latin,  // Latin letters (digits and punctuation aside)
    han,    // Han ideographs without Kana: Chinese, or Japanese written in kanji
    kana,   // contains Hiragana or Katakana: Japanese
    other,  // anything else, including mixed scripts
};

QueryScript classifyScript(std::string_view query);
inline bool isHanOrKana(QueryScript s) { return s == QueryScript::han || s == QueryScript::kana; }

// Fewer than two characters are never sent: the service only answers exact matches there.
inline constexpr size_t kMinimumQueryLength = 2;

struct SearchHit {
    WeatherLocation place;
    std::optional<std::int64_t> population;
};

// One geocoding answer. A missing "results" means no match (an empty list); anything that
// is not the documented shape is nothing (the caller reports badResponse).
std::optional<std::vector<SearchHit>> decodeSearchHits(std::string_view body);

// The languages to ask in, first one first: the caller's language (so the first request is
// always in the user's language), then up to two recognised languages (the second only when
// at least 0.25 likely), then "zh" and "ja" for Han, "ja" for Kana. No duplicates.
std::vector<std::string> queryLanguages(const std::string& callerLanguage,
                                        const std::vector<LanguageHypothesis>& recognised,
                                        QueryScript script);

// The query forms: the query itself, and for Han/Kana without a place suffix
// (市都府県省区區縣州) the query with "市" appended, so that a bare city name finds the city.
std::vector<std::string> queryForms(const std::string& query, QueryScript script);

struct SearchRequest {
    std::string query;
    std::string language;
    bool operator==(const SearchRequest&) const = default;
};

// Every request of one search, in order: each language with the plain form, then each
// language with the "市" form. Empty when the trimmed query is shorter than two characters.
std::vector<SearchRequest> planSearch(std::string_view rawQuery, const std::string& callerLanguage,
                                      const std::vector<LanguageHypothesis>& recognised);

// The hits of one request, tagged with the language it was asked in.
struct SearchAnswer {
    std::string language;
    WeatherResult<std::vector<SearchHit>> result;
};

// Stable ranking: with `byPopulation`, the larger population first when two differ (an
// unknown population counts as 0); otherwise, and among equals, gathered order.
std::vector<SearchHit> ranked(std::vector<SearchHit> hits, bool byPopulation);

// Drops a hit whose id was seen, or whose lowercased "name|region|country" was seen.
std::vector<SearchHit> deduplicated(const std::vector<SearchHit>& hits);

// For a Han/Kana query, a place that came back with a Latin name in one language and a
// Han/Kana name in another is shown with the latter, so the list speaks the script the user
// typed. A Kana query prefers the Japanese answer's name; otherwise the native name closest
// to the query wins (the same characters, then a name containing them; "東京" over "东京"
// for a query typed as 東京), and among equals the earliest answer.
std::vector<SearchHit> withReadings(const std::vector<SearchAnswer>& answers, const std::string& query,
                                    QueryScript script);

// Joins the answers: the first request's failure is the search's failure; the others'
// failures are ignored so one language's error cannot hide another's matches.
WeatherResult<std::vector<WeatherLocation>> combineAnswers(const std::vector<SearchAnswer>& answers,
                                                           const std::string& query, QueryScript script,
                                                           bool byPopulation);

}  // namespace trotlet::weather
