#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

// Parsing JSON that comes from outside (files, answers, settings strings). nlohmann's parser
// takes any depth, but copying, comparing and printing a value recurse once per level, so a
// file nested 100,000 levels deep would overflow the stack long after it was read. No document
// of ours nests more than a handful of levels; one that nests deeper than this is not read.
namespace trotlet::json {

inline constexpr int kMaxNesting = 128;

// Whether the arrays and objects of `text` nest deeper than `limit` (brackets inside strings
// do not count). Exact for any text that parses.
constexpr bool nestsDeeperThan(std::string_view text, int limit = kMaxNesting) {
    int depth = 0;
    bool inString = false, escaped = false;
    for (const char c : text) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit) return true;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

// The parsed value, or a discarded one for text that is not JSON or nests too deep. Never throws.
template <typename Json = nlohmann::json>
Json parseBounded(std::string_view text) {
    if (nestsDeeperThan(text)) return Json(Json::value_t::discarded);
    return Json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
}

}  // namespace trotlet::json
