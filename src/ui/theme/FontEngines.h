#pragma once

namespace trotlet::ui {

// Hands back the font engines no text in the app still holds: the faces mapped from the font
// files, their glyph images and shaping tables. Qt keeps every engine it has made until they
// add up to several megabytes, which a panel's type scale never reaches, so a closed panel
// would keep the bold and italic faces of a screen nobody is looking at. Engines still in use
// survive; any other is made again the next time its font is drawn.
void dropUnusedFontEngines();

}  // namespace trotlet::ui
