#include "platform/freedesktop/GlobalShortcutKeys.h"


namespace trotlet::platform {

namespace {

struct KeyRow {
    int carbon;
    unsigned long keysym;
    const char* name;     // keysym name, as the portal and xkb spell it
    const char* display;  // as Settings shows it
};

// Carbon's ANSI key codes (kVK_ANSI_*, kVK_*) follow the physical US layout, not the alphabet.
constexpr KeyRow kKeys[] = {
    {0, 0x61, "a", "A"},   {1, 0x73, "s", "S"},   {2, 0x64, "d", "D"},   {3, 0x66, "f", "F"},
    {4, 0x68, "h", "H"},   {5, 0x67, "g", "G"},   {6, 0x7a, "z", "Z"},   {7, 0x78, "x", "X"},
    {8, 0x63, "c", "C"},   {9, 0x76, "v", "V"},   {11, 0x62, "b", "B"},  {12, 0x71, "q", "Q"},
    {13, 0x77, "w", "W"},  {14, 0x65, "e", "E"},  {15, 0x72, "r", "R"},  {16, 0x79, "y", "Y"},
    {17, 0x74, "t", "T"},  {18, 0x31, "1", "1"},  {19, 0x32, "2", "2"},  {20, 0x33, "3", "3"},
    {21, 0x34, "4", "4"},  {22, 0x36, "6", "6"},  {23, 0x35, "5", "5"},  {24, 0x3d, "equal", "="},
    {25, 0x39, "9", "9"},  {26, 0x37, "7", "7"},  {27, 0x2d, "minus", "-"},  {28, 0x38, "8", "8"},
    {29, 0x30, "0", "0"},  {30, 0x5d, "bracketright", "]"},  {31, 0x6f, "o", "O"},  {32, 0x75, "u", "U"},
    {33, 0x5b, "bracketleft", "["},  {34, 0x69, "i", "I"},  {35, 0x70, "p", "P"},
    {36, 0xff0d, "Return", "Return"},  {37, 0x6c, "l", "L"},  {38, 0x6a, "j", "J"},
    {39, 0x27, "apostrophe", "'"},  {40, 0x6b, "k", "K"},  {41, 0x3b, "semicolon", ";"},
    {42, 0x5c, "backslash", "\\"},  {43, 0x2c, "comma", ","},  {44, 0x2f, "slash", "/"},
    {45, 0x6e, "n", "N"},  {46, 0x6d, "m", "M"},  {47, 0x2e, "period", "."},
    {48, 0xff09, "Tab", "Tab"},  {49, 0x20, "space", "Space"},  {50, 0x60, "grave", "`"},
    {51, 0xff08, "BackSpace", "Backspace"},  {53, 0xff1b, "Escape", "Esc"},
    {96, 0xffc2, "F5", "F5"},  {97, 0xffc3, "F6", "F6"},  {98, 0xffc4, "F7", "F7"},  {99, 0xffc0, "F3", "F3"},
    {100, 0xffc5, "F8", "F8"},  {101, 0xffc6, "F9", "F9"},  {103, 0xffc8, "F11", "F11"},
    {109, 0xffc7, "F10", "F10"},  {111, 0xffc9, "F12", "F12"},
    {115, 0xff50, "Home", "Home"},  {116, 0xff55, "Prior", "Page Up"},  {117, 0xffff, "Delete", "Delete"},
    {118, 0xffc1, "F4", "F4"},  {119, 0xff57, "End", "End"},  {120, 0xffbf, "F2", "F2"},
    {121, 0xff56, "Next", "Page Down"},  {122, 0xffbe, "F1", "F1"},
    {123, 0xff51, "Left", "Left"},  {124, 0xff53, "Right", "Right"},  {125, 0xff54, "Down", "Down"},
    {126, 0xff52, "Up", "Up"},
};

}  // namespace

std::optional<int> GlobalShortcutKeys::carbonKeyCode(unsigned long keysym) {
    // Latin capitals share the lower-case key.
    if (keysym >= 0x41 && keysym <= 0x5a) keysym += 0x20;
    for (const KeyRow& k : kKeys)
        if (k.keysym == keysym) return k.carbon;
    return std::nullopt;
}

std::optional<GlobalShortcutKeys> GlobalShortcutKeys::fromCarbon(int keyCode, int modifiers) {
    const KeyRow* row = nullptr;
    for (const KeyRow& k : kKeys) {
        if (k.carbon == keyCode) row = &k;
    }
    if (!row) return std::nullopt;

    GlobalShortcutKeys keys;
    keys.keysym = row->keysym;
    // Super first, as Linux desktops write their own shortcuts (Super+Alt+P).
    const struct {
        int carbon;
        unsigned int x11;
        const char* trigger;
        const char* display;
    } order[] = {
        {command, x11Super, "LOGO", "Super"},
        {control, x11Control, "CTRL", "Ctrl"},
        {option, x11Alt, "ALT", "Alt"},
        {shift, x11Shift, "SHIFT", "Shift"},
    };
    for (const auto& m : order) {
        if (!(modifiers & m.carbon)) continue;
        keys.x11Modifiers |= m.x11;
        keys.portalTrigger += std::string(m.trigger) + "+";
        keys.displayText += std::string(m.display) + "+";
    }
    if (keys.x11Modifiers == 0) return std::nullopt;
    keys.portalTrigger += row->name;
    keys.displayText += row->display;
    return keys;
}

}  // namespace trotlet::platform
