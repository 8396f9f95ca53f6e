#include "weather/qt/LanguageRecogniser.h"

// CLD2's public header uses size_t and friends without including what declares them.
#include <cstdio>
#include <cstddef>

#include <cld2/public/compact_lang_det.h>

namespace trotlet::weather {

std::vector<LanguageHypothesis> recogniseLanguages(std::string_view text) {
    std::vector<LanguageHypothesis> recognised;
    if (!text.empty()) {
        CLD2::Language languages[3];
        int percents[3] = {0, 0, 0};
        int textBytes = 0;
        bool reliable = false;
        CLD2::ExtDetectLanguageSummary(text.data(), static_cast<int>(text.size()), true, languages,
                                       percents, &textBytes, &reliable);
        // An unreliable verdict on a few letters is noise ("Paris" reads as anything), and a
        // wrong extra language only costs a request, so only reliable verdicts count.
        if (reliable) {
            for (int i = 0; i < 3; ++i) {
                if (languages[i] == CLD2::UNKNOWN_LANGUAGE || languages[i] == CLD2::TG_UNKNOWN_LANGUAGE ||
                    percents[i] <= 0)
                    continue;
                recognised.push_back({CLD2::LanguageCode(languages[i]), percents[i] / 100.0});
            }
        }
    }
    return mergeHypotheses(letterTableHypotheses(text), recognised);
}

}  // namespace trotlet::weather
