#include "layout/LayoutEditSession.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trotlet::layout {

namespace {

std::string joined(const std::vector<std::string>& ids) {
    std::string out;
    for (const auto& id : ids) out += (out.empty() ? "" : " ") + id;
    return out;
}

MoveDirection direction(LayoutEditSession::Key key) {
    switch (key) {
        case LayoutEditSession::Key::left: return MoveDirection::left;
        case LayoutEditSession::Key::right: return MoveDirection::right;
        case LayoutEditSession::Key::up: return MoveDirection::up;
        default: return MoveDirection::down;
    }
}

}  // namespace

LayoutEditSession::LayoutEditSession(LayoutStore& store, Availability available)
    : store_(store), available_(std::move(available)), preview_(store.layout()) {}

Frames LayoutEditSession::frames() const {
    return LayoutOps::frames(preview_, available_, store_.registry());
}

void LayoutEditSession::note(std::string line) { trace_.push_back(std::move(line)); }

void LayoutEditSession::reload() {
    gesture_ = Gesture::none;
    preview_ = store_.layout();
    lastMove_.reset();
    if (selection_ && !frames().count(*selection_)) selection_.reset();
}

void LayoutEditSession::commit(const OverviewLayout& layout, const std::string& why) {
    store_.commit(layout);
    preview_ = store_.layout();
    note("commit " + why + ": " + describe(preview_));
}

std::optional<std::string> LayoutEditSession::cardAt(double x, double y,
                                                     const Frames& frames) const {
    for (const auto& [id, frame] : frames)
        if (frame.contains(x, y)) return id;
    return std::nullopt;
}

void LayoutEditSession::pointerPressed(double x, double y) {
    pointerCancelled();
    const Frames current = frames();
    const auto hit = cardAt(x, y, current);
    if (!hit) return;
    const PointRect& frame = current.at(*hit);
    gestureCard_ = *hit;
    pressX_ = x;
    pressY_ = y;
    if (x >= frame.maxX() - gripSize && y >= frame.maxY() - gripSize) {
        gesture_ = Gesture::resizing;
        startWidth_ = frame.width;
        startHeight_ = frame.height;
        startSize_ = preview_.card(*hit)->size;
        note("grip " + *hit);
    } else {
        gesture_ = Gesture::pressed;
    }
}

void LayoutEditSession::pointerMoved(double x, double y) {
    const auto& registry = store_.registry();
    switch (gesture_) {
        case Gesture::none: return;
        case Gesture::pressed:
            if (std::hypot(x - pressX_, y - pressY_) < dragThreshold) return;
            gesture_ = Gesture::dragging;
            startOrder_ = LayoutOps::visibleOrder(preview_, available_, registry);
            dragOrder_ = startOrder_;
            dragTarget_.reset();
            note("drag " + gestureCard_);
            [[fallthrough]];
        case Gesture::dragging: {
            const auto over = cardAt(x, y, frames());
            if (!over) {
                dragTarget_.reset();
                return;
            }
            if (*over == gestureCard_ || over == dragTarget_) return;
            const auto index = std::find(dragOrder_.begin(), dragOrder_.end(), *over) - dragOrder_.begin();
            dragOrder_ = LayoutOps::moving(gestureCard_, static_cast<int>(index), dragOrder_);
            dragTarget_ = over;
            preview_ = LayoutOps::applying(dragOrder_, preview_);
            return;
        }
        case Gesture::resizing: {
            const CardSize current = preview_.card(gestureCard_)->size;
            const CardSize snapped =
                LayoutOps::snappedSize(gestureCard_, startWidth_ + (x - pressX_),
                                       startHeight_ + (y - pressY_), current, resizeHysteresis,
                                       registry);
            if (snapped != current) preview_ = LayoutOps::settingSize(gestureCard_, snapped, preview_);
            return;
        }
    }
}

