#pragma once

#include "platform/freedesktop/StatusNotifierItemTypes.h"

#include <QString>

#include <list>
#include <optional>
#include <utility>

namespace trotlet::platform {

// The wire form of recently shown frames, keyed by the frame's cache key, most recent first.
// An animation loops over a handful of frames, so once every frame of the loop has been shown
// no frame is converted again; older entries fall out when the mascot or gait changes.
class StatusNotifierItemFrameCache {
public:
    explicit StatusNotifierItemFrameCache(int capacity = 64) : capacity_(capacity < 1 ? 1 : capacity) {}

    // The cached frame, marked as most recently used; nothing when unknown.
    std::optional<StatusNotifierIconPixmapList> find(const QString& key);
    void insert(const QString& key, StatusNotifierIconPixmapList pixmaps);

    int size() const { return int(entries_.size()); }
    int capacity() const { return capacity_; }
    // Bytes of pixel data held, for the cost check.
    qsizetype bytes() const;
    // How many frames were converted (misses) and reused (hits) since creation.
    quint64 hits() const { return hits_; }
    quint64 misses() const { return misses_; }

private:
    int capacity_;
    std::list<std::pair<QString, StatusNotifierIconPixmapList>> entries_;
    quint64 hits_ = 0;
    quint64 misses_ = 0;
};

}  // namespace trotlet::platform
