#include "layout/LayoutFuzz.h"

#include <algorithm>

#include "layout/BentoPacker.h"
#include "layout/LayoutFitCheck.h"
#include "layout/LayoutOps.h"
#include "layout/OverviewLayoutResolver.h"

namespace trotlet::layout {

namespace {

constexpr size_t detailsKept = 5;

void record(LayoutFuzz::Totals& totals, const std::string& message, const std::string& detail) {
    auto found = std::find_if(totals.failures.begin(), totals.failures.end(),
                              [&](const auto& f) { return f.message == message; });
    if (found == totals.failures.end()) {
        totals.failures.push_back({message, {}, 0});
        found = totals.failures.end() - 1;
    }
    ++found->count;
    if (found->details.size() < detailsKept) found->details.push_back(detail);
}

void recordAll(LayoutFuzz::Totals& totals, const std::string& message,
               const std::vector<std::string>& details, const std::string& where) {
    for (const auto& detail : details) record(totals, message, where + ": " + detail);
}

// The shown cards of a layout, for failure details.
std::string shown(const OverviewLayout& layout, const Availability& available) {
    std::string out;
    for (const auto& card : layout.cards)
        if (!card.hidden && available(card.id))
            out += (out.empty() ? "" : " ") + card.id + ":" + std::string(name(card.size));
    return out;
}

}  // namespace

LayoutFuzz::LayoutFuzz(uint32_t seed, const OverviewCardRegistry& registry)
    : rng(seed), registry(registry) {}

OverviewLayout LayoutFuzz::randomDocument() {
    std::vector<std::string> ids;
    for (const auto& kind : registry.all())
        if (below(8) != 0) ids.push_back(kind.id);  // the rest are left to resolution
    // Fisher-Yates with the raw generator.
    for (size_t i = ids.size(); i > 1; --i) std::swap(ids[i - 1], ids[below(static_cast<uint32_t>(i))]);
    if (below(6) == 0) ids.insert(ids.begin() + below(static_cast<uint32_t>(ids.size() + 1)), "radio");
    if (!ids.empty() && below(6) == 0) ids.push_back(ids[below(static_cast<uint32_t>(ids.size()))]);

    OverviewLayout layout;
    for (const auto& id : ids)
        layout.cards.push_back({id, static_cast<CardSize>(below(4)), below(5) == 0});
    return layout;
}

Availability LayoutFuzz::randomAvailability() {
    std::vector<std::string> missing;
    for (const auto& kind : registry.all())
        if (below(10) == 0) missing.push_back(kind.id);
    return [missing](std::string_view id) {
        return std::find(missing.begin(), missing.end(), id) == missing.end();
    };
}

void LayoutFuzz::checkPacking(const OverviewLayout& layout, const Availability& available,
                              const std::string& where, Totals& totals) {
    const auto items = OverviewLayoutResolver::items(layout, available, registry);
    const auto packed = BentoPacker::pack(items, GridMetrics::columns);
    totals.cards += static_cast<int>(packed.reading.size());
    if (BentoPacker::pack(items, GridMetrics::columns) != packed)
        record(totals, "packing is not deterministic", where);
    const auto findings = LayoutFitCheck::check(packed, items, layout, registry);
    recordAll(totals, "fuzzed layouts overlap or overflow", findings.overlapOrOverflow, where);
    recordAll(totals, "fuzzed cards render at a span other than their size", findings.wrongSpan, where);
    recordAll(totals, "fuzzed cards fit a hole above their slot", findings.holeAbove, where);
    recordAll(totals, "fuzzed cards sit off their column lane", findings.offLane, where);
    recordAll(totals, "fuzzed holes are not the free cells", findings.badHoles, where);

    // The resolved document always names every kind exactly once.
    for (const auto& kind : registry.all())
        if (std::count_if(layout.cards.begin(), layout.cards.end(),
                          [&](const auto& c) { return c.id == kind.id; }) != 1)
            record(totals, "fuzzed layout lost or repeated a card", where + ": " + kind.id);
}

void LayoutFuzz::checkKeyboard(const OverviewLayout& layout, const Availability& available,
                               const std::string& where, Totals& totals) {
    const Frames before = LayoutOps::frames(layout, available, registry);
    for (const auto& [id, frame] : before) {
        for (const MoveDirection direction :
             {MoveDirection::left, MoveDirection::right, MoveDirection::up, MoveDirection::down}) {
            ++totals.keyboardMoves;
            const auto order = LayoutOps::keyboardMove(id, direction, layout, available, registry);
            const std::string what = where + ": option-" + std::string(name(direction)) + " " + id;
            if (direction == MoveDirection::up && (frame.y > 0) != order.has_value())
                record(totals, order ? "option-up moved a top-row card" : "⌥↑ blocked below the top row",
                       what + " in " + shown(layout, available));
            if (!order) {
                ++totals.blockedMoves;
                continue;
            }
            const auto moved = LayoutOps::applying(*order, layout);
            for (const auto& card : moved.cards)
                if (card.size != layout.card(card.id)->size)
                    record(totals, "changed size on ⌥", what + " resized " + card.id);
            if (moved.hiddenIDs() != layout.hiddenIDs())
                record(totals, "⌥ move changed hidden cards", what);
            const Frames after = LayoutOps::frames(moved, available, registry);
            if (!LayoutOps::movedToward(frame, after.at(id), direction))
                record(totals, "didn't move it that way", what);
        }
    }
}

OverviewLayout LayoutFuzz::randomEdit(const OverviewLayout& layout, const Availability& available) {
    const auto order = LayoutOps::visibleOrder(layout, available, registry);
    const auto& kinds = registry.all();
    const auto& kind = kinds[below(static_cast<uint32_t>(kinds.size()))];
    switch (below(5)) {
        case 0:
            if (!order.empty()) {
                const auto& id = order[below(static_cast<uint32_t>(order.size()))];
                const auto to = static_cast<int>(below(static_cast<uint32_t>(order.size())));
                return LayoutOps::applying(LayoutOps::moving(id, to, order), layout);
            }
            return layout;
        case 1:
            return LayoutOps::settingSize(kind.id, kind.sizes[below(static_cast<uint32_t>(kind.sizes.size()))], layout);
        case 2:
            return LayoutOps::settingHidden(kind.id, !layout.card(kind.id)->hidden, layout);
        case 3:
            if (auto step = LayoutOps::readingStep(kind.id, below(2) ? 1 : -1, layout, available, registry))
                return LayoutOps::applying(*step, layout);
            return layout;
        default:
            if (auto moved = LayoutOps::keyboardMove(kind.id, static_cast<MoveDirection>(below(4)), layout,
                                                     available, registry))
                return LayoutOps::applying(*moved, layout);
            return layout;
    }
}

LayoutFuzz::Totals LayoutFuzz::run(int layouts, int editsPerLayout) {
    Totals totals;
    for (int n = 0; n < layouts; ++n) {
        ++totals.layouts;
        const std::string where = "layout #" + std::to_string(n);
        const Availability available = randomAvailability();
        OverviewLayout layout = OverviewLayoutResolver::resolve(randomDocument(), {}, registry);
        checkPacking(layout, available, where, totals);
        checkKeyboard(layout, available, where, totals);
        for (int e = 0; e < editsPerLayout; ++e) {
            ++totals.edits;
            // Every edit is stored and read back as the panel would: resolve what was written.
            layout = OverviewLayoutResolver::resolve(OverviewLayout::decode(randomEdit(layout, available).json()),
                                                     {}, registry);
            checkPacking(layout, available, where + " edit " + std::to_string(e + 1), totals);
        }
    }
    return totals;
}

}  // namespace trotlet::layout
