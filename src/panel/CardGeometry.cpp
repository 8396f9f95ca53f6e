#include "panel/CardGeometry.h"

#include <algorithm>

namespace trotlet::panel {
namespace {

constexpr double titleGap = 4;
constexpr double gaugeHeight = 4;
constexpr double factGap = 2;

}  // namespace

CardGeometry layoutCard(layout::CardSize size, double width, double height, const CardParts& parts,
                        const CardLines& lines, double padding) {
    CardGeometry g;
    // A wide card is one short band: a little less padding buys its caption a line.
    if (size == layout::CardSize::wide) padding *= 0.8;
    const Box inner{padding, padding, width - 2 * padding, height - 2 * padding};
    g.title = {inner.x, inner.y, inner.width, lines.title};
    g.standIn = {inner.x, g.title.bottom() + titleGap, inner.width,
                 inner.bottom() - g.title.bottom() - titleGap};
    double y = g.title.bottom() + titleGap;

    if (size == layout::CardSize::wide) {
        // Reading on the left, chart in the middle, facts on the right, all in one band.
        g.compactHeadline = true;
        const double left = std::min(130.0, inner.width * 0.4);
        // With a large desktop font the band is too short for all three lines: the caption
        // goes first, then the headline shrinks to what is left.
        const double room = inner.bottom() - y;
        const double headline = std::min(lines.headline * 0.78, room);
        g.headline = {inner.x, y, left, headline};
        if (room - headline >= lines.caption)
            g.caption = {inner.x, g.headline.bottom(), left, lines.caption};
        g.title.width = left;
        double x = inner.x + left + 8;
        const double band = inner.bottom() - inner.y;
        const std::size_t rows =
            std::size_t(std::max(0.0, (band + factGap) / (lines.caption + factGap)));
        if (parts.facts > 0 && rows > 0) {
            const double factsWidth = 124;
            g.facts = {inner.right() - factsWidth, inner.y, factsWidth, band};
            g.factRows = std::min(parts.facts, rows);
        }
        const double chartRight = g.facts.isEmpty() ? inner.right() : g.facts.x - 10;
        if (parts.chart && chartRight - x > 40)
            g.chart = {x, inner.y + 2, chartRight - x, band - 2};
        if (parts.gauge && g.chart.isEmpty())
            g.gauge = {x, inner.y + band / 2 - 2, chartRight - x, gaugeHeight};
        return g;
    }

    const bool small = size == layout::CardSize::small;
    const bool large = size == layout::CardSize::large;
    // A large card reads like a wide one on top: the reading on the left, the chart beside it.
    const double readingWidth = large ? std::min(160.0, inner.width * 0.45) : inner.width;
    g.headline = {inner.x, y, readingWidth, small ? lines.headline * 0.9 : lines.headline};
    y = g.headline.bottom();
    g.caption = {inner.x, y, readingWidth, lines.caption};
    y = g.caption.bottom() + 6;
    if (parts.gauge) {
        if (small) {
            // A small card keeps its gauge at the foot, under the caption.
            g.gauge = {inner.x, inner.bottom() - gaugeHeight, inner.width, gaugeHeight};
        } else {
            g.gauge = {inner.x, y, readingWidth, gaugeHeight};
            y = g.gauge.bottom() + 8;
        }
    }
    if (small) return g;

    const double factHeight = lines.caption + factGap;
    const std::size_t columns = large ? 2 : 1;
    if (large) {
        const double chartLeft = inner.x + readingWidth + 12;
        if (parts.chart)
            g.chart = {chartLeft, g.title.bottom() + titleGap, inner.right() - chartLeft,
                       y - g.title.bottom() - titleGap - 6};
        double bottom = inner.bottom();
        const std::size_t rows = std::min<std::size_t>((parts.facts + 1) / 2, 3);
        if (rows > 0) {
            g.facts = {inner.x, bottom - double(rows) * factHeight + factGap, inner.width,
                       double(rows) * factHeight - factGap};
            g.factRows = rows;
            g.factColumns = columns;
            bottom = g.facts.y - 8;
        }
        // Bars stay short: a row of thin columns reads better than tall blocks.
        if (parts.bars && bottom - y >= 16)
            g.bars = {inner.x, y + 2, inner.width, std::min(72.0, bottom - y - 2)};
        return g;
    }

    // Medium: the chart takes what the facts leave; without a chart the facts follow the
    // reading, so a card with little to say keeps it together at the top.
    double remaining = inner.bottom() - y;
    const double minimumChart = 34;
    std::size_t rows = parts.facts;
    while (rows > 0 && (parts.chart ? minimumChart + 8 : 0) + double(rows) * factHeight > remaining)
        --rows;
    const double factsHeight = double(rows) * factHeight;
    if (rows > 0) {
        const double top = parts.chart ? inner.bottom() - factsHeight + factGap : y;
        g.facts = {inner.x, top, inner.width, factsHeight - factGap};
        g.factRows = rows;
        remaining -= factsHeight + 6;
    }
    if (parts.chart && remaining >= minimumChart * 0.75)
        g.chart = {inner.x, y, inner.width, remaining};
    return g;
}

}  // namespace trotlet::panel
