// The Overview layout document as the settings hold it: the lenient decoder, the resolution
// against the card registry and the packer that places what survives.

#include <set>

#include "layout/BentoPacker.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"
#include "layout/OverviewLayoutResolver.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::layout;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    const std::optional<OverviewLayout> stored = OverviewLayout::decode(text);
    if (stored) {
        FUZZ_CHECK(stored->version < 2 && !stored->cards.empty());
        for (const auto& card : stored->cards) FUZZ_CHECK(!card.id.empty());
        // What the app writes back must read back as the same layout.
        const auto again = OverviewLayout::decode(stored->json());
        FUZZ_CHECK(again && again->cards == stored->cards);
        (void)describe(*stored);
    }

    const auto& registry = OverviewCardRegistry::standard();
    // The older settings' hidden list is a second way in: the same bytes, one id a line.
    std::vector<std::string> legacyHidden;
    for (auto id : fuzz::split(text, '\n', 64)) legacyHidden.emplace_back(id);
    const auto resolved = OverviewLayoutResolver::resolve(stored, legacyHidden, registry);
    FUZZ_CHECK(resolved.version == OverviewLayout::currentVersion);
    FUZZ_CHECK(resolved.cards.size() == registry.all().size());
    std::set<std::string> ids;
    for (const auto& card : resolved.cards) FUZZ_CHECK(ids.insert(card.id).second);
    (void)OverviewLayoutResolver::canReset(stored.has_value(), resolved, registry);

    const auto items = OverviewLayoutResolver::items(
        resolved, [&](std::string_view id) { return id.size() % 2 == size % 2; }, registry);
    const auto packed = BentoPacker::pack(items, GridMetrics::columns);
    FUZZ_CHECK(packed.rects.size() == items.size());
    for (const auto& [id, rect] : packed.rects) {
        FUZZ_CHECK(rect.col >= 0 && rect.right() <= GridMetrics::columns && rect.row >= 0);
        for (const auto& [other, otherRect] : packed.rects)
            if (other != id) FUZZ_CHECK(!rect.intersects(otherRect));
    }
    return 0;
}
