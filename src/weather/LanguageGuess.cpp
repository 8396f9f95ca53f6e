#include "weather/LanguageGuess.h"

#include <algorithm>

#include "weather/UnicodeText.h"

namespace trotlet::weather {

namespace {

struct LetterRule {
    char32_t first;
    char32_t last;
    const char* code;
    double probability;
};

// Checked in this order; the first rule a letter matches is that letter's vote.
constexpr LetterRule kRules[] = {
    // Scripts that belong to one language in practice.
    {0x3040, 0x30FF, "ja", 1.0},   // Hiragana, Katakana
    {0x31F0, 0x31FF, "ja", 1.0},   // Katakana phonetic extensions
    {0xFF66, 0xFF9F, "ja", 1.0},   // half-width Katakana
    {0xAC00, 0xD7AF, "ko", 1.0},   // Hangul syllables
    {0x1100, 0x11FF, "ko", 1.0},   // Hangul jamo
    {0x3130, 0x318F, "ko", 1.0},   // Hangul compatibility jamo
    {0x0404, 0x0404, "uk", 1.0},   // Є
    {0x0406, 0x0407, "uk", 1.0},   // І Ї
    {0x0454, 0x0454, "uk", 1.0},   // є
    {0x0456, 0x0457, "uk", 1.0},   // і ї
    {0x0490, 0x0491, "uk", 1.0},   // Ґ ґ
    {0x0400, 0x04FF, "ru", 1.0},   // other Cyrillic
    {0x0370, 0x03FF, "el", 1.0},   // Greek
    {0x05D0, 0x05EA, "he", 1.0},   // Hebrew
    {0x067E, 0x067E, "fa", 1.0},   // پ
    {0x0686, 0x0686, "fa", 1.0},   // چ
    {0x06AF, 0x06AF, "fa", 1.0},   // گ
    {0x06CC, 0x06CC, "fa", 1.0},   // ی
    {0x0600, 0x06FF, "ar", 1.0},   // other Arabic
    {0x0E00, 0x0E7F, "th", 1.0},   // Thai
    {0x0900, 0x097F, "hi", 1.0},   // Devanagari
    {0x10A0, 0x10FF, "ka", 1.0},   // Georgian
    {0x0530, 0x058F, "hy", 1.0},   // Armenian
    // Latin letters particular to one language.
    {0x0102, 0x0103, "vi", 1.0},   // Ă ă
    {0x0110, 0x0111, "vi", 1.0},   // Đ đ
    {0x01A0, 0x01A1, "vi", 1.0},   // Ơ ơ
    {0x01AF, 0x01B0, "vi", 1.0},   // Ư ư
    {0x1EA0, 0x1EF9, "vi", 1.0},   // Vietnamese letters with tone marks (ạ ộ ữ ...)
    {0x00DF, 0x00DF, "de", 1.0},   // ß
    {0x1E9E, 0x1E9E, "de", 1.0},   // ẞ
    {0x00D1, 0x00D1, "es", 1.0},   // Ñ
    {0x00F1, 0x00F1, "es", 1.0},   // ñ
    {0x00C3, 0x00C3, "pt", 1.0},   // Ã
    {0x00E3, 0x00E3, "pt", 1.0},   // ã
    {0x00D5, 0x00D5, "pt", 1.0},   // Õ
    {0x00F5, 0x00F5, "pt", 1.0},   // õ
    {0x0141, 0x0142, "pl", 1.0},   // Ł ł
    {0x0104, 0x0105, "pl", 1.0},   // Ą ą
    {0x0118, 0x0119, "pl", 1.0},   // Ę ę
    {0x015A, 0x015B, "pl", 1.0},   // Ś ś
    {0x0179, 0x017C, "pl", 1.0},   // Ź ź Ż ż
    {0x0158, 0x0159, "cs", 1.0},   // Ř ř
    {0x011A, 0x011B, "cs", 1.0},   // Ě ě
    {0x016E, 0x016F, "cs", 1.0},   // Ů ů
    {0x0150, 0x0151, "hu", 1.0},   // Ő ő
    {0x0170, 0x0171, "hu", 1.0},   // Ű ű
    {0x0130, 0x0131, "tr", 1.0},   // İ ı
    {0x011E, 0x011F, "tr", 1.0},   // Ğ ğ
    {0x015E, 0x015F, "tr", 1.0},   // Ş ş
    {0x00C6, 0x00C6, "da", 0.5},   // Æ
    {0x00E6, 0x00E6, "da", 0.5},   // æ
    {0x00D8, 0x00D8, "da", 0.5},   // Ø
    {0x00F8, 0x00F8, "da", 0.5},   // ø
    {0x00C5, 0x00C5, "sv", 0.5},   // Å
    {0x00E5, 0x00E5, "sv", 0.5},   // å
    {0x00C4, 0x00C4, "de", 0.5},   // Ä (also Finnish, Swedish)
    {0x00E4, 0x00E4, "de", 0.5},   // ä
    {0x00D6, 0x00D6, "de", 0.5},   // Ö
    {0x00F6, 0x00F6, "de", 0.5},   // ö
    {0x00DC, 0x00DC, "de", 0.5},   // Ü
    {0x00FC, 0x00FC, "de", 0.5},   // ü
    {0x00C7, 0x00C7, "fr", 0.5},   // Ç (also Portuguese, Turkish)
    {0x00E7, 0x00E7, "fr", 0.5},   // ç
    {0x0152, 0x0153, "fr", 0.5},   // Œ œ
};

std::string normalizedCode(std::string_view code) {
    std::string c(code.substr(0, 2));
    for (char& ch : c)
        if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch + 32);
    return c;
}

bool undetermined(std::string_view code) {
    return code.empty() || code == "un" || code == "und" || code == "xx" || code == "zz" ||
           code.size() < 2;
}

}  // namespace

