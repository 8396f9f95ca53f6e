#pragma once

#include "panel/DetailContent.h"

namespace trotlet::panel {

// The two details that do not read the sample: the forecast the weather store holds, and the
// Paw Report's reading as its card gives it (its own screen lives in reports/).
void weatherDetail(DetailContent& content, const DetailInputs& in);
void pawDetail(DetailContent& content, const DetailInputs& in);

// The place's clock for a Unix time: "07:12".
std::string placeClock(weather::UnixTime time, int utcOffsetSeconds);
// "Mon" … "Sun" for a day given as the place's local midnight.
std::string weekdayName(weather::UnixTime localMidnight);

}  // namespace trotlet::panel
