#include "layout/LayoutSelfCheck.h"

#include <algorithm>
#include <cstdio>

#include "layout/BentoPacker.h"
#include "layout/LayoutEditSession.h"
#include "layout/LayoutFitCheck.h"
#include "layout/LayoutFuzz.h"
#include "layout/LayoutOps.h"
#include "layout/LayoutStore.h"
#include "layout/OverviewLayoutResolver.h"
#include "settings/AppSettings.h"

namespace trotlet::layout {

namespace {

using Json = nlohmann::ordered_json;

Json spanJson(GridSpan span) { return Json::array({span.cols, span.rows}); }

Json rectJson(const GridRect& rect) {
    return Json{
        {"col", rect.col}, {"row", rect.row}, {"cols", rect.span.cols}, {"rows", rect.span.rows}};
}

Json cardJson(const std::string& id, const GridRect& rect) {
    Json card{{"id", id}};
    card.update(rectJson(rect));
    return card;
}

std::string at(const GridRect& rect) {
    char text[48];
    std::snprintf(text, sizeof text, "col %d row %d", rect.col, rect.row);
    return text;
}

// A settings session as the app builds one, on whatever storage the check was given.
struct Session {
    explicit Session(std::shared_ptr<settings::SettingsBacking> backing)
        : settings(settings::DefaultsStore(std::move(backing)), false),
          store(settings.layout(), settings.monitoring()) {}
    settings::AppSettings settings;
    LayoutStore store;
};

class Checker {
public:
    explicit Checker(const LayoutSelfCheck::Options& options) : options(options) {}

    LayoutSelfCheck::Report run() {
        report.json["grid"] = Json{{"columns", GridMetrics::columns},
                                   {"cellWidth", GridMetrics::cellWidth},
                                   {"cellHeight", GridMetrics::cellHeight},
                                   {"gap", GridMetrics::gap}};
        report.json["registry"] = registryJson();
        report.json["packing"] = packing();
        report.json["migration"] = migration();
        report.json["decoding"] = decoding();
        report.json["persistence"] = persistence();
        report.json["reset"] = resetCases();
        report.json["edits"] = edits();
        report.json["fuzz"] = fuzz();
        report.json["failures"] = report.failures;
        report.json["ok"] = report.ok();
        return std::move(report);
    }

private:
    const OverviewCardRegistry& registry = OverviewCardRegistry::standard();
    const OverviewLayout defaults = OverviewLayoutResolver::defaultLayout(registry);
    const LayoutSelfCheck::Options& options;
    LayoutSelfCheck::Report report;

    // Adds a case to `list`, recording `failure` (with `detail` appended) when it did not hold.
    void verdict(Json& list, Json entry, bool ok, const std::string& failure,
                 const std::string& detail = "") {
        entry["ok"] = ok;
        if (!ok) report.failures.push_back(detail.empty() ? failure : failure + " " + detail);
        list.push_back(std::move(entry));
    }

    // Without a given storage both sessions of the round trip share one dictionary.
    std::shared_ptr<settings::SettingsBacking> memory =
        std::make_shared<settings::InMemorySettingsBacking>();
    std::shared_ptr<settings::SettingsBacking> openSettings() const {
        return options.openSettings ? options.openSettings() : memory;
    }

    Json registryJson() const {
        Json kinds = Json::array();
        for (const auto& kind : registry.all()) {
            Json sizes = Json::array();
            Json spans = Json::object();
            for (const auto size : kind.sizes) {
                sizes.push_back(name(size));
                spans[std::string(name(size))] = spanJson(kind.span(size));
            }
            kinds.push_back(Json{{"id", kind.id},
                                 {"title", kind.title},
                                 {"sizes", sizes},
                                 {"defaultSize", name(kind.defaultSize)},
                                 {"spans", spans},
                                 {"defaultVisible", kind.defaultVisible}});
        }
        return kinds;
    }