void LayoutEditSession::pointerReleased(double x, double y) {
    pointerMoved(x, y);
    const Gesture ended = std::exchange(gesture_, Gesture::none);
    switch (ended) {
        case Gesture::none: return;
        case Gesture::pressed: select(gestureCard_); return;
        case Gesture::dragging:
            selection_ = gestureCard_;
            if (dragOrder_ == startOrder_) {
                note("drop " + gestureCard_ + " where it was");
                return;
            }
            lastMove_.reset();
            commit(preview_, "drop " + gestureCard_ + " (" + joined(dragOrder_) + ")");
            return;
        case Gesture::resizing: {
            const CardSize size = preview_.card(gestureCard_)->size;
            if (size == startSize_) {
                note("grip " + gestureCard_ + " put down at " + std::string(name(size)));
                return;
            }
            lastMove_.reset();
            commit(preview_, "resize " + gestureCard_ + " to " + std::string(name(size)));
            return;
        }
    }
}

void LayoutEditSession::pointerCancelled() {
    if (gesture_ == Gesture::dragging || gesture_ == Gesture::resizing)
        note("cancel " + gestureCard_);
    gesture_ = Gesture::none;
    preview_ = store_.layout();
}

bool LayoutEditSession::keyPressed(Key key, bool option) {
    if (key == Key::escape) {
        const bool busy = gesture_ != Gesture::none;
        pointerCancelled();
        if (!busy && selection_) {
            selection_.reset();
            return true;
        }
        return busy;
    }
    if (gesture_ != Gesture::none || !selection_) return false;
    if (option) return moveSelected(direction(key));
    const auto next = LayoutOps::neighbour(*selection_, direction(key), frames());
    if (next) selection_ = next;
    return next.has_value();
}

bool LayoutEditSession::moveSelected(MoveDirection dir) {
    const auto& registry = store_.registry();
    const std::string id = *selection_;
    const std::string keys = "option-" + std::string(name(dir)) + " " + id;
    // The arrow opposite to the last move undoes it, so a card always returns where it was
    // even when the trade re-packed cards of other sizes around it.
    if (lastMove_ && lastMove_->id == id && lastMove_->direction == opposite(dir) &&
        lastMove_->layoutAfter == preview_) {
        const auto back = LayoutOps::applying(lastMove_->orderBefore, preview_);
        lastMove_.reset();
        commit(back, keys + " (back)");
        return true;
    }
    const auto before = LayoutOps::visibleOrder(preview_, available_, registry);
    const auto order = LayoutOps::keyboardMove(id, dir, preview_, available_, registry);
    if (!order) {
        note(keys + " blocked");
        return false;
    }
    commit(LayoutOps::applying(*order, preview_), keys);
    lastMove_ = KeyboardMove{id, dir, before, preview_};
    return true;
}

void LayoutEditSession::select(std::optional<std::string> id) {
    if (id && !frames().count(*id)) id.reset();
    selection_ = std::move(id);
}

void LayoutEditSession::setHidden(const std::string& id, bool hidden) {
    pointerCancelled();
    const auto* card = preview_.card(id);
    if (!card || card->hidden == hidden) return;
    lastMove_.reset();
    commit(LayoutOps::settingHidden(id, hidden, preview_), (hidden ? "hide " : "show ") + id);
    if (hidden && selection_ == id) selection_.reset();
}

void LayoutEditSession::setSize(const std::string& id, CardSize size) {
    pointerCancelled();
    const auto* card = preview_.card(id);
    const auto* kind = store_.registry().kind(id);
    if (!card || !kind || !kind->supports(size) || card->size == size) return;
    lastMove_.reset();
    commit(LayoutOps::settingSize(id, size, preview_), "size " + id + " " + std::string(name(size)));
}

void LayoutEditSession::resetLayout() {
    pointerCancelled();
    if (!store_.canReset()) return;
    store_.reset();
    note("reset");
    reload();
}

}  // namespace trotlet::layout
