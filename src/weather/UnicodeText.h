#pragma once

#include <string>
#include <string_view>
#include <vector>

// Small UTF-8 helpers for the place search: enough Unicode to trim, count, classify scripts
// and compare names without a Unicode library in the core.
namespace trotlet::weather::unicode {

// Malformed bytes decode as U+FFFD, so bad input never stops the search.
std::vector<char32_t> decode(std::string_view utf8);
std::string encode(const std::vector<char32_t>& scalars);
void append(std::string& out, char32_t scalar);

bool isWhitespace(char32_t c);
bool isCombiningMark(char32_t c);
bool isKana(char32_t c);
// Han ideographs, including the ideographic iteration and closing marks U+3005-U+3007.
bool isHan(char32_t c);
bool isLatinLetter(char32_t c);

// Trims white space and line breaks (ASCII, no-break and ideographic spaces) at both ends.
std::string trimmed(std::string_view utf8);
// User-perceived length, close enough for a 2-character minimum: scalars without combining marks.
size_t characterCount(std::string_view utf8);
// Lowercase for Latin, Greek and Cyrillic letters; other scalars unchanged.
std::string lowercased(std::string_view utf8);

}  // namespace trotlet::weather::unicode
