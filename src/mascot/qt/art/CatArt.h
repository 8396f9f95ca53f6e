#pragma once

#include "mascot/qt/art/MascotArt.h"

namespace trotlet::mascot::art {

// Mochi, the starter cat: a ginger tabby that trots, gallops, then bounds flat out. Golden Mochi
// is the same cat in gold, so the drawing is a class the golden one extends.
class CatArt : public MascotArt {
public:
    Palette palette() const override;
    Anchors run(Rig& rig) const override;
    Anchors sit(Rig& rig) const override;
    Anchors sleep(Rig& rig) const override;
    Anchors celebrate(Rig& rig) const override;

protected:
    void ears(Rig& rig, QPointF head, qreal r, qreal flatten) const;
    void head(Rig& rig, QPointF c, qreal r, qreal flatten, bool tongue) const;
    void tail(Rig& rig, QPointF base, qreal sway, qreal lift) const;
};

}  // namespace trotlet::mascot::art
