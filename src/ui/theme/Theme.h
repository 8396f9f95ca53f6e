#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <string_view>

#include "panel/Appearance.h"
#include "panel/Level.h"

namespace trotlet::ui {

// Colours by role. Views name a role, never a hex code, so the dark palette is one table away.
struct Palette {
    QColor window;        // the panel's background
    QColor surface;       // a card
    QColor surfaceHover;  // a card under the pointer
    QColor border;        // a card's hairline
    QColor separator;
    QColor text;
    QColor textSecondary;
    QColor textTertiary;
    QColor accent;    // selection, the current tab, links
    QColor onAccent;  // text on the accent
    QColor focusRing;
    QColor chip;       // the header's chips, the tab bar's track
    QColor track;      // the empty part of a bar or gauge
    QColor headerTop;  // the header's backdrop until the painted sky draws there
    QColor headerBottom;
    QColor calm, busy, hot, critical;
    QColor knob;     // a switch's or slider's thumb
    QColor shadow;   // under a thumb or a raised surface
    QColor trayBar;  // the desktop's top bar in the menu-bar preview
    QColor trayText;

    QColor level(panel::Level level) const;
    // A card kind's accent by the registry's colour name ("blue", "teal", …).
    QColor named(std::string_view name) const;
};

// Every size the panel uses, in points (device independent pixels).
struct Metrics {
    static constexpr int cellWidth = 52;
    static constexpr int cellHeight = 20;
    static constexpr int gap = 8;
    static constexpr int columns = 6;
    static constexpr int gridWidth = columns * cellWidth + (columns - 1) * gap;  // 352
    static constexpr int margin = 16;
    static constexpr int panelWidth = gridWidth + 2 * margin;  // 384
    static constexpr int maxPanelHeight = 720;
    static constexpr int headerHeight = 116;
    static constexpr int greetingHeight = 20;  // the header's foot: greeting and odometer
    static constexpr int tabBarHeight = 30;
    static constexpr int mascotSize = 44;
    static constexpr int cardRadius = 12;
    static constexpr int cardPadding = 10;
    static constexpr int chipRadius = 11;
    static constexpr int chipHeight = 22;
    static constexpr int panelRadius = 14;
    static constexpr int focusWidth = 2;
    static constexpr int iconSize = 14;
    static constexpr int spacingSmall = 4;
    static constexpr int spacing = 8;
    static constexpr int spacingLarge = 12;
    // Lists (the Processes tab): a search field over a card of rows with a column header.
    static constexpr int fieldHeight = 30;
    static constexpr int fieldRadius = 8;
    static constexpr int listHeaderHeight = 26;
    static constexpr int listRowHeight = 28;
    static constexpr int listRowRadius = 6;
    static constexpr int listInset = 4;        // between the card's edge and a row
    static constexpr int listCellPadding = 8;  // between a row's edge and its text
    static constexpr int listColumnGap = 6;
    static constexpr int listDetailLineHeight = 17;
    static constexpr int listDetailLabelWidth = 64;
    static constexpr int cpuColumnWidth = 42;
    static constexpr int memoryColumnWidth = 50;
    static constexpr int threadsColumnWidth = 48;
    static constexpr int userColumnWidth = 46;
    static constexpr int buttonHeight = 26;
    static constexpr int buttonRadius = 13;
    static constexpr int sheetRadius = 14;
    static constexpr int sheetPadding = 18;

    // Settings and the welcome tour: rows in grouped blocks, and their controls.
    static constexpr int rowHeight = 44;
    static constexpr int rowPadding = 12;
    static constexpr int blockGap = 18;
    static constexpr int blockTitleHeight = 22;
    static constexpr int switchWidth = 38;
    static constexpr int switchHeight = 22;
    static constexpr int controlHeight = 28;
    static constexpr int chipGap = 6;
    static constexpr int sliderThumb = 18;
    static constexpr int sectionIcon = 28;
    static constexpr int suggestionHeight = 44;
    static constexpr int trayBarHeight = 28;
    // Detail screens and edit mode.
    static constexpr int topBarHeight = 34;  // a detail's back button and title
    static constexpr int detailRowHeight = 24;  // a label and its value
    static constexpr int sectionGap = 18;    // between a detail's blocks
    static constexpr int chartHeight = 112;
    static constexpr int stripHeight = 10;   // a strip of levels under a chart
    static constexpr int meterHeight = 6;    // a bar's track
    static constexpr int compactButtonHeight = 22;
    static constexpr int controlRadius = 8;
    static constexpr int editBadge = 20;     // a card's hide button in edit mode
    static constexpr int trayTile = 64;      // a hidden card's tile in the tray
    static constexpr int moveMs = 180;       // cards gliding to new places (0 under reduce motion)
};

// The type scale, derived from the desktop's font so that text follows its size.
struct TypeScale {
    QFont caption;  // facts, captions
    QFont body;
    QFont label;     // card titles, tabs
    QFont headline;  // a card's reading
    QFont headlineSmall;
    QFont unit;   // the unit beside a reading
    QFont title;  // screen titles

    static TypeScale from(const QFont& base);
};

// Focus rings show where the keyboard is; a click or the window opening moves the focus too,
// and then no ring is drawn.
inline bool isKeyboardFocus(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
}

class Theme {
public:
    static Theme make(panel::ColorScheme scheme, const QFont& base);

    panel::ColorScheme scheme() const { return scheme_; }
    bool isDark() const { return scheme_ == panel::ColorScheme::dark; }
    const Palette& palette() const { return palette_; }
    const TypeScale& type() const { return type_; }

private:
    panel::ColorScheme scheme_ = panel::ColorScheme::light;
    Palette palette_;
    TypeScale type_;
};

}  // namespace trotlet::ui
