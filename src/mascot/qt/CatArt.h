#pragma once

#include <QColor>
#include <QImage>

#include "mascot/MascotAccessories.h"
#include "mascot/MascotMood.h"

namespace trotlet::mascot {

// One frame of the cat, drawn with QPainter on a square canvas. The art is designed on a
// 32 x 32 grid and scaled, with shapes and strokes thick enough to read at 16-24 pixels. The
// coloured body carries a dark outline, so the cat stands out on light and dark panels alike.
struct CatFrameSpec {
    MascotMood mood = MascotMood::running;
    int band = 0;      // which run loop: 0 trot, 1 run, 2 and above gallop
    int frame = 0;
    int frames = 8;
    MascotAccessories accessories;
    bool eyesClosed = false;  // the blink
    int pixelSize = 22;       // logical size of the square canvas
    qreal devicePixelRatio = 1;
    // The fur colour and its outline; the starter cat's ginger by default.
    QColor fur = QColor(0xF2, 0xA6, 0x5A);
    QColor outline = QColor(0x2B, 0x1D, 0x14);
};

QImage drawCatFrame(const CatFrameSpec& spec);

// The colours of a mascot drawn as the cat: its signature colour and a darkened outline.
QColor furForSignature(std::uint32_t rgb);
QColor outlineForFur(const QColor& fur);

}  // namespace trotlet::mascot
