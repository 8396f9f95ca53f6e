#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layout/GridGeometry.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::layout {

enum class MoveDirection { left, right, up, down };

inline constexpr std::array<std::string_view, 4> MoveDirectionNames = {"left", "right", "up",
                                                                       "down"};

constexpr std::string_view name(MoveDirection direction) {
    return settings::rawName(direction, MoveDirectionNames);
}

constexpr MoveDirection opposite(MoveDirection direction) {
    switch (direction) {
        case MoveDirection::left:
            return MoveDirection::right;
        case MoveDirection::right:
            return MoveDirection::left;
        case MoveDirection::up:
            return MoveDirection::down;
        case MoveDirection::down:
            return MoveDirection::up;
    }
    return direction;
}

using Frames = std::map<std::string, PointRect>;

// The edit operations of the Overview as pure functions from a layout to a new layout or
// order. They change only the order, sizes and hidden flags; positions always come from
// re-packing.
struct LayoutOps {
    // The ids of the cards that are shown (not hidden, available, known), in layout order.
    static std::vector<std::string> visibleOrder(const OverviewLayout& layout,
                                                 const Availability& available,
                                                 const OverviewCardRegistry& registry);

    // The packed cards' rectangles in points.
    static Frames frames(const OverviewLayout& layout, const Availability& available,
                         const OverviewCardRegistry& registry);

    // The layout with the cards named in `order` put in that order, in the slots those cards
    // held; every other card (hidden, unavailable) keeps its slot. Unknown and repeated ids
    // in `order` are ignored.
    static OverviewLayout applying(const std::vector<std::string>& order,
                                   const OverviewLayout& layout);

    // The order with `id` taken out and put back at `toIndex` (clamped). An order without the
    // id is returned unchanged.
    static std::vector<std::string> moving(const std::string& id, int toIndex,
                                           std::vector<std::string> order);

    // The card lying wholly on that side of `id` whose centre is nearest, misalignment across
    // the direction counting double. Ties go to the upper, then the left card.
    static std::optional<std::string> neighbour(const std::string& id, MoveDirection direction,
                                                const Frames& frames);

    // Whether `after` lies wholly in `direction` from `before`: its centre is past the edge
    // of `before` that faces that way. Decides which cards are candidates for a neighbour.
    static bool liesToward(const PointRect& before, const PointRect& after,
                           MoveDirection direction);

    // Whether a card re-packed from `before` to `after` went that way: both its leading edge
    // and its centre moved in that direction. A tall card trading places with a short one
    // above it rises by the short card's height, not past its own top edge, and still counts.
    static bool movedToward(const PointRect& before, const PointRect& after,
                            MoveDirection direction);

    // ⌥ + arrow: the card trades places with its neighbour in that direction. When that trade
    // would not actually carry it that way (see `movedToward`) (cards of other sizes re-pack around
    // it), the next nearest cards on that side are tried in turn, each by a trade and then by
    // taking its place in the order. None when no card lies that way (a top-row card moving up) or
    // nothing carries it there. Sizes never change.
    static std::optional<std::vector<std::string>> keyboardMove(
        const std::string& id, MoveDirection direction, const OverviewLayout& layout,
        const Availability& available, const OverviewCardRegistry& registry);

    // The card one place earlier (−1) or later (+1) in reading order; none at either end.
    static std::optional<std::vector<std::string>> readingStep(
        const std::string& id, int by, const OverviewLayout& layout, const Availability& available,
        const OverviewCardRegistry& registry);

    // The size a corner-grip gesture of `width` × `height` points snaps to: the supported size
    // whose extent is nearest, vertical misfit weighing 1.3 times, with the current size
    // favoured by `hysteresis` points (+0.001, so a grip picked up and put down never changes
    // anything). Ties go to the earlier size. An unknown id keeps the current size.
    static CardSize snappedSize(const std::string& id, double width, double height,
                                CardSize current, double hysteresis,
                                const OverviewCardRegistry& registry);

    static OverviewLayout settingSize(const std::string& id, CardSize size, OverviewLayout layout);
    static OverviewLayout settingHidden(const std::string& id, bool hidden, OverviewLayout layout);
};

}  // namespace trotlet::layout
