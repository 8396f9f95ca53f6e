#pragma once

#include "ui/theme/Theme.h"

namespace trotlet::ui {

// The Shop tab's sizes, in points, on top of the panel's `Metrics`.
struct ShopMetrics {
    static constexpr int buttonHeight = 28;
    static constexpr int buttonPadding = 14;  // left and right of a button's label
    static constexpr int smallButtonHeight = 24;
    static constexpr int badge = 32;  // an icon in a tinted circle
    static constexpr int smallBadge = 26;
    static constexpr int progressHeight = 6;
    static constexpr int dot = 24;          // a day of the check-in week
    static constexpr int previewTile = 64;  // the catalog's mascot tile
    static constexpr int sheetPreview = 88;
    static constexpr int tileWidth = (Metrics::gridWidth - Metrics::gap) / 2;
    static constexpr int ledgerRow = 52;
    static constexpr int ledgerSection = 32;
    static constexpr int pageHeader = 40;  // a sub-page's back row
    static constexpr int previewFps = 12;
    static constexpr int fishFps = 24;  // the header's own top frame rate
    static constexpr int fishWidth = 34;
    static constexpr int fishHeight = 22;
    static constexpr int reactionMs = 1100;  // the "+5" after a catch
    static constexpr int toastMs = 3500;
};

}  // namespace trotlet::ui
