#include "shop/files/FileShopPersistence.h"

#include "platform/linux/AtomicFile.h"
#include "platform/linux/XdgPaths.h"
#include "shop/ShopStateCodec.h"

namespace trotlet::shop {

namespace {

std::string baseName(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string directoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

FileShopPersistence::FileShopPersistence(std::string filePath, const Calendar& calendar,
                                         std::function<Timestamp()> now, uint64_t seed)
    : path_(std::move(filePath)),
      backupPath_(backupPathFor(path_)),
      calendar_(calendar),
      now_(std::move(now)),
      seed_(seed),
      lastBackupAt_(now_()) {}

std::string FileShopPersistence::defaultPath() { return platform::XdgPaths::dataDir() + "/shop.json"; }

std::string FileShopPersistence::backupPathFor(const std::string& filePath) {
    const auto slash = filePath.rfind('/');
    const size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const auto dot = filePath.rfind('.');
    if (dot == std::string::npos || dot <= nameStart) return filePath + ".backup";
    return filePath.substr(0, dot) + ".backup" + filePath.substr(dot);
}

std::optional<std::string> FileShopPersistence::fileDirectory() const { return directoryOf(path_); }

std::string FileShopPersistence::stamp() const { return platform::localStamp(static_cast<long long>(now_())); }

ShopLoadResult FileShopPersistence::fresh() const {
    ShopLoadResult result;
    result.state = ShopState::fresh(now_(), seed_);
    result.savingAllowed = savingAllowed_;
    return result;
}

std::optional<ShopState> FileShopPersistence::loadBackup() const {
    const platform::ReadResult read = platform::readWholeFile(backupPath_);
    if (read.status != platform::ReadStatus::ok) return std::nullopt;
    auto decoded = ShopStateCodec(calendar_).decode(read.contents);
    if (auto* ok = std::get_if<DecodedState>(&decoded)) return std::move(ok->state);
    return std::nullopt;
}

ShopLoadResult FileShopPersistence::restore(ShopState backup, ShopNotice notice) {
    ShopLoadResult result;
    result.state = std::move(backup);
    repairLoadedState(result.state, calendar_, now_());
    result.savingAllowed = savingAllowed_;
    result.notice = std::move(notice);
    // Put the restored state back in place at once, so a crash before the first change doesn't
    // start the next run as a new user. When this fails (a full disk), the next run finds no
    // file and restores the same backup again.
    if (savingAllowed_) save(result.state);
    return result;
}

ShopSaveResult FileShopPersistence::replaceBackup(std::string_view bytes, const ShopState& state) {
    const platform::ReadResult current = platform::readWholeFile(backupPath_);
    if (current.status != platform::ReadStatus::missing && current.contents != bytes) {
        bool carriedOn = false;
        if (current.status == platform::ReadStatus::ok) {
            const auto decoded = ShopStateCodec(calendar_).decode(current.contents);
            const auto* earlier = std::get_if<DecodedState>(&decoded);
            carriedOn = earlier && continuesHistory(state, earlier->state);
        }
        if (!carriedOn && !platform::keepAside(backupPath_, "", stamp()))
            return {false, "cannot keep " + baseName(backupPath_) + " aside before replacing it"};
    }
    if (const auto written = platform::writeAtomically(backupPath_, bytes); !written)
        return {false, written.error};
    return {};
}

ShopLoadResult FileShopPersistence::loadResult() {
    const platform::ReadResult read = platform::readWholeFile(path_);
    if (read.status == platform::ReadStatus::missing) {
        // No file beside a good backup is a lost file, not a new user.
        if (auto backup = loadBackup()) {
            ShopNotice notice{ShopNotice::Kind::restoredFromBackup, baseName(backupPath_)};
            notice.fileMissing = true;
            return restore(std::move(*backup), std::move(notice));
        }
        return fresh();
    }
    if (read.status == platform::ReadStatus::unreadable) {
        savingAllowed_ = false;
        ShopLoadResult result = fresh();
        result.notice = ShopNotice{ShopNotice::Kind::unreadableFile, baseName(path_)};
        return result;
    }

    auto decoded = ShopStateCodec(calendar_).decode(read.contents);
    if (auto* error = std::get_if<DecodeError>(&decoded)) {
        const bool newer = error->kind == DecodeError::Kind::newerSchema;
        // Appending (rather than "v" + to_string) keeps GCC 12 from a false -Wrestrict.
        std::string tag = "corrupt";
        if (newer) tag.assign("v").append(std::to_string(error->version));
        const auto kept = platform::keepAside(path_, tag, stamp());
        // A file we couldn't move aside must not be overwritten by the next save.
        if (!kept) savingAllowed_ = false;
        const std::string keptName = kept ? baseName(*kept) : baseName(path_);
        if (newer) {
            ShopLoadResult result = fresh();
            result.notice = ShopNotice{ShopNotice::Kind::newerSchema, keptName};
            return result;
        }
        if (auto backup = loadBackup())
            return restore(std::move(*backup),
                           ShopNotice{ShopNotice::Kind::restoredFromBackup, keptName});
        ShopLoadResult result = fresh();
        result.notice = ShopNotice{ShopNotice::Kind::resetAfterCorruption, keptName};
        return result;
    }

    ShopLoadResult result;
    result.state = std::move(std::get<DecodedState>(decoded).state);
    result.savingAllowed = savingAllowed_;
    if (const int64_t correction = repairLoadedState(result.state, calendar_, now_()))
        result.notice = ShopNotice{ShopNotice::Kind::balanceCorrected, {}, correction};
    // A file that just decoded is the best backup there is; refreshing it here gives users who
    // quit daily a backup too, which the one-day interval alone would not. The backup holds the
    // state as repaired and migrated, not a hand-edited balance the ledger has just overruled.
    if (replaceBackup(ShopStateCodec::encode(result.state), result.state)) lastBackupAt_ = now_();
    return result;
}

ShopSaveResult FileShopPersistence::save(const ShopState& state) {
    if (!savingAllowed_) return {false, "saving is off for this run: " + baseName(path_) + " couldn't be read"};
    if (!platform::ensureDirectory(directoryOf(path_))) return {false, "cannot create " + directoryOf(path_)};
    const std::string bytes = ShopStateCodec::encode(state);
    if (const auto written = platform::writeAtomically(path_, bytes); !written) return {false, written.error};
    const Timestamp now = now_();
    if (now - lastBackupAt_ >= backupIntervalSeconds) {
        if (const auto backup = replaceBackup(bytes, state); !backup) return {false, backup.error};
        lastBackupAt_ = now;
    }
    return {};
}

}  // namespace trotlet::shop
