#include "mascot/qt/MascotRenderer.h"

#include <algorithm>
#include <cmath>

#include "mascot/qt/art/MascotArt.h"

namespace trotlet::mascot {

QImage drawMascotFrame(const MascotCharacter& character, MascotMood mood, int band, int frame,
                       MascotAccessories accessories, int pixelSize, qreal devicePixelRatio,
                       bool blink) {
    art::FrameRequest request;
    request.mood = mood;
    request.band = isRunMood(mood) ? band : 0;
    request.frame = frame;
    request.frames = character.frameCount(mood);
    request.accessories = accessories;
    request.blink = blink;
    request.pixelSize = pixelSize;
    request.devicePixelRatio = devicePixelRatio;
    return art::drawMascotArt(art::mascotArt(character.id), request);
}

const std::vector<QImage>& MascotRenderer::loop(const MascotCharacter& character, MascotMood mood,
                                                std::uint8_t band, MascotAccessories accessories,
                                                int pixelSize, qreal devicePixelRatio, bool blink) {
    LoopKey key;
    key.mascotId = character.id;
    key.mood = mood;
    // Still moods have one loop whatever the load.
    key.band = isRunMood(mood) ? band : 0;
    key.accessories = accessories.rawValue;
    key.blink = blink;
    key.pixelSize = pixelSize;
    key.scaleTimes100 = static_cast<int>(std::lround(devicePixelRatio * 100));
    auto it = loops_.find(key);
    if (it != loops_.end()) return it->second;
    std::vector<QImage> frames;
    const int n = character.frameCount(mood);
    frames.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        frames.push_back(drawMascotFrame(character, mood, key.band, i, accessories, pixelSize,
                                         devicePixelRatio, blink));
    return loops_.emplace(std::move(key), std::move(frames)).first->second;
}

QImage MascotRenderer::frame(const MascotCharacter& character, const MascotState& visual,
                             int frameIndex, int pixelSize, qreal devicePixelRatio, bool blink) {
    const auto& frames = loop(character, visual.mood, visual.loadBand, visual.accessories,
                              pixelSize, devicePixelRatio, blink);
    const int n = static_cast<int>(frames.size());
    const int i = ((frameIndex % n) + n) % n;
    return frames[static_cast<std::size_t>(i)];
}

void MascotRenderer::purge(const std::string& equippedId, int menuBarPixelSize) {
    for (auto it = loops_.begin(); it != loops_.end();) {
        const bool keep =
            it->first.mascotId == equippedId &&
            (it->first.pixelSize == menuBarPixelSize || it->first.pixelSize == panelSize);
        it = keep ? std::next(it) : loops_.erase(it);
    }
}

std::size_t MascotRenderer::cachedBytes() const {
    std::size_t total = 0;
    for (const auto& [key, frames] : loops_)
        for (const auto& image : frames) total += static_cast<std::size_t>(image.sizeInBytes());
    return total;
}

std::size_t MascotRenderer::cachedBytes(const std::string& mascotId) const {
    std::size_t total = 0;
    for (const auto& [key, frames] : loops_)
        if (key.mascotId == mascotId)
            for (const auto& image : frames) total += static_cast<std::size_t>(image.sizeInBytes());
    return total;
}

}  // namespace trotlet::mascot
