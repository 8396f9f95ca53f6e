#include "layout/OverviewLayout.h"

#include <nlohmann/json.hpp>

#include "json/ParseBounded.h"

namespace trotlet::layout {

std::vector<std::string> OverviewLayout::hiddenIDs() const {
    std::vector<std::string> ids;
    for (const auto& c : cards)
        if (c.hidden) ids.push_back(c.id);
    return ids;
}

const OverviewLayout::Card* OverviewLayout::card(std::string_view id) const {
    for (const auto& c : cards)
        if (c.id == id) return &c;
    return nullptr;
}

namespace {

std::optional<OverviewLayout::Card> decodeCard(const nlohmann::json& node) {
    if (!node.is_object()) return std::nullopt;
    const auto id = node.find("id");
    if (id == node.end() || !id->is_string() || id->get_ref<const std::string&>().empty())
        return std::nullopt;
    const auto size = node.find("size");
    if (size == node.end() || !size->is_string()) return std::nullopt;
    const auto parsedSize = cardSize(size->get_ref<const std::string&>());
    if (!parsedSize) return std::nullopt;
    OverviewLayout::Card card{id->get<std::string>(), *parsedSize, false};
    // A hidden flag of the wrong type is treated like a missing one: the card stays and shows.
    if (const auto hidden = node.find("hidden"); hidden != node.end() && hidden->is_boolean())
        card.hidden = hidden->get<bool>();
    return card;
}

}  // namespace

std::optional<OverviewLayout> OverviewLayout::decode(std::string_view text) {
    if (text.empty()) return std::nullopt;
    // The parser rejects ill-formed UTF-8 along with every other syntax error.
    const nlohmann::json root = trotlet::json::parseBounded(text);
    if (root.is_discarded() || !root.is_object()) return std::nullopt;

    const auto version = root.find("version");
    if (version == root.end() || !version->is_number_integer()) return std::nullopt;
    const auto number = version->get<long long>();
    if (number < 0 || number >= 2) return std::nullopt;

    const auto cards = root.find("cards");
    if (cards == root.end() || !cards->is_array()) return std::nullopt;

    OverviewLayout layout;
    layout.version = static_cast<int>(number);
    for (const auto& node : *cards)
        if (auto card = decodeCard(node)) layout.cards.push_back(std::move(*card));
    if (layout.cards.empty()) return std::nullopt;
    return layout;
}

std::string OverviewLayout::json() const {
    nlohmann::ordered_json root;
    root["version"] = version;
    root["cards"] = nlohmann::ordered_json::array();
    for (const auto& c : cards) {
        nlohmann::ordered_json card;
        card["id"] = c.id;
        card["size"] = std::string(name(c.size));
        card["hidden"] = c.hidden;
        root["cards"].push_back(std::move(card));
    }
    // Ids come from decoded documents or the registry; replacing bad bytes keeps a hand-made
    // id from ever throwing here.
    return root.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string describe(const OverviewLayout& layout) {
    std::string out;
    for (const auto& c : layout.cards) {
        if (!out.empty()) out += ' ';
        out += c.id;
        out += ':';
        out += name(c.size);
        if (c.hidden) out += "(hidden)";
    }
    return out;
}

}  // namespace trotlet::layout
