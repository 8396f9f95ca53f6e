#include "updates/ReleaseNotes.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "ReleaseNotesData.h"

namespace trotlet::updates {

namespace {

bool isDate(const std::string& s) {
    if (s.size() != 10 || s[4] != '-' || s[7] != '-') return false;
    for (size_t i : {0, 1, 2, 3, 5, 6, 8, 9})
        if (s[i] < '0' || s[i] > '9') return false;
    const int month = (s[5] - '0') * 10 + (s[6] - '0');
    const int day = (s[8] - '0') * 10 + (s[9] - '0');
    return month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

}  // namespace

ReleaseNotesDecode decodeReleaseNotes(std::string_view json) {
    ReleaseNotesDecode out;
    const auto doc = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
    if (!doc.is_array()) {
        out.problems.push_back("the release notes are not a JSON array");
        return out;
    }
    std::optional<Version> previous;
    for (size_t i = 0; i < doc.size(); ++i) {
        const auto& entry = doc[i];
        const std::string where = "entry " + std::to_string(i);
        ReleaseNote note;
        if (!entry.is_object() || !entry.contains("version") || !entry["version"].is_string()) {
            out.problems.push_back(where + " has no version");
            continue;
        }
        note.version = entry["version"].get<std::string>();
        const auto version = Version::parse(note.version);
        if (!version) out.problems.push_back(where + ": \"" + note.version + "\" is no version");
        if (version && previous && !(*version < *previous))
            out.problems.push_back(where + ": " + note.version +
                                   " is not older than the entry before");
        if (version) previous = version;
        if (entry.contains("date") && entry["date"].is_string())
            note.date = entry["date"].get<std::string>();
        if (!isDate(note.date))
            out.problems.push_back(note.version + ": the date is not yyyy-MM-dd");
        if (entry.contains("notes") && entry["notes"].is_array()) {
            for (const auto& line : entry["notes"]) {
                if (!line.is_string() || line.get<std::string>().empty()) {
                    out.problems.push_back(note.version + ": a note line is not a text");
                    continue;
                }
                note.lines.push_back(line.get<std::string>());
                if (note.lines.back().size() > maxNoteLineLength)
                    out.problems.push_back(note.version + ": a note line is longer than " +
                                           std::to_string(maxNoteLineLength) + " bytes");
            }
        }
        if (note.lines.empty() || note.lines.size() > 5)
            out.problems.push_back(note.version + ": wants one to five note lines");
        out.notes.push_back(std::move(note));
    }
    return out;
}

const std::vector<ReleaseNote>& bundledReleaseNotes() {
    static const std::vector<ReleaseNote> notes = decodeReleaseNotes(bundledReleaseNotesJson).notes;
    return notes;
}

std::vector<std::string> bundledReleaseNotesProblems(std::string_view currentVersion) {
    auto problems = decodeReleaseNotes(bundledReleaseNotesJson).problems;
    const auto& notes = bundledReleaseNotes();
    const auto current = Version::parse(currentVersion);
    const bool present = current && std::any_of(notes.begin(), notes.end(), [&](const auto& n) {
                             auto v = Version::parse(n.version);
                             return v && *v == *current;
                         });
    if (!present)
        problems.push_back("no release notes for this version (" + std::string(currentVersion) +
                           ")");
    return problems;
}

std::vector<ReleaseNote> notesBetween(const std::vector<ReleaseNote>& notes,
                                      const std::optional<Version>& after, const Version& upTo) {
    std::vector<std::pair<Version, const ReleaseNote*>> picked;
    for (const auto& note : notes) {
        auto v = Version::parse(note.version);
        if (!v || *v > upTo || (after && !(*v > *after))) continue;
        picked.emplace_back(*v, &note);
    }
    std::stable_sort(picked.begin(), picked.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<ReleaseNote> out;
    for (const auto& [v, note] : picked) out.push_back(*note);
    return out;
}

}  // namespace trotlet::updates
