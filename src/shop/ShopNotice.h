#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace trotlet::shop {

// A banner in the shop that stays until the user dismisses it ("shop.notice.dismiss").
struct ShopNotice {
    enum class Kind {
        restoredFromBackup,
        resetAfterCorruption,
        newerSchema,
        unreadableFile,
        balanceCorrected,
        clockJumpedForward,
        clockBehind,
    };
    Kind kind = Kind::restoredFromBackup;
    std::string fileName;    // the file the body names, where it names one
    int64_t correction = 0;  // for balanceCorrected
    // For restoredFromBackup: there was no shop file at all (deleted, or never written after a
    // restore on a full disk), so `fileName` is the backup that was used.
    bool fileMissing = false;

    std::string_view kindName() const;
    std::string title() const;
    std::string body() const;

    friend bool operator==(const ShopNotice&, const ShopNotice&) = default;
};

// Pending notices, oldest first. Raising a kind that is already pending doesn't stack a
// second banner.
class ShopNotices {
public:
    bool raise(ShopNotice notice);
    void dismiss(ShopNotice::Kind kind);
    const std::vector<ShopNotice>& pending() const { return pending_; }

private:
    std::vector<ShopNotice> pending_;
};

}  // namespace trotlet::shop
