#include "alerts/AlertTexts.h"

#include "menubar/Format.h"
#include "settings/Platform.h"
#include "settings/RawEnum.h"

namespace trotlet::alerts::texts {

using menubar::Format;

namespace {

const std::string& orFallback(const std::string& mascotName) {
    static const std::string fallback = fallbackMascotName;
    return mascotName.empty() ? fallback : mascotName;
}

bool endsSentence(const std::string& text) {
    if (text.empty()) return false;
    const char last = text.back();
    return last == '.' || last == '!' || last == '?';
}

}  // namespace

std::string highTemperatureTitle(const std::string& mascotName) {
    return orFallback(mascotName) + " is overheating";
}

std::string highTemperatureBody(std::optional<double> hottestC, metrics::ThermalState state,
                                menubar::TemperatureUnit unit) {
    const std::string advice = " Maybe close something heavy?";
    if (hottestC) {
        const Format::Parts t = Format::temperatureParts(*hottestC, unit);
        return "It's " + t.value + t.unit + " in here." + advice;
    }
    return "The system reports a " +
           std::string(settings::rawName(state, metrics::ThermalStateNames)) + " thermal state." +
           advice;
}

std::string batteryLowTitle(std::int64_t percent) {
    return "Battery low: " + std::to_string(percent) + "%";
}

std::string batteryLowBody(const std::string& mascotName, std::optional<std::int64_t> minutesLeft) {
    std::string body = orFallback(mascotName) + " is running on fumes";
    if (minutesLeft) body += ", about " + Format::duration(double(*minutesLeft) * 60) + " left";
    return body + ". Time to find a charger.";
}

std::string batteryFullTitle() { return "Fully charged"; }

std::string batteryFullBody() { return "Battery is at 100%. You can unplug whenever you like."; }

std::string memoryCriticalTitle() { return "Memory pressure is critical"; }

std::string memoryCriticalBody() {
    return "Your " + std::string(settings::machineNoun) +
           " is swapping hard. Quitting an app or two will help.";
}

std::string diskAlmostFullTitle(const std::string& volumeName) {
    return volumeName + " is almost full";
}

std::string diskAlmostFullBody(std::int64_t availableBytes) {
    return Format::bytes(double(availableBytes)) + " free. Time for a little spring cleaning.";
}

std::string highCPUTitle(const std::string& mascotName) {
    return orFallback(mascotName) + " has the zoomies.";
}

std::string highCPUBody(double total, std::int64_t minutesHeld,
                        const std::optional<std::string>& busiestProcess) {
    std::string body =
        "CPU at " + Format::percent(total) + " for " + std::to_string(minutesHeld) + " min.";
    if (busiestProcess) body += " " + *busiestProcess + " is the busiest.";
    return body;
}

std::string achievementTitle(const AchievementUnlocked& event) {
    return "Achievement unlocked: " + event.title;
}

std::string achievementBody(const AchievementUnlocked& event) {
    // The detail is the achievement's goal, written as a label ("Open the panel 10 times"),
    // so it gets a full stop before the reward sentence.
    std::string body = event.detail.empty() ? std::string("Nicely done.") : event.detail;
    if (!endsSentence(body)) body += '.';
    return body + " You earned " + std::to_string(event.fishReward) + " Fish.";
}

std::string purchaseTitle(const MascotPurchased& event) {
    return "Welcome home, " + event.mascotName + "!";
}

std::string purchaseBody() { return "Your new friend is ready to run in the menu bar."; }

std::string checkInReminderTitle() { return "Your daily Fish are waiting"; }

std::string checkInReminderBody(const CheckInReminder& event) {
    const std::string name = event.mascotName.empty() ? fallbackMascotName : event.mascotName;
    const std::string fish = std::to_string(event.reward) + " Fish";
    const std::string prize =
        event.streakDay > 1
            ? fish + " and day " + std::to_string(event.streakDay) + " of your streak"
            : fish + " to start a streak";
    return name + " kept today's check-in warm: " + prize + ". Open Trotlet to collect.";
}

}  // namespace trotlet::alerts::texts
