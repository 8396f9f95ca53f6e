#pragma once

#include <string>

#include <QImage>

namespace trotlet::mascot {

// A picture of a mascot for the eye (the snapshot harness's `mascot-<id>` scenes). A pure
// render: the same arguments give the same pixels on the same machine, nothing is cached.

// Every loop and mood in rows (each band's run, panic, overheated, low battery, offline, sit,
// sleep, celebrate, the blink), at the menu-bar size and at the panel's 44 pt, then each
// accessory on the body, and the run at every menu-bar size from 16 to 24 px. On a light or a
// dark backdrop like the desktop's bars; `scale` is the device pixel ratio of the image and of
// every frame in it.
QImage renderMascotContactSheet(const std::string& mascotId, bool dark, qreal scale);

}  // namespace trotlet::mascot