    Json packing() {
        struct Scenario {
            std::string name;
            std::vector<BentoPacker::Item> items;
            std::vector<GridRect> expected;
        };
        const GridSpan s{2, 4}, m{3, 6}, w{6, 3};
        std::vector<Scenario> scenarios = {
            {"eight small cards",
             {{"a", s}, {"b", s}, {"c", s}, {"d", s}, {"e", s}, {"f", s}, {"g", s}, {"h", s}},
             {{0, 0, s},
              {2, 0, s},
              {4, 0, s},
              {0, 4, s},
              {2, 4, s},
              {4, 4, s},
              {0, 8, s},
              {2, 8, s}}},
            {"medium then small", {{"a", m}, {"b", s}}, {{0, 0, m}, {4, 0, s}}},
            {"wide after small", {{"a", s}, {"b", w}}, {{0, 0, s}, {0, 4, w}}},
            {"duplicate id placed once", {{"a", m}, {"a", s}, {"b", m}}, {{0, 0, m}, {3, 0, m}}},
        };
        // The fresh Overview: every default card in its band, no hole anywhere.
        const auto defaultItems =
            OverviewLayoutResolver::items(defaults, everythingAvailable(), registry);
        scenarios.push_back({"default Overview",
                             defaultItems,
                             {{0, 0, m},
                              {3, 0, m},
                              {0, 6, w},
                              {0, 9, s},
                              {2, 9, s},
                              {4, 9, s},
                              {0, 13, m},
                              {3, 13, m}}});

        Json list = Json::array();
        for (const auto& scenario : scenarios) {
            const auto result = BentoPacker::pack(scenario.items, GridMetrics::columns);
            Json entry{{"name", scenario.name}};
            Json cards = Json::array();
            for (const auto& id : result.reading)
                cards.push_back(cardJson(id, result.rects.at(id)));
            entry["cards"] = cards;
            Json holes = Json::array();
            for (const auto& hole : result.holes) holes.push_back(rectJson(hole));
            entry["holes"] = holes;
            std::string wrong;
            if (result.reading.size() != scenario.expected.size())
                wrong = "placed " + std::to_string(result.reading.size()) + " cards";
            for (size_t i = 0; wrong.empty() && i < scenario.expected.size(); ++i) {
                const auto& got = result.rects.at(result.reading[i]);
                if (got != scenario.expected[i])
                    wrong = "placed " + result.reading[i] + " at " + at(got) + ", expected " +
                            at(scenario.expected[i]);
            }
            if (wrong.empty() && scenario.name == "default Overview" && !result.holes.empty())
                wrong = "left " + std::to_string(result.holes.size()) + " holes";
            if (BentoPacker::pack(scenario.items, GridMetrics::columns) != result)
                report.failures.push_back("packing is not deterministic: " + scenario.name);
            verdict(list, entry, wrong.empty(), "packing \"" + scenario.name + "\"", wrong);
        }
        return list;
    }

    Json migration() {
        Json list = Json::array();
        {
            const auto layout = OverviewLayoutResolver::resolve(std::nullopt, {}, registry);
            const bool ok =
                layout == defaults && layout.hiddenIDs() == std::vector<std::string>{"weather"};
            verdict(list,
                    Json{{"name", "v0 fixed grid, nothing hidden"},
                         {"hiddenCards", Json::array()},
                         {"layout", describe(layout)}},
                    ok, "v0 migration changed the default layout:", describe(layout));
        }
        {
            const std::vector<std::string> legacy{"gpu", "battery", "bogus"};
            const auto layout = OverviewLayoutResolver::resolve(std::nullopt, legacy, registry);
            bool ok = layout.hiddenIDs() == std::vector<std::string>{"gpu", "battery", "weather"} &&
                      layout.cards.size() == registry.all().size() && !layout.card("bogus");
            for (size_t i = 0; ok && i < layout.cards.size(); ++i)
                ok = layout.cards[i].id == defaults.cards[i].id &&
                     layout.cards[i].size == defaults.cards[i].size;
            verdict(list,
                    Json{{"name", "v0 fixed grid, hiddenCards [gpu, battery, bogus]"},
                         {"hiddenCards", legacy},
                         {"layout", describe(layout)}},
                    ok, "v0 migration lost hiddenCards:", describe(layout));
        }
        return list;
    }

