#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <QImage>

#include "mascot/MascotCharacter.h"
#include "mascot/MascotState.h"

namespace trotlet::mascot {

// Draws a mascot's loops and keeps them: each loop (every frame of one mood, band, look and
// size) is drawn once, on first use. The menu bar then only picks images.
class MascotRenderer {
public:
    struct LoopKey {
        std::string mascotId;
        MascotMood mood = MascotMood::running;
        std::uint8_t band = 0;  // 0 for every still mood: they share one loop
        std::uint64_t accessories = 0;
        bool blink = false;
        int pixelSize = 22;       // logical size of the square frame
        int scaleTimes100 = 100;  // device pixel ratio, in hundredths

        auto tied() const {
            return std::tie(mascotId, mood, band, accessories, blink, pixelSize, scaleTimes100);
        }
        bool operator<(const LoopKey& other) const { return tied() < other.tied(); }
        bool operator==(const LoopKey& other) const { return tied() == other.tied(); }
    };

    // The panel shows the mascot at this logical size; the purge keeps it with the menu bar's.
    static constexpr int panelSize = 44;

    // Every frame of a loop, drawn on first use.
    const std::vector<QImage>& loop(const MascotCharacter& character, MascotMood mood,
                                    std::uint8_t band, MascotAccessories accessories, int pixelSize,
                                    qreal devicePixelRatio, bool blink = false);

    // The frame for a drawn state at a loop position (wrapped into the loop).
    QImage frame(const MascotCharacter& character, const MascotState& visual, int frameIndex,
                 int pixelSize, qreal devicePixelRatio, bool blink = false);

    // Drops every loop except the equipped mascot's at the menu-bar size and the panel size.
    void purge(const std::string& equippedId, int menuBarPixelSize);

    std::size_t loopCount() const { return loops_.size(); }
    std::size_t cachedBytes() const;
    std::size_t cachedBytes(const std::string& mascotId) const;

private:
    std::map<LoopKey, std::vector<QImage>> loops_;
};

// One frame of a mascot, drawn by its art (`qt/art/`): frame `frame` of the loop for `mood`
// and `band`, which has `character.frameCount(mood)` frames.
QImage drawMascotFrame(const MascotCharacter& character, MascotMood mood, int band, int frame,
                       MascotAccessories accessories, int pixelSize, qreal devicePixelRatio,
                       bool blink);

}  // namespace trotlet::mascot
