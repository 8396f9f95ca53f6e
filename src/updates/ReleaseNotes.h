#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "updates/Version.h"

namespace trotlet::updates {

// One version's notes as a user reads them: a few short lines, newest release first.
struct ReleaseNote {
    std::string version;
    std::string date;  // "yyyy-MM-dd"
    std::vector<std::string> lines;
};

struct ReleaseNotesDecode {
    std::vector<ReleaseNote> notes;
    std::vector<std::string> problems;  // empty when every entry is well-formed
};

// Decodes a JSON array of {"version", "date", "notes": [...]}. Entries are returned in the
// order given; every fault is reported, so the self-check can list them all.
ReleaseNotesDecode decodeReleaseNotes(std::string_view json);

// The notes built into this binary (data/release-notes.json).
const std::vector<ReleaseNote>& bundledReleaseNotes();
// The bundled file's faults, and whether `currentVersion` has an entry; empty when all is well.
std::vector<std::string> bundledReleaseNotesProblems(std::string_view currentVersion);

// The entries newer than `after` (all of them when it is absent) and no newer than `upTo`,
// newest first.
std::vector<ReleaseNote> notesBetween(const std::vector<ReleaseNote>& notes,
                                      const std::optional<Version>& after, const Version& upTo);

// Longest line a note may have: with the "  * " in front it fits the package changelog's 80
// columns, and it fits the panel's banner in two lines.
inline constexpr size_t maxNoteLineLength = 76;

}  // namespace trotlet::updates
