#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "processes/ProcessControl.h"
#include "processes/ProcessSort.h"
#include "processes/QuitFlow.h"
#include "processes/QuitRules.h"

namespace trotlet::processes {

// What the Processes list says, as text: every string a row, its details and the Force Quit
// question show.
namespace ProcessTexts {

// "Name", "CPU", "Memory", "Threads", "User".
std::string columnTitle(ProcessColumn column);
// "Sorted by CPU, highest first", for the header's description.
std::string sortDescription(const ProcessSort& sort);

// "18.5%" below one core's worth, "742%" above: one core is 100%, as `top` counts.
std::string cpu(double percent);
std::string memory(std::uint64_t bytes);
std::string threads(const std::optional<std::int64_t>& threads);  // "–" when unknown
std::string user(const std::optional<std::string>& user);

// A row's state in words, shown beside its name; none for a row at rest.
enum class Tone { quiet, warning, error };
struct Status {
    std::string text;
    Tone tone = Tone::quiet;
    bool operator==(const Status&) const = default;
};
std::optional<Status> status(const QuitFlow* flow, bool ended);
// The action line of a row's details: a button, a note beside it, or why there is none.
struct Action {
    enum class Button { none, quit, tryAgain, forceQuit };
    Button button = Button::none;
    std::string buttonText;
    bool enabled = true;
    std::string note;
    Tone tone = Tone::quiet;
    bool locked = false;  // the note says why the process cannot be quit
    bool operator==(const Action&) const = default;
};
// `ended`: the process has gone from the list while it was held in place.
Action action(QuitBlock block, const QuitFlow* flow, bool ended = false);

// The longer sentence the details give for a problem.
std::string problemSentence(QuitProblem problem);

// "Today at 09:12 · 5h 18m ago", "Yesterday at 23:40 · …", "12 Sep at 08:01 · …". The offset
// is the local time zone's distance from UTC at `now`, in seconds.
std::string started(metrics::Timestamp start, metrics::Timestamp now, int utcOffsetSec);

struct DetailLine {
    std::string label;
    std::string value;
    bool operator==(const DetailLine&) const = default;
};
// Path, command line, start time and owner; lines with nothing to say are left out.
std::vector<DetailLine> details(const metrics::ProcessRow& row,
                                const std::optional<ProcessDetails>& more, metrics::Timestamp now,
                                int utcOffsetSec);

std::string forceQuitTitle(std::string_view name);
std::string forceQuitBody(std::string_view name);

// "firefox, CPU 18.5%, memory 1.23 GB, 92 threads, user alice" and its state, for screen
// readers.
std::string accessibleRow(const metrics::ProcessRow& row, const std::optional<Status>& state);

std::string searchPlaceholder(std::size_t total);
// "17 of 312" while a search narrows the list; empty otherwise.
std::string matchCount(std::size_t shown, std::size_t total, std::string_view query);
// What an empty list says: still reading, or nothing matches the query.
std::string emptyList(bool haveSample, std::string_view query);

}  // namespace ProcessTexts

}  // namespace trotlet::processes
