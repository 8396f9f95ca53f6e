#pragma once

#include "settings/SettingsEnums.h"

namespace trotlet::mascot {

// Which reading drives the mascot's pace (setting "menuBar.speedSource"); the enumeration is
// shared with the settings, which store it by raw string.
using settings::LoadSource;
using settings::LoadSourceNames;

}  // namespace trotlet::mascot
