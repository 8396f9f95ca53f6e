#pragma once

#include <string_view>

#include <QImage>

#include "mascot/qt/art/MascotRig.h"

namespace trotlet::mascot::art {

// One mascot's drawing: its colours and a function per pose. Each pose draws on the rig and
// returns where it put the head and back, so the mood effects and accessories fit the body.
// `run` draws every run mood (running, panic, overheated, low battery, offline) in every load
// band; it reads `rig.mood()` and `rig.band()` for the look.
class MascotArt {
public:
    virtual ~MascotArt() = default;
    virtual Palette palette() const = 0;
    virtual Anchors run(Rig& rig) const = 0;
    virtual Anchors sit(Rig& rig) const = 0;
    virtual Anchors sleep(Rig& rig) const = 0;
    virtual Anchors celebrate(Rig& rig) const = 0;
    // After the pose and before the effects and accessories: a finish over the whole figure.
    virtual void finish(Rig& rig, const Anchors& anchors) const {
        (void)rig;
        (void)anchors;
    }
};

// Draws one frame: the pose for the mood, the finish, the mood's effects, the accessories.
QImage drawMascotArt(const MascotArt& art, const FrameRequest& request);

// The drawing for a mascot id, or null for an id without one.
const MascotArt* findMascotArt(std::string_view id);
// The drawing for a mascot id; an unknown id gets the starter cat, as the catalog does.
const MascotArt& mascotArt(std::string_view id);

}  // namespace trotlet::mascot::art
