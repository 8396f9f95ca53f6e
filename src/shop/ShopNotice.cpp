#include "shop/ShopNotice.h"

#include <algorithm>
#include <string_view>

namespace trotlet::shop {

std::string_view ShopNotice::kindName() const {
    switch (kind) {
    case Kind::restoredFromBackup: return "restoredFromBackup";
    case Kind::resetAfterCorruption: return "resetAfterCorruption";
    case Kind::newerSchema: return "newerSchema";
    case Kind::unreadableFile: return "unreadableFile";
    case Kind::balanceCorrected: return "balanceCorrected";
    case Kind::clockJumpedForward: return "clockJumpedForward";
    case Kind::clockBehind: return "clockBehind";
    }
    return {};
}

std::string ShopNotice::title() const {
    switch (kind) {
    case Kind::restoredFromBackup: return "Shop data restored";
    case Kind::resetAfterCorruption: return "Shop data was reset";
    case Kind::newerSchema: return "Shop data from a newer Trotlet";
    case Kind::unreadableFile: return "Shop data couldn't be opened";
    case Kind::balanceCorrected: return "Fish balance corrected";
    case Kind::clockJumpedForward: return "Your clock jumped ahead";
    case Kind::clockBehind: return "Your clock went back in time";
    }
    return {};
}

std::string ShopNotice::body() const {
    switch (kind) {
    case Kind::restoredFromBackup:
        if (fileMissing)
            return "Your shop file was missing, so Trotlet restored the last backup from " +
                   fileName;
        return "Your shop file couldn't be read, so Trotlet restored the last backup. The broken file is saved as " +
               fileName;
    case Kind::resetAfterCorruption:
        return "Your shop file couldn't be read, so Trotlet started fresh. The broken file is saved as " + fileName;
    case Kind::newerSchema:
        return "A newer Trotlet saved this shop. Trotlet started fresh and kept a copy as " + fileName;
    case Kind::unreadableFile:
        return "Trotlet couldn't read " + fileName +
               ", so it left the file untouched. Progress this session won't be saved until it can be read again.";
    case Kind::balanceCorrected:
        return "Your balance is now the sum of your Fish history (" +
               (correction > 0 ? std::string("+").append(std::to_string(correction)) : std::to_string(correction)) + ")";
    case Kind::clockJumpedForward:
        return "Trotlet keeps counting real days, so nothing is skipped or lost when you set it right.";
    case Kind::clockBehind: return "Check-ins and Golden Fish resume when your clock catches up.";
    }
    return {};
}

bool ShopNotices::raise(ShopNotice notice) {
    if (std::any_of(pending_.begin(), pending_.end(), [&](const auto& n) { return n.kind == notice.kind; }))
        return false;
    pending_.push_back(std::move(notice));
    return true;
}

void ShopNotices::dismiss(ShopNotice::Kind kind) {
    std::erase_if(pending_, [&](const auto& n) { return n.kind == kind; });
}

}  // namespace trotlet::shop
