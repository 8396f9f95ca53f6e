#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

#include "shop/GoldenFish.h"

namespace trotlet::shop {
class ShopRuntime;
}

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// The Golden Fish crossing the panel's header. A small child of the header that moves along
// the fish's path, so each frame repaints only the strip it passes; a click on its body (or
// Space with the keyboard focus) catches it, and what the catch gave rises where it was.
// With reduced motion the fish waits at one spot, fading in and out, still catchable. Nothing
// shows while Golden Fish are turned off.
class GoldenFishView : public QWidget {
    Q_OBJECT
public:
    GoldenFishView(shop::ShopRuntime& shop, const PanelModel& model, const ThemeStore& theme,
                   QWidget* header);

    // One frame: where the fish is now on the economy's clock.
    void step();
    bool isSwimming() const { return swimming_; }
    bool isReacting() const { return !reaction_.isEmpty(); }
    const QString& reaction() const { return reaction_; }
    // The fish's body, in the header's coordinates.
    QRectF bodyInHeader() const;
    int frameIntervalMs() const { return frames_.isActive() ? frames_.interval() : -1; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void sync();
    void tryCatch();
    QRectF bodyRect() const;
    void placeAt(QPointF centre);

    shop::ShopRuntime& shop_;
    const PanelModel& model_;
    const ThemeStore& theme_;
    QTimer frames_;
    std::optional<shop::GoldenFishSpawn> fish_;
    bool swimming_ = false;
    qreal opacity_ = 1;
    bool facingRight_ = true;
    double phase_ = 0;  // seconds into the swim, for the tail's wag
    QString reaction_;
    bool reactionGood_ = false;
    QElapsedTimer reactionClock_;
};

}  // namespace trotlet::ui
