#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "layout/GridGeometry.h"

namespace trotlet::layout {

// Which grid cells are taken: `columns` wide, as many rows as have been touched.
class Occupancy {
public:
    explicit Occupancy(int columns);

    int columns() const { return width; }
    int rows() const { return static_cast<int>(cells.size()) / width; }
    bool taken(int col, int row) const;
    // Whether every cell of the rectangle is inside the columns and free. Rows below the grown
    // grid are free.
    bool isFree(const GridRect& rect) const;
    void mark(const GridRect& rect);  // grows the grid downward as needed

private:
    int width;
    std::vector<bool> cells;  // row-major
};

// Places cards one after another in reading order, each at the first free place from the top,
// on column lanes that keep the grid tidy. Pure: the same items and columns give the same result.
struct BentoPacker {
    struct Item {
        std::string id;
        GridSpan span;
        friend bool operator==(const Item&, const Item&) = default;
    };

    struct Result {
        std::map<std::string, GridRect> rects;
        std::vector<std::string> reading;  // ids in placing order
        int columns = 0;
        std::vector<GridRect> holes;  // see `gaps`

        std::optional<GridRect> frame(const std::string& id) const;
        int rows() const;  // the packed height: one past the lowest card's last row
        friend bool operator==(const Result&, const Result&) = default;
    };

    static Result pack(const std::vector<Item>& items, int columns);

    // The card's width is its cols clamped to 1 … columns, its height its rows (at least 1).
    // A card starts only on its lane: columns that are multiples of its width when the width
    // divides the column count, else any column. Rows are tried from the top, lanes left to
    // right; the first free place wins.
    static GridRect firstFit(GridSpan span, const Occupancy& occupancy);

    // The column step of a card `width` columns wide.
    static int laneStep(int width, int columns);

    // The free cells of rows 0 … rows−1, merged into disjoint rectangles: scanning rows top to
    // bottom and cells left to right, each free cell not yet covered starts a rectangle that
    // takes the longest free run to its right and then grows downward while that whole run
    // stays free. Deterministic, and together the rectangles cover every free cell once.
    static std::vector<GridRect> gaps(const std::vector<GridRect>& rects, int columns, int rows);
};

}  // namespace trotlet::layout
