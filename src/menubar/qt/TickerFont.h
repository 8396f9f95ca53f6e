#pragma once

#include <QFont>

#include "menubar/TickerText.h"

namespace trotlet::menubar {

// The tray text's font: the desktop's UI font at 11 pt, medium weight, with digits of one
// width so that "18%" and "81%" take the same room. Qt 6.4 can't switch on the OpenType
// tabular-figures feature, so a UI font whose digits differ in width is replaced by the
// desktop's fixed-pitch font.
QFont tickerFont();

// True when the ten digits of a font all have the same advance.
bool hasEvenDigits(const QFont& font);

// Measures text in the ticker font, in device-independent pixels.
TickerWidth::Measure tickerMeasure();

}  // namespace trotlet::menubar
