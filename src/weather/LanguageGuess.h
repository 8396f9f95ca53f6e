#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trotlet::weather {

struct LanguageHypothesis {
    std::string code;  // two letters, e.g. "vi"
    double probability = 0;
    bool operator==(const LanguageHypothesis&) const = default;
};

// Languages told by letters and scripts alone. The statistical recogniser answers "unknown"
// for most short names ("Hà Nội", "Москва"), yet one letter often settles it: ư, ơ, đ or a
// Vietnamese tone letter is Vietnamese, ß is German, Hangul is Korean, Kana is Japanese.
// Letters shared by several languages (ä, ö, ü, ç, å) give a weaker hypothesis (0.5).
// Most certain first; empty when nothing tells.
std::vector<LanguageHypothesis> letterTableHypotheses(std::string_view query);

// Joins the letter table's hypotheses with the recogniser's (the table first: a letter is
// firmer evidence than statistics over a few characters). Drops undetermined codes ("un",
// "und", "xx", empty), cuts codes to two letters and keeps the first of each code.
std::vector<LanguageHypothesis> mergeHypotheses(const std::vector<LanguageHypothesis>& table,
                                                const std::vector<LanguageHypothesis>& recognised);

}  // namespace trotlet::weather
