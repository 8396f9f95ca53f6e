#include "weather/PlaceSearch.h"

#include <algorithm>
#include <set>

#include "json/ParseBounded.h"
#include "weather/JsonFields.h"
#include "weather/UnicodeText.h"

namespace trotlet::weather {

QueryScript classifyScript(std::string_view query) {
    bool kana = false, han = false, latin = false, otherLetter = false;
    for (char32_t c : unicode::decode(query)) {
        if (unicode::isKana(c)) {
            kana = true;
        } else if (unicode::isHan(c)) {
            han = true;
        } else if (unicode::isLatinLetter(c)) {
            latin = true;
        } else if (c >= 0x80 && !unicode::isWhitespace(c) && !unicode::isCombiningMark(c) &&
                   !(c >= 0x2000 && c <= 0x206F) && !(c >= 0x3000 && c <= 0x303F) &&
                   !(c >= 0xFF00 && c <= 0xFF65)) {
            otherLetter = true;
        }
    }
    if (kana) return QueryScript::kana;
    if (han && !otherLetter) return QueryScript::han;
    if (latin && !otherLetter && !han) return QueryScript::latin;
    return QueryScript::other;
}

std::optional<std::vector<SearchHit>> decodeSearchHits(std::string_view body) {
    auto j = trotlet::json::parseBounded(body);
    if (j.is_discarded() || !j.is_object()) return std::nullopt;
    std::vector<SearchHit> hits;
    const nlohmann::json* results = json::field(j, "results");
    if (!results) return hits;
    if (!results->is_array()) return std::nullopt;
    for (const auto& r : *results) {
        auto id = json::integer(r, "id");
        auto name = json::string(r, "name");
        auto lat = json::number(r, "latitude");
        auto lon = json::number(r, "longitude");
        if (!id || !name || !lat || !lon) return std::nullopt;
        SearchHit hit;
        hit.place.id = *id;
        hit.place.name = *name;
        hit.place.latitude = *lat;
        hit.place.longitude = *lon;
        hit.place.region = json::string(r, "admin1");
        hit.place.country = json::string(r, "country");
        hit.place.countryCode = json::string(r, "country_code");
        hit.place.timezone = json::string(r, "timezone").value_or("");
        hit.population = json::integer(r, "population");
        hits.push_back(std::move(hit));
    }
    return hits;
}

std::vector<std::string> queryLanguages(const std::string& callerLanguage,
                                        const std::vector<LanguageHypothesis>& recognised,
                                        QueryScript script) {
    std::vector<std::string> out;
    auto add = [&](std::string code) {
        code = code.substr(0, 2);
        if (code.size() < 2 || code == "un") return;
        if (std::find(out.begin(), out.end(), code) == out.end()) out.push_back(code);
    };
    add(callerLanguage.empty() ? "en" : callerLanguage);
    int taken = 0;
    for (const auto& h : recognised) {
        if (taken == 2) break;
        if (h.code.empty() || h.code.substr(0, 2) == "un") continue;
        if (taken == 1 && h.probability < 0.25) break;
        add(h.code);
        ++taken;
    }
    if (script == QueryScript::han) {
        add("zh");
        add("ja");
    } else if (script == QueryScript::kana) {
        add("ja");
    }
    return out;
}

std::vector<std::string> queryForms(const std::string& query, QueryScript script) {
    std::vector<std::string> forms{query};
    if (!isHanOrKana(script)) return forms;
    static const std::u32string suffixes = U"市都府県省区區縣州";
    for (char32_t c : unicode::decode(query))
        if (suffixes.find(c) != std::u32string::npos) return forms;
    forms.push_back(query + "\xE5\xB8\x82");  // 市
    return forms;
}

std::vector<SearchRequest> planSearch(std::string_view rawQuery, const std::string& callerLanguage,
                                      const std::vector<LanguageHypothesis>& recognised) {
    std::string query = unicode::trimmed(rawQuery);
    if (unicode::characterCount(query) < kMinimumQueryLength) return {};
    QueryScript script = classifyScript(query);
    std::vector<SearchRequest> plan;
    for (const auto& form : queryForms(query, script))
        for (const auto& language : queryLanguages(callerLanguage, recognised, script))
            plan.push_back({form, language});
    return plan;
}

std::vector<SearchHit> ranked(std::vector<SearchHit> hits, bool byPopulation) {
    if (!byPopulation) return hits;
    std::stable_sort(hits.begin(), hits.end(), [](const SearchHit& a, const SearchHit& b) {
        return a.population.value_or(0) > b.population.value_or(0);
    });
    return hits;
}

std::vector<SearchHit> deduplicated(const std::vector<SearchHit>& hits) {
    std::set<std::int64_t> ids;
    std::set<std::string> keys;
    std::vector<SearchHit> out;
    for (const auto& h : hits) {
        std::string key = unicode::lowercased(h.place.name + "|" + h.place.region.value_or("") + "|" +
                                              h.place.country.value_or(""));
        bool seen = ids.count(h.place.id) > 0 || keys.count(key) > 0;
        ids.insert(h.place.id);
        keys.insert(key);
        if (!seen) out.push_back(h);
    }
    return out;
}

namespace {

bool hasHanOrKana(const std::string& text) {
    for (char32_t c : unicode::decode(text))
        if (unicode::isHan(c) || unicode::isKana(c)) return true;
    return false;
}

}  // namespace

std::vector<SearchHit> withReadings(const std::vector<SearchAnswer>& answers, const std::string& query,
                                    QueryScript script) {
    std::vector<SearchHit> gathered;
    for (const auto& a : answers)
        if (auto* hits = std::get_if<std::vector<SearchHit>>(&a.result))
            gathered.insert(gathered.end(), hits->begin(), hits->end());
    if (!isHanOrKana(script)) return gathered;

    const auto typed = unicode::decode(query);
    auto closeness = [&](const std::string& name, const std::string& language) {
        if (script == QueryScript::kana && language == "ja") return 4;
        if (name == query) return 3;
        if (name.find(query) != std::string::npos) return 2;
        for (char32_t c : unicode::decode(name))
            if (std::find(typed.begin(), typed.end(), c) != typed.end()) return 1;
        return 0;
    };
    // The native-script name of a place id, the closest to what was typed.
    auto readingFor = [&](std::int64_t id) -> std::optional<std::string> {
        std::optional<std::string> best;
        int bestScore = -1;
        for (const auto& a : answers) {
            auto* hits = std::get_if<std::vector<SearchHit>>(&a.result);
            if (!hits) continue;
            for (const auto& h : *hits) {
                if (h.place.id != id || !hasHanOrKana(h.place.name)) continue;
                int score = closeness(h.place.name, a.language);
                if (score > bestScore) {
                    best = h.place.name;
                    bestScore = score;
                }
            }
        }
        return best;
    };
    for (auto& h : gathered) {
        if (h.place.id == 0) continue;
        if (auto reading = readingFor(h.place.id)) h.place.name = *reading;
    }
    return gathered;
}

WeatherResult<std::vector<WeatherLocation>> combineAnswers(const std::vector<SearchAnswer>& answers,
                                                           const std::string& query, QueryScript script,
                                                           bool byPopulation) {
    if (answers.empty()) return std::vector<WeatherLocation>{};
    if (auto* error = std::get_if<WeatherError>(&answers.front().result)) return *error;
    std::vector<WeatherLocation> out;
    for (const auto& h : deduplicated(ranked(withReadings(answers, query, script), byPopulation)))
        out.push_back(h.place);
    return out;
}

}  // namespace trotlet::weather
