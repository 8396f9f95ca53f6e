#include "layout/BentoPacker.h"

#include <algorithm>

namespace trotlet::layout {

Occupancy::Occupancy(int columns) : width(std::max(1, columns)) {}

bool Occupancy::taken(int col, int row) const {
    if (col < 0 || col >= width || row < 0) return true;
    if (row >= rows()) return false;
    return cells[static_cast<size_t>(row * width + col)];
}

bool Occupancy::isFree(const GridRect& rect) const {
    if (rect.col < 0 || rect.row < 0 || rect.right() > width) return false;
    for (int r = rect.row; r < rect.bottom(); ++r)
        for (int c = rect.col; c < rect.right(); ++c)
            if (taken(c, r)) return false;
    return true;
}

void Occupancy::mark(const GridRect& rect) {
    if (rect.bottom() > rows()) cells.resize(static_cast<size_t>(rect.bottom() * width), false);
    for (int r = std::max(0, rect.row); r < rect.bottom(); ++r)
        for (int c = std::max(0, rect.col); c < std::min(width, rect.right()); ++c)
            cells[static_cast<size_t>(r * width + c)] = true;
}

int BentoPacker::laneStep(int width, int columns) {
    return columns % width == 0 ? width : 1;
}

GridRect BentoPacker::firstFit(GridSpan span, const Occupancy& occupancy) {
    const int columns = occupancy.columns();
    const int width = std::clamp(span.cols, 1, columns);
    const int height = std::max(1, span.rows);
    const int step = laneStep(width, columns);
    // Every row at or below the grown grid is empty, so the scan ends there at the latest.
    for (int row = 0;; ++row)
        for (int col = 0; col + width <= columns; col += step) {
            const GridRect candidate{col, row, {width, height}};
            if (occupancy.isFree(candidate)) return candidate;
        }
}

BentoPacker::Result BentoPacker::pack(const std::vector<Item>& items, int columns) {
    Result result;
    result.columns = std::max(1, columns);
    Occupancy occupancy(result.columns);
    for (const auto& item : items) {
        if (result.rects.count(item.id)) continue;  // the first of a duplicated id wins
        const GridRect rect = firstFit(item.span, occupancy);
        occupancy.mark(rect);
        result.rects.emplace(item.id, rect);
        result.reading.push_back(item.id);
    }
    std::vector<GridRect> placed;
    placed.reserve(result.reading.size());
    for (const auto& id : result.reading) placed.push_back(result.rects.at(id));
    result.holes = gaps(placed, result.columns, result.rows());
    return result;
}

std::vector<GridRect> BentoPacker::gaps(const std::vector<GridRect>& rects, int columns,
                                        int rows) {
    columns = std::max(1, columns);
    rows = std::max(0, rows);
    Occupancy covered(columns);
    for (const auto& rect : rects) covered.mark(rect);

    std::vector<GridRect> holes;
    for (int row = 0; row < rows; ++row)
        for (int col = 0; col < columns; ++col) {
            if (covered.taken(col, row)) continue;
            int width = 1;
            while (col + width < columns && !covered.taken(col + width, row)) ++width;
            int height = 1;
            while (row + height < rows && covered.isFree({col, row + height, {width, 1}})) ++height;
            const GridRect hole{col, row, {width, height}};
            holes.push_back(hole);
            covered.mark(hole);
        }
    return holes;
}

std::optional<GridRect> BentoPacker::Result::frame(const std::string& id) const {
    const auto found = rects.find(id);
    if (found == rects.end()) return std::nullopt;
    return found->second;
}

int BentoPacker::Result::rows() const {
    int bottom = 0;
    for (const auto& [id, rect] : rects) bottom = std::max(bottom, rect.bottom());
    return bottom;
}

}  // namespace trotlet::layout
