#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <nlohmann/json.hpp>

#include "shop/Calendar.h"
#include "shop/ShopState.h"

namespace trotlet::shop {

struct DecodeError {
    enum class Kind { newerSchema, broken, unreadableHeader };
    Kind kind = Kind::broken;
    int version = 0;      // for newerSchema
    std::string message;  // what was wrong, for logs and the harness
};

// Fields that only a version 1 file has, handed to the migrator.
struct Version1Fields {
    std::optional<Timestamp> lastSaverUsed;
};

struct DecodedState {
    ShopState state;
    int fromVersion = ShopState::currentSchemaVersion;
};

// "Strict money, lenient extras": the balance and every ledger row must decode exactly or
// the whole file is broken; any other field that can't be read takes its default.
class ShopStateCodec {
public:
    explicit ShopStateCodec(const Calendar& calendar) : calendar_(calendar) {}

    static nlohmann::ordered_json toJson(const ShopState& state);
    // Compact JSON, as written to disk.
    static std::string encode(const ShopState& state);
    std::variant<DecodedState, DecodeError> decode(std::string_view bytes) const;

private:
    const Calendar& calendar_;
};

// Brings an older file's state to the current schema without losing a Fish.
struct ShopStateMigrator {
    static void upgrade(ShopState& state, int fromVersion, const Version1Fields& v1, const Calendar& calendar,
                        bool todayHadPassiveProgress, IdGenerator& ids);
};

}  // namespace trotlet::shop
