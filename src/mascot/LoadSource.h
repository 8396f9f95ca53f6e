#pragma once

#include "app/SettingsEnums.h"

namespace trotlet::mascot {

// Which reading drives the mascot's pace (setting "menuBar.speedSource"); the enumeration is
// shared with the settings, which store it by raw string.
using app::LoadSource;
using app::LoadSourceNames;

}  // namespace trotlet::mascot