    Json decoding() {
        Json list = Json::array();
        const auto decoded = [&](const std::string& text) {
            return OverviewLayoutResolver::resolve(OverviewLayout::decode(text), {}, registry);
        };
        {
            const std::string doc =
                R"({"version":1,"cards":[{"id":"radio","size":"wide"},{"id":"cpu","size":"large"},)"
                R"({"id":"cpu","size":"small"},{"id":"gpu","size":"huge"}]})";
            const auto layout = decoded(doc);
            OverviewLayout expected = defaults;
            expected.cards.erase(expected.cards.begin());
            expected.cards.insert(expected.cards.begin(), {"cpu", CardSize::large, false});
            verdict(list,
                    Json{{"name", "v1 with an unknown id, a duplicate and an unsupported size"},
                         {"document", doc},
                         {"layout", describe(layout)}},
                    layout == expected, "lenient decoding went wrong:", describe(layout));
        }
        {
            const std::string doc = R"({"version":9,"cards":[{"id":"cpu","size":"large"}]})";
            const bool accepted = OverviewLayout::decode(doc).has_value();
            verdict(list,
                    Json{{"name", "future schema v9 (ignored, default shown)"},
                         {"document", doc},
                         {"layout", describe(decoded(doc))}},
                    !accepted && decoded(doc) == defaults, "future schema accepted");
        }
        {
            const std::string doc = R"({"version":1,"cards":[{"id":"disk","size":"small"}]})";
            const auto layout = OverviewLayout::decode(doc);
            const bool ok = layout && layout->cards.size() == 1 && !layout->cards[0].hidden;
            verdict(list,
                    Json{{"name", "missing hidden field defaults to visible"},
                         {"document", doc},
                         {"layout", layout ? describe(*layout) : "none"}},
                    ok, "missing hidden field hid the card");
        }
        for (const auto& [label, doc] : std::vector<std::pair<std::string, std::string>>{
                 {"empty text", ""},
                 {"not JSON", "cards: cpu, memory"},
                 {"not UTF-8",
                  "{\"version\":1,\"cards\":[{\"id\":\"cp\xff\",\"size\":\"small\"}]}"},
                 {"an array, not an object", R"([{"id":"cpu","size":"small"}])"},
                 {"no usable card",
                  R"({"version":1,"cards":[{"id":"","size":"small"},{"size":"wide"}]})"},
                 {"version as text", R"({"version":"1","cards":[{"id":"cpu","size":"small"}]})"}}) {
            const bool accepted = OverviewLayout::decode(doc).has_value();
            verdict(list, Json{{"name", "garbage: " + label}, {"accepted", accepted}}, !accepted,
                    "garbage accepted:", label);
        }
        return list;
    }

    Json persistence() {
        OverviewLayout edited = defaults;
        edited = LayoutOps::settingSize("network", CardSize::small, edited);
        edited = LayoutOps::settingHidden("heat", true, edited);
        edited = LayoutOps::settingHidden("weather", false, edited);
        edited = LayoutOps::applying(
            LayoutOps::moving("disk", 0,
                              LayoutOps::visibleOrder(edited, everythingAvailable(), registry)),
            edited);

        OverviewLayout reopened;
        {
            Session first(openSettings());
            first.store.commit(edited);
        }
        {
            Session second(openSettings());
            reopened = second.store.layout();
        }
        const auto text = edited.json();
        const auto decoded = OverviewLayout::decode(text);
        const bool ok = reopened == edited && decoded && *decoded == edited;
        Json list = Json::array();
        verdict(list,
                Json{{"name", "commit, reopen the settings and read back"},
                     {"settings", options.settingsDescription},
                     {"document", text},
                     {"layout", describe(reopened)}},
                ok, "persistence round trip changed the layout:", describe(reopened));
        return list;
    }

