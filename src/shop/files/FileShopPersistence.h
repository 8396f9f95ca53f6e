#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "shop/ShopPersistence.h"

namespace trotlet::shop {

// The real shop file: "shop.json" in the app's data folder ($XDG_DATA_HOME/trotlet), with a
// daily "shop.backup.json" beside it. Plain POSIX files, no Qt, so it links into the platform
// layer and its tests need no application.
//
// Nothing the user earned is lost to a bad file: broken and newer files are moved aside under
// stamped names, a file that can't be read is never overwritten (saving stops for the run),
// and every write goes through "<file>.tmp" and a rename. A missing shop file beside a good
// backup is restored from it, and a backup is only replaced by a state that carries its history
// on; anything else (a fresh shop, an older or poorer copy) first moves the old backup aside as
// "shop.backup.<stamp>.json".
class FileShopPersistence final : public ShopPersistence {
public:
    static constexpr double backupIntervalSeconds = 86400;

    // `filePath` is the shop file; the backup is its sibling "<stem>.backup<ext>".
    FileShopPersistence(std::string filePath, const Calendar& calendar, std::function<Timestamp()> now,
                        uint64_t seed);

    static std::string defaultPath();
    static std::string backupPathFor(const std::string& filePath);

    ShopLoadResult loadResult() override;
    ShopSaveResult save(const ShopState& state) override;
    std::optional<std::string> fileDirectory() const override;

    bool savingAllowed() const { return savingAllowed_; }
    const std::string& filePath() const { return path_; }
    const std::string& backupPath() const { return backupPath_; }

private:
    ShopLoadResult fresh() const;
    std::optional<ShopState> loadBackup() const;
    ShopLoadResult restore(ShopState backup, ShopNotice notice);
    ShopSaveResult replaceBackup(std::string_view bytes, const ShopState& state);
    std::string stamp() const;

    std::string path_;
    std::string backupPath_;
    const Calendar& calendar_;
    std::function<Timestamp()> now_;
    uint64_t seed_;
    bool savingAllowed_ = true;
    Timestamp lastBackupAt_;
};

}  // namespace trotlet::shop
