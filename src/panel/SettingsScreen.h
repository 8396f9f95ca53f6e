#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/DefaultsStore.h"
#include "weather/WeatherLocation.h"

namespace trotlet::settings {
class AppSettings;
}
namespace trotlet::metrics {
struct MetricsSnapshot;
}
namespace trotlet::layout {
class LayoutStore;
}

namespace trotlet::panel {

// The Settings tab's sections, in the order the index lists them.
enum class SettingsSection { general, menuBar, mascot, monitoring, notifications, weather, about };
inline constexpr std::array<std::string_view, 7> SettingsSectionNames = {
    "general", "menuBar", "mascot", "monitoring", "notifications", "weather", "about"};

struct SectionLook {
    std::string title;
    std::string symbol;  // icon name
    std::string color;   // accent colour name
};
SectionLook sectionLook(SettingsSection section);

// The global shortcut as the desktop took it.
enum class ShortcutStatus { off, pending, active, unavailable };

// What the screen shows besides the settings themselves: the live app's answers (the shortcut
// backend, the login entry, the last test notification), the Overview's cards and the app's
// own facts. The application layer fills it; scenes and tests set it by hand.
struct SettingsFacts {
    std::string mascotName = "Mochi";
    // The stored combination in words ("Super+Alt+P"); empty when the stored key has no name.
    std::string shortcutText;
    ShortcutStatus shortcutStatus = ShortcutStatus::off;
    std::string shortcutProblem;   // the backend's words when unavailable
    std::string autostartProblem;  // why the login entry could not be written, if it failed

    struct Card {
        std::string id;
        std::string title;
        bool visible = true;
    };
    std::vector<Card> cards;  // registry order
    bool canResetLayout = false;

    std::optional<std::string> placeName;  // the chosen place in words, when there is one
    std::string testNotificationResult;    // after "Send a test notification"
    bool hasBattery = true;

