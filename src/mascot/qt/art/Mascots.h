#pragma once

#include "mascot/qt/art/MascotArt.h"

namespace trotlet::mascot::art {

// One drawing per mascot, each in its own file beside this one.
const MascotArt& catArt();
const MascotArt& shibaArt();
const MascotArt& bunnyArt();
const MascotArt& penguinArt();
const MascotArt& hamsterArt();
const MascotArt& foxArt();
const MascotArt& ghostArt();
const MascotArt& axolotlArt();
const MascotArt& robotArt();
const MascotArt& trexArt();
const MascotArt& unicornArt();
const MascotArt& manekiArt();
const MascotArt& goldenCatArt();

}  // namespace trotlet::mascot::art
