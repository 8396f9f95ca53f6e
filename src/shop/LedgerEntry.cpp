#include "shop/LedgerEntry.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

namespace trotlet::shop {

int64_t checkedAdd(int64_t a, int64_t b) {
    int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        std::fputs("trotlet: Fish arithmetic overflowed; stopping rather than corrupting the ledger\n", stderr);
        std::abort();
    }
    return sum;
}

nlohmann::ordered_json LedgerEntry::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["id"] = id;
    out["date"] = formatIso8601(date);
    out["amount"] = amount;
    out["reason"] = reason.toJson();
    out["balanceAfter"] = balanceAfter;
    out["merged"] = merged;
    return out;
}

namespace {

bool readInt64(const nlohmann::json& value, int64_t& out) {
    if (value.is_number_unsigned()) {
        const auto u = value.get<uint64_t>();
        if (u > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) return false;
        out = static_cast<int64_t>(u);
        return true;
    }
    if (value.is_number_integer()) {
        out = value.get<int64_t>();
        return true;
    }
    return false;
}

}  // namespace

std::variant<LedgerEntry, std::string> LedgerEntry::fromJson(const nlohmann::json& json, IdGenerator& ids) {
    if (!json.is_object()) return std::string("ledger row is not an object");
    LedgerEntry entry;

    const auto date = json.find("date");
    if (date == json.end() || !date->is_string()) return std::string("ledger row has no date");
    const auto parsed = parseIso8601(date->get<std::string>());
    if (!parsed) return "ledger row date \"" + date->get<std::string>() + "\" is not a timestamp";
    entry.date = *parsed;

    const auto amount = json.find("amount");
    if (amount == json.end() || !readInt64(*amount, entry.amount))
        return std::string("ledger row has no whole-Fish amount");

    const auto reason = json.find("reason");
    if (reason == json.end()) return std::string("ledger row has no reason");
    auto decoded = LedgerReason::fromJson(*reason);
    if (!decoded) return "ledger row reason " + reason->dump() + " is not known";
    entry.reason = std::move(*decoded);

    const auto id = json.find("id");
    entry.id = id != json.end() && id->is_string() && !id->get<std::string>().empty() ? id->get<std::string>()
                                                                                     : ids.next();
    const auto after = json.find("balanceAfter");
    if (after == json.end() || !readInt64(*after, entry.balanceAfter)) entry.balanceAfter = 0;
    const auto merged = json.find("merged");
    if (merged == json.end() || !readInt64(*merged, entry.merged) || entry.merged < 1) entry.merged = 1;
    return entry;
}

void recomputeRunningBalances(std::vector<LedgerEntry>& ledger) {
    int64_t running = 0;
    for (auto& row : ledger) {
        running = checkedAdd(running, row.amount);
        row.balanceAfter = running;
    }
}

}  // namespace trotlet::shop
