#pragma once

#include <functional>
#include <optional>

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QTransform>

#include "mascot/MascotAccessories.h"
#include "mascot/MascotMood.h"

namespace trotlet::mascot::art {

// Every mascot is drawn on the same design grid: 32 x 32 units, y down, facing right, feet on
// the ground line. The rig scales the grid to the frame, so one drawing serves every size.
inline constexpr qreal gridSize = 32;
inline constexpr qreal groundY = 28;
// Frames at or above this logical size are the panel's (the 44 pt header and shop): finer
// strokes and the small details. Below it is the menu bar's 16-24 px, drawn for silhouette.
inline constexpr int panelDetailMinSize = 32;

// One frame to draw.
struct FrameRequest {
    MascotMood mood = MascotMood::running;
    int band = 0;  // which run loop; every still mood uses 0
    int frame = 0;
    int frames = 8;
    MascotAccessories accessories;
    bool blink = false;
    int pixelSize = 22;  // logical size of the square canvas
    qreal devicePixelRatio = 1;
};

// A mascot's colours. The outline is dark enough to edge the shape on a light panel and the
// coat light enough to stand out on a dark one.
struct Palette {
    QColor body;     // the main coat
    QColor shade;    // far-side limbs, darker markings
    QColor light;    // belly, chest, muzzle
    QColor accent;   // the species' mark: inner ears, gills, mane, bib
    QColor outline;  // the edge of every shape
};

enum class Eyes { open, closed, wide, sleepy, happy, sad };

// Where the drawn pose put the points that accessories and mood effects attach to, in grid
// units. A mascot fills in what differs from the defaults derived from its head.
struct Anchors {
    QPointF head{24, 14};  // centre of the head
    qreal headRadius = 4.7;
    qreal tilt = 0;                // degrees the head leans (hats follow it)
    std::optional<QPointF> crown;  // centre of a hat's brim; above the head by default
    qreal hatScale = 1;
    QPointF back{14, 15};  // top of the back, where the backpack rides
    qreal backTilt = 0;
    std::optional<QPointF> grip;  // where the umbrella's handle ends; the back by default
    std::optional<QPointF> brow;  // where a sweat drop hangs; beside the head by default

    QPointF crownPoint() const { return crown.value_or(head + QPointF(0, -headRadius * 0.82)); }
    QPointF gripPoint() const { return grip.value_or(back); }
    QPointF browPoint() const {
        return brow.value_or(head + QPointF(-headRadius * 1.15, -headRadius * 0.75));
    }
    // The anchors of a figure drawn under `t` (a lean or a rear), with the head tilted by it.
    Anchors mapped(const QTransform& t, qreal tiltDegrees) const {
        Anchors a = *this;
        a.head = t.map(head);
        a.back = t.map(back);
        for (auto* point : {&a.crown, &a.grip, &a.brow})
            if (*point) *point = t.map(**point);
        a.tilt = tiltDegrees;
        return a;
    }
};

// Leg swing angles in radians from straight down (positive reaches forward), for one moment of
// a stride. Near legs face the viewer, far legs are drawn behind the body in shade.
struct LegSwing {
    qreal frontNear = 0, frontFar = 0, backNear = 0, backFar = 0;
};

// Four-legged footfalls: a walk lifts one foot at a time, a trot moves diagonal pairs, a
// gallop lands its feet in a quick rotary sequence, a bound moves front and back pairs.
enum class FourBeat { walk, trot, gallop, bound };

// The helpers every mascot shares: the frame's facts (mood, band, phase, size), outlined shapes
// and limbs, faces, gait arithmetic, the mood effects and the accessories. A mascot's drawing
// is a few functions that call these with its own proportions.
class Rig {
public:
    Rig(QPainter& painter, const FrameRequest& request, const Palette& palette);

    // --- The frame ---
    MascotMood mood() const { return request_.mood; }
    int band() const { return request_.band; }
    const MascotAccessories& accessories() const { return request_.accessories; }
    // Position in the loop, 0...1; the loop is periodic so frame n equals frame 0.
    qreal phase() const { return phase_; }
    // sin(2π (cycles · phase + offset)): the building block of every loop.
    qreal wave(qreal offset = 0, qreal cycles = 1) const;
    // 0 at the loop's start, 1 at its middle, 0 at its end: a hop's height.
    qreal arc(qreal offset = 0) const;
    bool small() const { return request_.pixelSize < panelDetailMinSize; }
    bool detailed() const { return !small(); }
    template <typename T>
    T pick(T menuBar, T panel) const {
        return small() ? menuBar : panel;
    }
    bool panicking() const { return mood() == MascotMood::panic; }
    bool hot() const { return mood() == MascotMood::overheated; }
    bool tired() const { return mood() == MascotMood::lowBattery; }
    bool offline() const { return mood() == MascotMood::offline; }
    // How much of its usual motion the mascot puts in: low battery moves at half effort.
    qreal energy() const { return tired() ? 0.55 : 1.0; }

