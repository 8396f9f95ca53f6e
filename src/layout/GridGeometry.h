#pragma once

#include "layout/CardSize.h"

namespace trotlet::layout {

// The block of grid cells a card covers.
struct GridSpan {
    int cols = 0;
    int rows = 0;
    friend bool operator==(const GridSpan&, const GridSpan&) = default;
};

// A card's place: its top-left cell (0-based) and the block it covers.
struct GridRect {
    int col = 0;
    int row = 0;
    GridSpan span;

    int right() const { return col + span.cols; }   // one past the last column
    int bottom() const { return row + span.rows; }  // one past the last row
    bool intersects(const GridRect& other) const {
        return col < other.right() && other.col < right() && row < other.bottom() &&
               other.row < bottom();
    }
    friend bool operator==(const GridRect&, const GridRect&) = default;
};

// A rectangle in points, y growing downward.
struct PointRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double midX() const { return x + width / 2; }
    double midY() const { return y + height / 2; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool contains(double px, double py) const {
        return px >= x && px < maxX() && py >= y && py < maxY();
    }
    friend bool operator==(const PointRect&, const PointRect&) = default;
};

// The Overview's fine grid: six columns of 52 × 20 point cells with 8 points between them.
struct GridMetrics {
    static constexpr int columns = 6;
    static constexpr double cellWidth = 52;
    static constexpr double cellHeight = 20;
    static constexpr double gap = 8;

    static constexpr double width(int cols) { return cols * cellWidth + (cols - 1) * gap; }
    static constexpr double height(int rows) { return rows * cellHeight + (rows - 1) * gap; }
    static PointRect points(const GridRect& rect) {
        return {rect.col * (cellWidth + gap), rect.row * (cellHeight + gap), width(rect.span.cols),
                height(rect.span.rows)};
    }
};

// The span of a size when a card kind does not override it. Every size has an entry; the
// 3 × 6 fallback covers a size value outside the enumeration (a cast from bad data).
constexpr GridSpan standardSpan(CardSize size) {
    switch (size) {
        case CardSize::small: return {2, 4};
        case CardSize::medium: return {3, 6};
        case CardSize::wide: return {6, 3};
        case CardSize::large: return {6, 8};
    }
    return {3, 6};
}

}  // namespace trotlet::layout
