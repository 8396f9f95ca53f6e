#include "ui/theme/FontEngines.h"

// Qt has no public call for this; the cache it clears is the one Qt itself empties when the
// font database or the desktop's theme changes.
#include <QtGui/private/qfont_p.h>

namespace trotlet::ui {

void dropUnusedFontEngines() { QFontCache::instance()->clear(); }

}  // namespace trotlet::ui
