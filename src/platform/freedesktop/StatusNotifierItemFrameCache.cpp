#include "platform/freedesktop/StatusNotifierItemFrameCache.h"

namespace trotlet::platform {

std::optional<StatusNotifierIconPixmapList> StatusNotifierItemFrameCache::find(const QString& key) {
    for (auto it = entries_.begin(); it != entries_.end(); ++it) {
        if (it->first == key) {
            entries_.splice(entries_.begin(), entries_, it);
            ++hits_;
            return entries_.front().second;
        }
    }
    ++misses_;
    return std::nullopt;
}

void StatusNotifierItemFrameCache::insert(const QString& key, StatusNotifierIconPixmapList pixmaps) {
    for (auto it = entries_.begin(); it != entries_.end(); ++it) {
        if (it->first == key) {
            entries_.erase(it);
            break;
        }
    }
    entries_.emplace_front(key, std::move(pixmaps));
    while (int(entries_.size()) > capacity_) entries_.pop_back();
}

qsizetype StatusNotifierItemFrameCache::bytes() const {
    qsizetype total = 0;
    for (const auto& entry : entries_) {
        for (const auto& pixmap : entry.second) total += pixmap.bytes.size();
    }
    return total;
}

}  // namespace trotlet::platform
