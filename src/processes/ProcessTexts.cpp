#include "processes/ProcessTexts.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "mascot/ProcessDisplayName.h"
#include "menubar/Format.h"

namespace trotlet::processes::ProcessTexts {

using menubar::Format;

std::string columnTitle(ProcessColumn column) {
    static constexpr std::array<const char*, 5> titles = {"Name", "CPU", "Memory", "Threads",
                                                          "User"};
    return titles[std::size_t(column)];
}

std::string sortDescription(const ProcessSort& sort) {
    const bool text = sort.column == ProcessColumn::name || sort.column == ProcessColumn::user;
    const char* order = text ? (sort.descending ? "Z to A" : "A to Z")
                             : (sort.descending ? "highest first" : "lowest first");
    return "Sorted by " + columnTitle(sort.column) + ", " + order;
}

std::string cpu(double percent) {
    const double p = std::isfinite(percent) ? std::max(percent, 0.0) : 0.0;
    return Format::fixed(p < 99.95 ? 1 : 0, p) + "%";
}

std::string memory(std::uint64_t bytes) { return Format::bytes(double(bytes)); }

std::string threads(const std::optional<std::int64_t>& threads) {
    return threads ? std::to_string(*threads) : "–";
}

std::string user(const std::optional<std::string>& user) { return user ? *user : "–"; }

std::optional<Status> status(const QuitFlow* flow, bool ended) {
    // A process that ended at the user's request says so, whatever else ended it.
    if (!flow || flow->stage() == QuitStage::idle || (ended && flow->stage() != QuitStage::ended))
        return ended ? std::optional(Status{"Ended", Tone::quiet}) : std::nullopt;
    switch (flow->stage()) {
        case QuitStage::quitting:
            return Status{"Quitting…", Tone::quiet};
        case QuitStage::notResponding:
        case QuitStage::confirmingForce:
            return Status{"Not responding", Tone::warning};
        case QuitStage::forceQuitting:
            return Status{"Force quitting…", Tone::quiet};
        case QuitStage::ended:
            return Status{"Quit", Tone::quiet};
        case QuitStage::failed:
            switch (flow->problem()) {
                case QuitProblem::permissionDenied:
                    return Status{"Permission denied", Tone::error};
                case QuitProblem::alreadyGone:
                case QuitProblem::replaced:
                    return Status{"Already gone", Tone::error};
                default:
                    return Status{"Couldn't quit", Tone::error};
            }
        default:
            return std::nullopt;
    }
}

Action action(QuitBlock block, const QuitFlow* flow, bool ended) {
    using Button = Action::Button;
    if (ended && !(flow && flow->stage() == QuitStage::ended))
        return {Button::none, {}, true, "It has ended.", Tone::quiet, false};
    if (block != QuitBlock::none)
        return {Button::none, {}, true, std::string(quitBlockText(block)), Tone::quiet, true};
    switch (flow ? flow->stage() : QuitStage::idle) {
        case QuitStage::idle:
            return {Button::quit, "Quit", true, {}, Tone::quiet, false};
        case QuitStage::quitting:
            return {Button::quit, "Quit", false, "Asked to quit…", Tone::quiet, false};
        case QuitStage::notResponding:
        case QuitStage::confirmingForce:
            return {Button::forceQuit, "Force Quit…", true, "Not responding after 5 seconds",
                    Tone::warning,     false};
        case QuitStage::forceQuitting:
            return {Button::none, {}, true, "Force quitting…", Tone::quiet, false};
        case QuitStage::ended:
            return {Button::none, {}, true, "It has quit.", Tone::quiet, false};
        case QuitStage::failed:
            return {Button::tryAgain, "Try Again", true, problemSentence(flow->problem()),
                    Tone::error,      false};
    }
    return {};
}

std::string problemSentence(QuitProblem problem) {
    switch (problem) {
        case QuitProblem::none:
            return {};
        case QuitProblem::alreadyGone:
            return "It had already ended.";
        case QuitProblem::replaced:
            return "It had already ended, and its PID now belongs to another process, which was "
                   "left alone.";
        case QuitProblem::permissionDenied:
            return "The system refused the signal: permission denied.";
        case QuitProblem::failed:
            return "The signal could not be sent.";
    }
    return {};
}

std::string started(metrics::Timestamp start, metrics::Timestamp now, int utcOffsetSec) {
    using namespace std::chrono;
    static constexpr std::array<const char*, 12> months = {
        "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto offset = seconds(utcOffsetSec);
    const auto localStart = floor<seconds>(start) + offset;
    const auto startDay = floor<days>(localStart);
    const auto today = floor<days>(floor<seconds>(now) + offset);
    const hh_mm_ss clock(localStart - startDay);
    const year_month_day date(sys_days(startDay.time_since_epoch()));
    const year_month_day todayDate(sys_days(today.time_since_epoch()));
    char text[48];
    if (startDay == today || startDay == today - days(1)) {
        std::snprintf(text, sizeof text, "%s at %02d:%02d",
                      startDay == today ? "Today" : "Yesterday", int(clock.hours().count()),
                      int(clock.minutes().count()));
    } else if (date.year() == todayDate.year()) {
        std::snprintf(text, sizeof text, "%u %s at %02d:%02d", unsigned(date.day()),
                      months[unsigned(date.month()) - 1], int(clock.hours().count()),
                      int(clock.minutes().count()));
    } else {
        std::snprintf(text, sizeof text, "%u %s %d at %02d:%02d", unsigned(date.day()),
                      months[unsigned(date.month()) - 1], int(date.year()),
                      int(clock.hours().count()), int(clock.minutes().count()));
    }
    std::string out = text;
    const double ago = duration<double>(now - start).count();
    out += " · ";
    if (ago < 60) {
        out += "just now";
    } else {
        out += Format::duration(ago);
        out += " ago";
    }
    return out;
}

std::vector<DetailLine> details(const metrics::ProcessRow& row,
                                const std::optional<ProcessDetails>& more, metrics::Timestamp now,
                                int utcOffsetSec) {
    std::vector<DetailLine> lines;
    if (row.executablePath) lines.push_back({"Path", *row.executablePath});
    if (more && more->commandLine && !more->commandLine->empty())
        lines.push_back({"Command", *more->commandLine});
    if (more && more->startTime)
        lines.push_back({"Started", started(*more->startTime, now, utcOffsetSec)});
    lines.push_back({"User", user(row.user) + " · PID " + std::to_string(row.pid)});
    return lines;
}

std::string forceQuitTitle(std::string_view name) {
    return "Force quit “" + std::string(name) + "”?";
}

std::string forceQuitBody(std::string_view name) {
    return "“" + std::string(name) +
           "” hasn't quit after 5 seconds. Force quitting ends it at once; anything it hasn't "
           "saved is lost.";
}

std::string accessibleRow(const metrics::ProcessRow& row, const std::optional<Status>& state) {
    std::string text = mascot::ProcessDisplayName::of(row).text() + ", CPU " + cpu(row.cpuPercent) +
                       ", memory " + memory(row.memoryBytes);
    if (row.threads) text += ", " + std::to_string(*row.threads) + " threads";
    if (row.user) text += ", user " + *row.user;
    if (state) text += ", " + state->text;
    return text;
}

std::string searchPlaceholder(std::size_t total) {
    return total == 0
               ? std::string("Search processes")
               : "Search " + std::to_string(total) + (total == 1 ? " process" : " processes");
}

std::string matchCount(std::size_t shown, std::size_t total, std::string_view query) {
    if (query.empty()) return {};
    return std::to_string(shown) + " of " + std::to_string(total);
}

std::string emptyList(bool haveSample, std::string_view query) {
    if (!haveSample) return "Reading the process table…";
    if (query.empty()) return "No processes to show.";
    return "No process matches “" + std::string(query) + "”.";
}

}  // namespace trotlet::processes::ProcessTexts
