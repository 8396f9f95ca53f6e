#pragma once

#include <string>
#include <vector>

namespace trotlet::snapshot {

// The pictures `--weather-polish <dir>` adds to its table: for each place it polishes (a few
// places chosen for their zones and skies: the computer's own zone, a night on the other side
// of the world, fog, snow in the evening, a polar day), the weather card and the header with
// its sky, in light and dark at scale 2, through the scenes' renderer. Needs the application
// object (SnapshotRunner prepares it). Returns the files written, or an empty list and
// `error` when the folder cannot be written.
struct PolishPicture {
    std::string place;
    std::string file;
};
std::vector<PolishPicture> writeWeatherPolishPictures(const std::string& dir, std::string& error);

}  // namespace trotlet::snapshot