    Json resetCases() {
        Json list = Json::array();
        const auto fresh = [] { return std::make_shared<settings::InMemorySettingsBacking>(); };
        {
            Session s(fresh());
            verdict(
                list,
                Json{{"name", "fresh user: nothing to reset"}, {"canReset", s.store.canReset()}},
                !s.store.canReset(), "reset offered to a fresh user");
        }
        {
            Session s(fresh());
            s.settings.monitoring().setHiddenCards({"gpu", "battery"});
            const bool offered = s.store.canReset();
            s.store.reset();
            const bool cleared =
                s.settings.monitoring().hiddenCards().empty() && s.store.layout() == defaults;
            verdict(list,
                    Json{{"name", "v1.0 user who hid gpu and battery may reset"},
                         {"canReset", offered},
                         {"after", describe(s.store.layout())}},
                    offered && cleared,
                    offered ? "reset kept the v1.0 hiddenCards"
                            : "reset not offered for v1.0 hiddenCards");
        }
        {
            Session s(fresh());
            s.settings.monitoring().setHiddenCards({"weather"});
            verdict(list,
                    Json{{"name", "legacy list holding only weather: nothing to reset"},
                         {"canReset", s.store.canReset()}},
                    !s.store.canReset(), "reset offered for a list that changes nothing");
        }
        {
            Session s(fresh());
            s.store.commit(LayoutOps::settingSize("cpu", CardSize::large, defaults));
            const bool offered = s.store.canReset();
            s.store.reset();
            const bool cleared = !s.settings.layout().overview() && !s.store.canReset() &&
                                 s.store.layout() == defaults;
            verdict(list,
                    Json{{"name", "edited layout may reset"},
                         {"canReset", offered},
                         {"after", describe(s.store.layout())}},
                    offered && cleared, "reset did not clear the stored layout");
        }
        return list;
    }

