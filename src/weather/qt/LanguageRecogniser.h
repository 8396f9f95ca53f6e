#pragma once

#include <string_view>
#include <vector>

#include "weather/LanguageGuess.h"

namespace trotlet::weather {

// The language hypotheses for a search text: the letter and script table first, then the
// statistical recogniser (CLD2) with its percentages as probabilities. CLD2 answers
// "unknown" for most short names, which is why the table comes first.
std::vector<LanguageHypothesis> recogniseLanguages(std::string_view text);

}  // namespace trotlet::weather
