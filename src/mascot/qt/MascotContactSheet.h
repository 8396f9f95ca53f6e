#pragma once

#include <string>

#include <QImage>
#include <QString>

namespace trotlet::mascot {

// Pictures of a mascot for the eye and for golden-image checks. Both are pure renders: the
// same arguments give the same pixels on the same machine, and nothing is cached or read.

// Every loop and mood in rows (each band's run, panic, overheated, low battery, offline, sit,
// sleep, celebrate, the blink), at the menu-bar size and at the panel's 44 pt, then each
// accessory on the body, and the run at every menu-bar size from 16 to 24 px. On a light or a
// dark backdrop like the desktop's bars; `scale` is the device pixel ratio of the image and of
// every frame in it.
QImage renderMascotContactSheet(const std::string& mascotId, bool dark, qreal scale);

// A strip of menu bars: one bar per run band, then sitting and sleeping, each showing the tray
// item (the mascot at 22 px with `tickerText` beside it) once for every frame of the loop.
QImage renderMenuBarStrip(const std::string& mascotId, bool dark, qreal scale,
                          const QString& tickerText);

}  // namespace trotlet::mascot