    Json edits();
    Json fuzz() {
        LayoutFuzz fuzzer(options.seed, registry);
        const auto totals = fuzzer.run(options.layouts, options.editsPerLayout);
        Json failures = Json::array();
        for (const auto& f : totals.failures) {
            failures.push_back(
                Json{{"message", f.message}, {"count", f.count}, {"examples", f.details}});
            report.failures.push_back(f.message + " (" + std::to_string(f.count) +
                                      "x, first: " + f.details.front() + ")");
        }
        return Json{{"seed", options.seed},
                    {"layouts", totals.layouts},
                    {"editsPerLayout", options.editsPerLayout},
                    {"edits", totals.edits},
                    {"cardsPacked", totals.cards},
                    {"keyboardMoves", totals.keyboardMoves},
                    {"blockedMoves", totals.blockedMoves},
                    {"failures", failures}};
    }
};

Json Checker::edits() {
    Json list = Json::array();
    const auto everything = everythingAvailable();
    const auto centre = [](const PointRect& r) { return std::pair{r.midX(), r.midY()}; };

    {  // Drag by the pointer, in small steps, to the top-left corner.
        Session s(std::make_shared<settings::InMemorySettingsBacking>());
        LayoutEditSession edit(s.store, everything);
        const auto [x, y] = centre(edit.frames().at("battery"));
        edit.pointerPressed(x, y);
        for (int i = 1; i <= 10; ++i) edit.pointerMoved(x - (x - 4) * i / 10, y - (y - 4) * i / 10);
        edit.pointerReleased(4, 4);
        const auto order = LayoutOps::visibleOrder(s.store.layout(), everything, registry);
        verdict(
            list,
            Json{{"name", "drag battery to the top-left"}, {"after", describe(s.store.layout())}},
            !order.empty() && order.front() == "battery",
            "drag to the top-left did not put battery first:", describe(s.store.layout()));
    }
    {  // ⌥↑ on heat, which sits below network, then ⌥↓ back.
        Session s(std::make_shared<settings::InMemorySettingsBacking>());
        LayoutEditSession edit(s.store, everything);
        const GridRect before =
            BentoPacker::pack(OverviewLayoutResolver::items(defaults, everything, registry), 6)
                .rects.at("heat");
        edit.select("heat");
        edit.keyPressed(LayoutEditSession::Key::up, true);
        const GridRect after =
            BentoPacker::pack(OverviewLayoutResolver::items(s.store.layout(), everything, registry),
                              6)
                .rects.at("heat");
        verdict(list,
                Json{{"name", "option-up on heat"}, {"before", at(before)}, {"after", at(after)}},
                after.row < before.row &&
                    LayoutOps::movedToward(GridMetrics::points(before), GridMetrics::points(after),
                                           MoveDirection::up),
                "option-up did not move heat into the row above:", at(before) + " -> " + at(after));
        edit.keyPressed(LayoutEditSession::Key::down, true);
        verdict(list,
                Json{{"name", "option-down returns heat"}, {"after", describe(s.store.layout())}},
                s.store.layout() == defaults,
                "option-down did not return heat:", describe(s.store.layout()));
    }
    {  // ⌥← then ⌥→ as pure operations.
        const auto left =
            LayoutOps::keyboardMove("battery", MoveDirection::left, defaults, everything, registry);
        const auto moved = left ? LayoutOps::applying(*left, defaults) : defaults;
        const auto right =
            LayoutOps::keyboardMove("battery", MoveDirection::right, moved, everything, registry);
        const auto back = right ? LayoutOps::applying(*right, moved) : moved;
        verdict(list,
                Json{{"name", "option-left then option-right on battery"},
                     {"moved", describe(moved)},
                     {"back", describe(back)}},
                left && back == defaults,
                "option-left then option-right did not return battery:", describe(back));
    }
    {  // Every default card: ⌥↑ blocked exactly in the top row, sizes kept, moved that way.
        const Frames frames = LayoutOps::frames(defaults, everything, registry);
        std::vector<std::string> blocked;
        for (const auto& [id, frame] : frames) {
            const auto up =
                LayoutOps::keyboardMove(id, MoveDirection::up, defaults, everything, registry);
            if (!up) blocked.push_back(id);
            std::string problem;
            if (frame.y > 0 && !up)
                problem = "⌥↑ blocked below the top row";
            else if (frame.y == 0 && up)
                problem = "option-up moved a top-row card";
            else if (up &&
                     !LayoutOps::movedToward(
                         frame,
                         LayoutOps::frames(LayoutOps::applying(*up, defaults), everything, registry)
                             .at(id),
                         MoveDirection::up))
                problem = "didn't move it that way";
            if (!problem.empty()) report.failures.push_back(problem + ": " + id);
        }
        std::sort(blocked.begin(), blocked.end());
        verdict(list,
                Json{{"name", "option-up is blocked only in the top row"}, {"blocked", blocked}},
                blocked == std::vector<std::string>{"cpu", "memory"},
                "option-up blocked the wrong cards:", Json(blocked).dump());
    }
    {  // With memory hidden, ⌥ moves pass over it.
        const auto hidden = LayoutOps::settingHidden("memory", true, defaults);
        const Frames frames = LayoutOps::frames(hidden, everything, registry);
        bool ok = !frames.count("memory");
        for (const auto& [id, frame] : frames)
            for (const auto d : {MoveDirection::left, MoveDirection::right, MoveDirection::up,
                                 MoveDirection::down}) {
                if (LayoutOps::neighbour(id, d, frames) == "memory") ok = false;
                if (const auto order =
                        LayoutOps::keyboardMove(id, d, hidden, everything, registry)) {
                    const auto moved = LayoutOps::applying(*order, hidden);
                    if (moved.cards[1].id != "memory" || !moved.cards[1].hidden) ok = false;
                }
            }
        verdict(list, Json{{"name", "hidden memory takes no part in option moves"}}, ok,
                "option moves touched hidden memory");
    }
    {  // Resize snapping.
        const auto snapped = LayoutOps::snappedSize("heat", 112 + 68, 104 + 56, CardSize::small,
                                                    LayoutEditSession::resizeHysteresis, registry);
        verdict(list, Json{{"name", "resize snap +68,+56 from small"}, {"size", name(snapped)}},
                snapped == CardSize::medium, "resize snap +68,+56 != medium");

        Session s(std::make_shared<settings::InMemorySettingsBacking>());
        LayoutEditSession edit(s.store, everything);
        const PointRect heat = edit.frames().at("heat");
        edit.pointerPressed(heat.maxX() - 2, heat.maxY() - 2);
        for (int i = 1; i <= 4; ++i)
            edit.pointerMoved(heat.maxX() - 2 + 17 * i, heat.maxY() - 2 + 14 * i);
        edit.pointerReleased(heat.maxX() - 2 + 68, heat.maxY() - 2 + 56);
        const auto dragged = s.store.layout().card("heat")->size;
        verdict(list, Json{{"name", "grip drag +68,+56 on heat"}, {"size", name(dragged)}},
                dragged == CardSize::medium, "resize snap +68,+56 != medium",
                "(grip drag gave " + std::string(name(dragged)) + ")");

        std::string changed;
        for (const auto& kind : registry.all())
            for (const auto size : kind.sizes) {
                const GridSpan span = kind.span(size);
                for (const double hysteresis : {0.0, LayoutEditSession::resizeHysteresis}) {
                    const auto kept = LayoutOps::snappedSize(kind.id, GridMetrics::width(span.cols),
                                                             GridMetrics::height(span.rows), size,
                                                             hysteresis, registry);
                    if (kept != size && changed.empty())
                        changed = kind.id + " " + std::string(name(size)) + " -> " +
                                  std::string(name(kept));
                }
            }
        Session g(std::make_shared<settings::InMemorySettingsBacking>());
        LayoutEditSession grip(g.store, everything);
        const PointRect cpu = grip.frames().at("cpu");
        grip.pointerPressed(cpu.maxX() - 1, cpu.maxY() - 1);
        grip.pointerReleased(cpu.maxX() - 1, cpu.maxY() - 1);
        if (changed.empty() && (g.settings.layout().overview() || g.store.layout() != defaults))
            changed = "picking up cpu's grip stored a layout";
        verdict(list, Json{{"name", "grip pick-up keeps every size"}}, changed.empty(),
                "grip pick-up changes size:", changed);

        const auto held = LayoutOps::snappedSize("heat", 144, 134, CardSize::small,
                                                 LayoutEditSession::resizeHysteresis, registry);
        const auto without = LayoutOps::snappedSize("heat", 144, 134, CardSize::small, 0, registry);
        verdict(list,
                Json{{"name", "hysteresis holds small at 144 x 134"},
                     {"size", name(held)},
                     {"withoutHysteresis", name(without)}},
                held == CardSize::small && without == CardSize::medium,
                "resize hysteresis did not hold the size");
    }
    {  // Hide and show.
        const auto hidden = LayoutOps::settingHidden("gpu", true, defaults);
        const auto shown = LayoutOps::settingHidden("gpu", false, hidden);
        const auto items = OverviewLayoutResolver::items(hidden, everything, registry);
        const bool gone =
            std::none_of(items.begin(), items.end(), [](const auto& i) { return i.id == "gpu"; });
        verdict(list, Json{{"name", "hide gpu, show it again"}, {"hidden", describe(hidden)}},
                gone && shown == defaults, "hide and show moved the card:", describe(shown));
    }
    return list;
}

}  // namespace

LayoutSelfCheck::Report LayoutSelfCheck::run(const Options& options) {
    return Checker(options).run();
}

}  // namespace trotlet::layout