    std::string version;
    std::string build;
    std::string configDir;
    std::string dataDir;
    // An update engine is wired into the app: About offers "Check for updates" and its line.
    bool updatesAvailable = false;
    std::string updateLine;
};

// The Overview's cards for the card switches, from the layout as it resolves now.
std::vector<SettingsFacts::Card> cardFacts(const layout::LayoutStore& layout);

enum class RowKind {
    toggle,       // a switch for a bool key
    segmented,    // a few choices side by side
    chips,        // more choices, wrapping onto a second line
    slider,       // stops along a track
    shortcut,     // the shortcut recorder (writes the key code and the modifiers)
    preview,      // the menu-bar item as the tray shows it
    place,        // the chosen place, with a way to clear it
    placeSearch,  // the city field and its suggestions
    cardToggle,   // one Overview card shown or hidden
    button,       // an action
    about,        // the app's name, version and build
    path,         // a folder, with a button that opens it
    licence,      // the licence, shown on request
};

enum class RowAction {
    none,
    resetLayout,
    testNotification,
    showOnboarding,
    clearPlace,
    openConfigFolder,
    openDataFolder,
    checkForUpdates,
    quit,
};

struct RowOption {
    std::string label;
    settings::SettingValue value;
    std::string spoken;  // for screen readers when the label is terse ("°C")
};

struct SettingsRow {
    std::string id;  // stable across refreshes: the key, "card.<id>" or the action's name
    RowKind kind = RowKind::toggle;
    std::string title;
    std::string detail;  // a line under the title; may be empty
    std::string key;     // the key the control writes; empty for actions and cards
    std::vector<RowOption> options;
    std::optional<std::size_t> selected;  // the option holding the stored value
    std::string valueText;                // a slider's value in words, beside its title
    std::string startLabel, endLabel;     // a slider's ends
    bool on = false;                      // toggle, cardToggle
    RowAction action = RowAction::none;
    std::string actionLabel;  // a button's or a path's button text
    bool destructive = false;
    std::string cardId;    // cardToggle
    std::string path;      // path
    bool warning = false;  // the detail reports a problem
};

struct SettingsBlock {
    std::string title;  // heading above the block; may be empty
    std::vector<SettingsRow> rows;
    std::string footer;  // a note under the block; may be empty
};

// Everything a section shows, in order. Rows that do not apply are left out: a threshold while
// its alert is off, the reading's position while there is no reading, "Reset layout" while the
// layout is the default, the shortcut while it is switched off.
std::vector<SettingsBlock> settingsBlocks(SettingsSection section,
                                          const settings::AppSettings& settings,
                                          const SettingsFacts& facts);

// The line under a section's name in the index ("Every 2 s · °C · MB/s").
std::string sectionSummary(SettingsSection section, const settings::AppSettings& settings,
                           const SettingsFacts& facts);

// A ladder of choices with the stored value added in order when it is not one of them, so a
// hand-edited value stays visible and selected instead of silently snapping to a neighbour.
std::vector<double> ladderWith(std::vector<double> ladder, double current);
// The option equal to the stored value (numbers compare by value: 2 equals 2.0).
std::optional<std::size_t> optionMatching(const std::vector<RowOption>& options,
                                          const settings::SettingValue& value);

inline constexpr std::string_view weatherPrivacySentence =
    "What you type here goes to Open-Meteo to find the city. After that, only the city's "
    "coordinates are sent to fetch the weather. No account, no location permission.";

// The licence Trotlet is released under, as About shows it.
inline constexpr std::string_view licenceText =
    "Copyright (c) 2026 the Trotlet developers\n\n"
    "Permission is hereby granted, free of charge, to any person obtaining a copy of this software "
    "and associated documentation files (the \"Software\"), to deal in the Software without "
    "restriction, including without limitation the rights to use, copy, modify, merge, publish, "
    "distribute, sublicense, and/or sell copies of the Software, and to permit persons to whom the "
    "Software is furnished to do so, subject to the following conditions:\n\n"
    "The above copyright notice and this permission notice shall be included in all copies or "
    "substantial portions of the Software.\n\n"
    "THE SOFTWARE IS PROVIDED \"AS IS\", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR IMPLIED, "
    "INCLUDING BUT NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY, FITNESS FOR A PARTICULAR "
    "PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR "
    "ANY CLAIM, DAMAGES OR OTHER LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, "
    "ARISING FROM, OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE "
    "SOFTWARE.";

struct NotificationText {
    std::string title;
    std::string body;
};
// "Send a test notification": what a real notification from the app looks like.
NotificationText testNotification(const std::string& mascotName);

// The tray item as the menu bar shows it, for the preview: the mascot (or, hidden, the still
// paw), the reading and the weather's temperature as the status item joins them, and on which
// side of the mascot the text sits.
struct TrayPreview {
    bool mascot = true;
    std::string text;
    bool textFirst = false;
};
TrayPreview trayPreview(const settings::AppSettings& settings,
                        const metrics::MetricsSnapshot* sample,
                        std::optional<double> weatherCelsius);

// A place as a suggestion row shows it: the name, and where it is ("Illinois, United States";
// the region is left out when it repeats the name, as "Land Berlin" does for Berlin).
struct PlaceLine {
    std::string name;
    std::string where;
};
PlaceLine placeLine(const weather::WeatherLocation& place);
// The chosen place in one line: "Springfield, Illinois, United States".
std::string placeWords(const weather::WeatherLocation& place);

// The city field's phases as the screen tells them apart.
enum class PlaceSearchPhase { idle, loading, searching, results, empty, failed };
// The line under the city field: nothing while idle or with results; a word while typing and
// searching; "No place called …" for an empty answer; the error's message on failure.
std::string placeSearchLine(PlaceSearchPhase phase, const std::string& query,
                            const std::string& errorMessage);

// The shortcut recorder's verdict on a combination pressed. `keyKnown` is false for a key the
// shortcut table cannot name; modifiers are the stored encoding (Command 256, Shift 512,
// Option 2048, Control 4096).
struct ShortcutVerdict {
    bool accepted = false;
    std::string message;  // why not, in words
};
ShortcutVerdict judgeShortcut(bool keyKnown, int modifiers);
// What the recorder shows while keys are held: "Press a shortcut" or "Super+Alt+…".
std::string recordingPrompt(int modifiers);

}  // namespace trotlet::panel
