#include "layout/LayoutOps.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "layout/BentoPacker.h"
#include "layout/OverviewLayoutResolver.h"

namespace trotlet::layout {

std::vector<std::string> LayoutOps::visibleOrder(const OverviewLayout& layout,
                                                 const Availability& available,
                                                 const OverviewCardRegistry& registry) {
    std::vector<std::string> order;
    for (const auto& item : OverviewLayoutResolver::items(layout, available, registry))
        if (std::find(order.begin(), order.end(), item.id) == order.end())
            order.push_back(item.id);
    return order;
}

Frames LayoutOps::frames(const OverviewLayout& layout, const Availability& available,
                         const OverviewCardRegistry& registry) {
    const auto packed = BentoPacker::pack(OverviewLayoutResolver::items(layout, available, registry),
                                          GridMetrics::columns);
    Frames frames;
    for (const auto& [id, rect] : packed.rects) frames.emplace(id, GridMetrics::points(rect));
    return frames;
}

OverviewLayout LayoutOps::applying(const std::vector<std::string>& order,
                                   const OverviewLayout& layout) {
    std::vector<std::string> wanted;
    for (const auto& id : order)
        if (layout.card(id) && std::find(wanted.begin(), wanted.end(), id) == wanted.end())
            wanted.push_back(id);

    OverviewLayout result = layout;
    size_t next = 0;
    std::set<std::string> slotted;  // a repeated id in a hand-made layout takes one slot
    for (auto& slot : result.cards) {
        if (std::find(wanted.begin(), wanted.end(), slot.id) == wanted.end() ||
            !slotted.insert(slot.id).second)
            continue;
        slot = *layout.card(wanted[next++]);
    }
    return result;
}

std::vector<std::string> LayoutOps::moving(const std::string& id, int toIndex,
                                           std::vector<std::string> order) {
    const auto found = std::find(order.begin(), order.end(), id);
    if (found == order.end()) return order;
    order.erase(found);
    const int index = std::clamp(toIndex, 0, static_cast<int>(order.size()));
    order.insert(order.begin() + index, id);
    return order;
}

namespace {

// A candidate on that side with its cost, ordered cheapest first, then upper, then left.
struct Candidate {
    double cost;
    double y;
    double x;
    std::string id;
    bool operator<(const Candidate& other) const {
        return std::tie(cost, y, x, id) < std::tie(other.cost, other.y, other.x, other.id);
    }
};

std::vector<Candidate> candidates(const std::string& id, MoveDirection direction,
                                  const Frames& frames) {
    std::vector<Candidate> found;
    const auto self = frames.find(id);
    if (self == frames.end()) return found;
    const PointRect& from = self->second;
    for (const auto& [otherID, other] : frames) {
        if (otherID == id || !LayoutOps::liesToward(from, other, direction)) continue;
        const double dx = std::abs(other.midX() - from.midX());
        const double dy = std::abs(other.midY() - from.midY());
        const bool across = direction == MoveDirection::left || direction == MoveDirection::right;
        found.push_back({across ? dx + 2 * dy : dy + 2 * dx, other.y, other.x, otherID});
    }
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace

bool LayoutOps::liesToward(const PointRect& before, const PointRect& after,
                           MoveDirection direction) {
    switch (direction) {
        case MoveDirection::left: return after.midX() < before.x;
        case MoveDirection::right: return before.maxX() < after.midX();
        case MoveDirection::up: return after.midY() < before.y;
        case MoveDirection::down: return before.maxY() < after.midY();
    }
    return false;
}

bool LayoutOps::movedToward(const PointRect& before, const PointRect& after,
                            MoveDirection direction) {
    switch (direction) {
        case MoveDirection::left: return after.x < before.x && after.midX() < before.midX();
        case MoveDirection::right: return after.maxX() > before.maxX() && after.midX() > before.midX();
        case MoveDirection::up: return after.y < before.y && after.midY() < before.midY();
        case MoveDirection::down: return after.maxY() > before.maxY() && after.midY() > before.midY();
    }
    return false;
}

std::optional<std::string> LayoutOps::neighbour(const std::string& id, MoveDirection direction,
                                                const Frames& frames) {
    const auto found = candidates(id, direction, frames);
    if (found.empty()) return std::nullopt;
    return found.front().id;
}

std::optional<std::vector<std::string>> LayoutOps::keyboardMove(
    const std::string& id, MoveDirection direction, const OverviewLayout& layout,
    const Availability& available, const OverviewCardRegistry& registry) {
    const auto order = visibleOrder(layout, available, registry);
    const auto self = std::find(order.begin(), order.end(), id);
    if (self == order.end()) return std::nullopt;
    const Frames before = frames(layout, available, registry);
    const PointRect from = before.at(id);

    const auto carries = [&](const std::vector<std::string>& tried) {
        const Frames after = frames(applying(tried, layout), available, registry);
        return movedToward(from, after.at(id), direction);
    };
    for (const auto& candidate : candidates(id, direction, before)) {
        const auto other = std::find(order.begin(), order.end(), candidate.id);
        std::vector<std::string> traded = order;
        std::iter_swap(traded.begin() + (self - order.begin()),
                       traded.begin() + (other - order.begin()));
        if (carries(traded)) return traded;
        auto taken = moving(id, static_cast<int>(other - order.begin()), order);
        if (carries(taken)) return taken;
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> LayoutOps::readingStep(
    const std::string& id, int by, const OverviewLayout& layout, const Availability& available,
    const OverviewCardRegistry& registry) {
    auto order = visibleOrder(layout, available, registry);
    const auto self = std::find(order.begin(), order.end(), id);
    if (self == order.end() || by == 0) return std::nullopt;
    const long index = self - order.begin();
    const long target = index + (by < 0 ? -1 : 1);
    if (target < 0 || target >= static_cast<long>(order.size())) return std::nullopt;
    std::iter_swap(order.begin() + index, order.begin() + target);
    return order;
}

CardSize LayoutOps::snappedSize(const std::string& id, double width, double height,
                                CardSize current, double hysteresis,
                                const OverviewCardRegistry& registry) {
    const OverviewCardKind* kind = registry.kind(id);
    if (!kind) return current;
    std::optional<CardSize> best;
    double bestDistance = 0;
    for (const CardSize size : kind->sizes) {
        const GridSpan span = kind->span(size);
        double distance = std::hypot(width - GridMetrics::width(span.cols),
                                     (height - GridMetrics::height(span.rows)) * 1.3);
        if (size == current) distance -= hysteresis + 0.001;
        if (!best || distance < bestDistance) {
            best = size;
            bestDistance = distance;
        }
    }
    return best.value_or(current);
}

OverviewLayout LayoutOps::settingSize(const std::string& id, CardSize size, OverviewLayout layout) {
    for (auto& card : layout.cards)
        if (card.id == id) card.size = size;
    return layout;
}

OverviewLayout LayoutOps::settingHidden(const std::string& id, bool hidden,
                                        OverviewLayout layout) {
    for (auto& card : layout.cards)
        if (card.id == id) card.hidden = hidden;
    return layout;
}

}  // namespace trotlet::layout
