#pragma once

#include <string>
#include <string_view>

namespace trotlet::menubar {

// Keeps the tray item from shrinking back the moment a wide reading passes: once the text
// needed more room than its metric reserves, that room is held for `holdSeconds` after the
// last text that needed it, so "↓1000 KB/s" followed by "↓980 KB/s" does not make the icon
// jump twice in two seconds.
class StickyWidth {
public:
    explicit StickyWidth(double holdSeconds = 10) : holdSeconds_(holdSeconds) {}

    struct Reserved {
        std::string guide;  // the text whose width the item reserves
        double width = 0;
    };

    // `sampleGuide`/`sampleWidth`: the metric's widest sample; `text`/`textWidth`: this
    // sample's text; `now` in seconds.
    Reserved update(std::string_view sampleGuide, double sampleWidth, std::string_view text,
                    double textWidth, double now);

    void reset() { held_ = {}; heldUntil_ = -1; }

private:
    double holdSeconds_;
    Reserved held_;
    double heldUntil_ = -1;
};

}  // namespace trotlet::menubar
