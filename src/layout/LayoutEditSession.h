#pragma once

#include <optional>
#include <string>
#include <vector>

#include "layout/LayoutOps.h"
#include "layout/LayoutStore.h"

namespace trotlet::layout {

// Edit mode of the Overview: turns pointer and key events into layout operations, shows their
// result as a preview while a gesture lasts and commits it through the store when it ends.
// Points are relative to the top-left corner of the card grid. Pure: the panel feeds events.
class LayoutEditSession {
public:
    // The resize gesture holds the current size until another is this many points closer.
    static constexpr double resizeHysteresis = 12;
    // A press becomes a drag once the pointer has travelled this far.
    static constexpr double dragThreshold = 4;
    // The square in a card's bottom-right corner that picks up a resize.
    static constexpr double gripSize = 16;

    enum class Key { left, right, up, down, escape };

    LayoutEditSession(LayoutStore& store, Availability available);

    // What the grid shows now: the stored layout, or the preview of a gesture under way.
    const OverviewLayout& layout() const { return preview_; }
    Frames frames() const;
    const std::optional<std::string>& selection() const { return selection_; }
    bool isDragging() const { return gesture_ == Gesture::dragging; }
    bool isResizing() const { return gesture_ == Gesture::resizing; }
    // One line per decision, for the harness and the debug log.
    const std::vector<std::string>& trace() const { return trace_; }

    void pointerPressed(double x, double y);
    void pointerMoved(double x, double y);
    void pointerReleased(double x, double y);
    void pointerCancelled();

    // Arrows move the selection to the neighbouring card; with ⌥ they move the selected card.
    // ⌥ and the arrow opposite to the last move returns the card to where it was. Returns
    // whether the key did something.
    bool keyPressed(Key key, bool option);

    void select(std::optional<std::string> id);
    void setHidden(const std::string& id, bool hidden);
    void setSize(const std::string& id, CardSize size);
    void resetLayout();
    // Takes up what the store holds now (after an edit elsewhere, such as the settings screen).
    void reload();

private:
    enum class Gesture { none, pressed, dragging, resizing };

    struct KeyboardMove {
        std::string id;
        MoveDirection direction;
        std::vector<std::string> orderBefore;
        OverviewLayout layoutAfter;
    };

    void commit(const OverviewLayout& layout, const std::string& why);
    std::optional<std::string> cardAt(double x, double y, const Frames& frames) const;
    bool moveSelected(MoveDirection direction);
    void note(std::string line);

    LayoutStore& store_;
    Availability available_;
    OverviewLayout preview_;
    std::optional<std::string> selection_;
    std::vector<std::string> trace_;

    Gesture gesture_ = Gesture::none;
    std::string gestureCard_;
    double pressX_ = 0, pressY_ = 0;
    // Drag: the order while dragging and the card last stepped over, which must be left
    // before it can move the dragged card again (else two cards of different sizes would
    // trade places back and forth under a still pointer).
    std::vector<std::string> dragOrder_;
    std::vector<std::string> startOrder_;
    std::optional<std::string> dragTarget_;
    // Resize: the card's extent and size when the grip was picked up.
    double startWidth_ = 0, startHeight_ = 0;
    CardSize startSize_ = CardSize::small;
    std::optional<KeyboardMove> lastMove_;
};

}  // namespace trotlet::layout