std::vector<LanguageHypothesis> letterTableHypotheses(std::string_view query) {
    std::vector<LanguageHypothesis> votes;
    for (char32_t c : unicode::decode(query)) {
        for (const auto& rule : kRules) {
            if (c < rule.first || c > rule.last) continue;
            auto it = std::find_if(votes.begin(), votes.end(),
                                   [&](const auto& v) { return v.code == rule.code; });
            if (it == votes.end())
                votes.push_back({rule.code, rule.probability});
            else
                it->probability = std::max(it->probability, rule.probability);
            break;
        }
    }
    // A letter particular to a language settles it against its script's usual owner:
    // Ukrainian і ї є ґ over Russian, Persian پ چ گ ی over Arabic.
    auto has = [&](std::string_view code) {
        return std::any_of(votes.begin(), votes.end(), [&](const auto& v) { return v.code == code; });
    };
    if (has("uk")) std::erase_if(votes, [](const auto& v) { return v.code == "ru"; });
    if (has("fa")) std::erase_if(votes, [](const auto& v) { return v.code == "ar"; });
    // Firm votes before weak ones; among equals, the letter seen first.
    std::stable_sort(votes.begin(), votes.end(),
                     [](const auto& a, const auto& b) { return a.probability > b.probability; });
    return votes;
}

std::vector<LanguageHypothesis> mergeHypotheses(const std::vector<LanguageHypothesis>& table,
                                                const std::vector<LanguageHypothesis>& recognised) {
    std::vector<LanguageHypothesis> out;
    auto add = [&](const LanguageHypothesis& h) {
        if (undetermined(h.code)) return;
        std::string code = normalizedCode(h.code);
        for (const auto& seen : out)
            if (seen.code == code) return;
        out.push_back({code, h.probability});
    };
    for (const auto& h : table) add(h);
    for (const auto& h : recognised) add(h);
    return out;
}

}  // namespace trotlet::weather