    const Palette& colors() const { return palette_; }
    QPainter& painter() { return p_; }
    // The outline width in grid units for this frame's size: about one logical pixel at the
    // menu bar, a touch finer (relative to the figure) at the panel size.
    qreal stroke() const { return stroke_; }

    // --- Shapes ---
    // A filled shape with the outline; `edge` scales the outline for small parts (a horn, a
    // bell) that a full-width edge would swallow.
    void shape(const QPainterPath& path, const QColor& fill, qreal edge = 1);
    void ellipse(QPointF centre, qreal rx, qreal ry, const QColor& fill, qreal edge = 1);
    // Overlapping shapes filled as one, outlined only round the outside: every outline first,
    // then every fill over the inner outlines. Much cheaper than a path union.
    void merged(const QPainterPath& shapes, const QColor& fill);
    // Flat colour inside `shape` only (a patch of markings that must not spill over its edge).
    void patchWithin(const QPainterPath& shape, const QPainterPath& path, const QColor& fill);
    // A limb, tail or neck: a thick outlined stroke along a path.
    void limb(const QPainterPath& path, qreal width, const QColor& fill, qreal edge = 1);
    // A two-part leg from a hip: `angle` swings it, `bend` folds the lower part (positive bends
    // the foot forward). The foot never goes below `ground`, the ground line in the painter's
    // current frame. Returns the foot.
    QPointF leg(QPointF hip, qreal angle, qreal length, qreal width, const QColor& fill,
                qreal bend = 0, qreal ground = groundY);
    // Flat colour inside a shape (markings, a belly), no outline.
    void patch(const QPainterPath& path, const QColor& fill);
    void patchEllipse(QPointF centre, qreal rx, qreal ry, const QColor& fill);
    // A plain stroke: whiskers, seams, a mouth.
    void line(const QPainterPath& path, qreal width, const QColor& colour);
    void line(QPointF a, QPointF b, qreal width, const QColor& colour);

    // --- Faces ---
    // The eyes this mood and the blink call for.
    Eyes eyes() const;
    // One eye of `size` (the open pupil's radius); `style` overrides the mood's.
    void eye(QPointF centre, qreal size, std::optional<Eyes> style = {});
    void nose(QPointF centre, qreal size, const QColor& fill);
    void tongue(QPointF top, qreal size);
    // A smile from `from` to `to` curving down by `depth`.
    void smile(QPointF from, QPointF to, qreal depth);
    void blush(QPointF centre, qreal size);

    // --- Gaits ---
    static LegSwing swing(FourBeat gait, qreal phase, qreal amplitude);
    // Bounce of the body for a gait (negative is up): a trot bobs twice per stride, a gallop
    // or bound lifts once.
    static qreal bounce(FourBeat gait, qreal phase, qreal height);

    // --- Effects and accessories (drawn after the pose) ---
    void moodEffects(const Anchors& a);
    void accessoriesAt(const Anchors& a);
    void star(QPointF centre, qreal r, const QColor& fill);
    // Draws behind everything drawn so far.
    void behind(const std::function<void()>& draw);

private:
    QPen outlinePen(qreal width) const;
    void speedLines(const Anchors& a);
    void heatWaves(const Anchors& a);
    void batteryIcon();
    void rain();
    void sleepyZs(const Anchors& a);
    void sparkles(const Anchors& a);
    void backpack(const Anchors& a);
    void inHatSpace(const Anchors& a, const std::function<void()>& draw);
    void nightcap(const Anchors& a);
    void witchHat(const Anchors& a);
    void holidayHat(const Anchors& a);
    void sweatDrop(const Anchors& a);
    void umbrella(const Anchors& a);
    void chargingBolt();
    void badge(const QColor& colour);

    QPainter& p_;
    FrameRequest request_;
    Palette palette_;
    qreal phase_ = 0;
    qreal stroke_ = 1.5;
};

QColor mixColors(const QColor& a, const QColor& b, qreal t);

}  // namespace trotlet::mascot::art
