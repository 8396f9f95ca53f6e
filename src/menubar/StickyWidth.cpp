#include "menubar/StickyWidth.h"

namespace trotlet::menubar {

StickyWidth::Reserved StickyWidth::update(std::string_view sampleGuide, double sampleWidth,
                                          std::string_view text, double textWidth, double now) {
    Reserved wanted{std::string(sampleGuide), sampleWidth};
    if (textWidth > sampleWidth) wanted = {std::string(text), textWidth};

    if (wanted.width > sampleWidth && wanted.width >= held_.width) {
        held_ = wanted;
        heldUntil_ = now + holdSeconds_;
    } else if (wanted.width > sampleWidth) {
        heldUntil_ = now + holdSeconds_;  // still needs more than the sample: keep holding
    }
    if (held_.width > wanted.width && now < heldUntil_) return held_;
    if (now >= heldUntil_) held_ = {};
    return wanted;
}

}  // namespace trotlet::menubar
