#pragma once

#include <cstddef>
#include <optional>

#include "layout/CardSize.h"

namespace trotlet::panel {

struct Box {
    double x = 0, y = 0, width = 0, height = 0;
    double right() const { return x + width; }
    double bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    bool operator==(const Box&) const = default;
};

// The line heights of the card's type, measured by the view from its fonts.
struct CardLines {
    double title = 15;
    double headline = 30;
    double caption = 14;
};

// Where each part of a card goes inside its frame. Parts a size does not show stay empty;
// `factRows` and `factColumns` say how many facts fit.
struct CardGeometry {
    Box title;     // icon and title
    Box headline;  // the reading with its unit
    Box caption;
    Box gauge;  // a thin fill bar
    Box chart;
    Box bars;
    Box facts;
    std::size_t factRows = 0;
    std::size_t factColumns = 1;
    Box standIn;                   // the text that replaces readings
    bool compactHeadline = false;  // wide cards use the smaller headline
};

struct CardParts {
    bool gauge = false;
    bool chart = false;
    bool bars = false;
    std::size_t facts = 0;
};

// Lays out a card of `width` x `height` points. Everything stays inside the padding; parts
// that would not fit are dropped in this order: bars, facts, chart.
CardGeometry layoutCard(layout::CardSize size, double width, double height, const CardParts& parts,
                        const CardLines& lines, double padding);

}  // namespace trotlet::panel
