#pragma once

#include <array>
#include <string_view>

namespace trotlet::mascot {

// What the mascot is doing, in priority-free case order (the state machine decides priority).
enum class MascotMood { panic, overheated, lowBattery, offline, sleeping, sitting, celebrating, running };
inline constexpr std::array<std::string_view, 8> MascotMoodNames = {
    "panic", "overheated", "lowBattery", "offline", "sleeping", "sitting", "celebrating", "running"};

// Moods drawn with a run loop: the legs keep going and the stride phase carries over between them.
constexpr bool isRunMood(MascotMood mood) {
    return mood != MascotMood::sleeping && mood != MascotMood::sitting &&
           mood != MascotMood::celebrating;
}

}  // namespace trotlet::mascot
