#include "layout/LayoutFitCheck.h"

#include <algorithm>
#include <cstdio>

namespace trotlet::layout {

namespace {

std::string at(int col, int row) {
    char text[48];
    std::snprintf(text, sizeof text, "col %d row %d", col, row);
    return text;
}

// A plain cell grid, deliberately not the packer's own occupancy.
struct Cells {
    int columns;
    std::vector<std::vector<int>> rows;  // how many cards cover each cell

    int& cell(int col, int row) {
        if (row >= static_cast<int>(rows.size())) rows.resize(static_cast<size_t>(row) + 1, std::vector<int>(static_cast<size_t>(columns), 0));
        return rows[static_cast<size_t>(row)][static_cast<size_t>(col)];
    }
    int count(int col, int row) const {
        return row < static_cast<int>(rows.size()) ? rows[static_cast<size_t>(row)][static_cast<size_t>(col)] : 0;
    }
    bool fits(int col, int row, int width, int height) const {
        for (int r = row; r < row + height; ++r)
            for (int c = col; c < col + width; ++c)
                if (count(c, r)) return false;
        return true;
    }
    void cover(const GridRect& rect) {
        for (int r = rect.row; r < rect.bottom(); ++r)
            for (int c = rect.col; c < rect.right(); ++c) ++cell(c, r);
    }
};

}  // namespace

LayoutFitCheck::Findings LayoutFitCheck::check(const BentoPacker::Result& result,
                                               const std::vector<BentoPacker::Item>& items,
                                               const OverviewLayout& layout,
                                               const OverviewCardRegistry& registry) {
    Findings findings;
    const int columns = result.columns;

    // Overflow, and overlap counted cell by cell.
    Cells all{columns, {}};
    for (const auto& id : result.reading) {
        const GridRect& rect = result.rects.at(id);
        if (rect.col < 0 || rect.row < 0 || rect.span.cols < 1 || rect.span.rows < 1 ||
            rect.right() > columns) {
            findings.overlapOrOverflow.push_back(id + " leaves the grid at " + at(rect.col, rect.row));
            continue;
        }
        all.cover(rect);
    }
    for (int r = 0; r < static_cast<int>(all.rows.size()); ++r)
        for (int c = 0; c < columns; ++c)
            if (all.count(c, r) > 1) findings.overlapOrOverflow.push_back("cards overlap at " + at(c, r));

    // Every item placed once, at its size's span.
    std::vector<std::string> expectedReading;
    for (const auto& item : items)
        if (std::find(expectedReading.begin(), expectedReading.end(), item.id) == expectedReading.end())
            expectedReading.push_back(item.id);
    if (expectedReading != result.reading)
        findings.overlapOrOverflow.push_back("the packed cards are not the items in order");
    for (const auto& id : result.reading) {
        const auto* card = layout.card(id);
        const auto* kind = registry.kind(id);
        if (!card || !kind) continue;
        GridSpan want = kind->span(card->size);
        want.cols = std::clamp(want.cols, 1, columns);
        if (result.rects.at(id).span != want)
            findings.wrongSpan.push_back(id + " is " + std::to_string(result.rects.at(id).span.cols) + "x" +
                                         std::to_string(result.rects.at(id).span.rows) + " at size " +
                                         std::string(name(card->size)));
    }

    // No card fits an earlier place on its lane given the cards placed before it.
    Cells before{columns, {}};
    for (const auto& id : result.reading) {
        const GridRect& rect = result.rects.at(id);
        const int width = std::clamp(rect.span.cols, 1, columns);
        const int step = columns % width == 0 ? width : 1;
        if (rect.col % step != 0)
            findings.offLane.push_back(id + " starts at col " + std::to_string(rect.col) +
                                       ", off its " + std::to_string(step) + "-column lane");
        bool reported = false;
        for (int row = 0; row <= rect.row && !reported; ++row)
            for (int col = 0; col + width <= columns; col += step) {
                if (row == rect.row && col >= rect.col) break;
                if (before.fits(col, row, width, rect.span.rows)) {
                    findings.holeAbove.push_back(id + " fits a hole at " + at(col, row) +
                                                 " above its slot (" + at(rect.col, rect.row) + ")");
                    reported = true;
                    break;
                }
            }
        if (rect.col >= 0 && rect.right() <= columns) before.cover(rect);
    }

    // The holes are exactly the free cells of the packed rows, each once.
    Cells holes{columns, {}};
    for (const auto& hole : result.holes) {
        if (hole.col < 0 || hole.right() > columns || hole.row < 0 || hole.bottom() > result.rows()) {
            findings.badHoles.push_back("hole at " + at(hole.col, hole.row) + " leaves the packed rows");
            continue;
        }
        holes.cover(hole);
    }
    for (int r = 0; r < result.rows(); ++r)
        for (int c = 0; c < columns; ++c)
            if (all.count(c, r) + holes.count(c, r) != 1)
                findings.badHoles.push_back("cell at " + at(c, r) + " is " +
                                            (all.count(c, r) ? "taken and a hole" : "neither taken nor a hole"));
    return findings;
}

}  // namespace trotlet::layout
