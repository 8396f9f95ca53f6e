#pragma once

#include <QImage>
#include <QRectF>

#include <vector>

#include "sky/SkyScene.h"

class QPainter;

namespace trotlet::sky {

// Draws a SkyScene. What does not move (the gradient, stars, the sun or moon, fog, the mood's
// glow) is rendered once into an image at the device's pixel ratio and blitted; what moves
// (clouds, rain, snow, lightning) is drawn over it for the moment `seconds`, from small images
// prepared once (a cloud, a drop, a flake), so a frame is a few dozen blits. A scene that does
// not move at all bakes everything into the one image, so a still sky costs one blit.
class SkyPainter {
public:
    void setScene(const SkyScene& scene);
    const SkyScene& scene() const { return scene_; }

    void paint(QPainter& painter, const QRectF& area, double seconds);
    // How often the still layer was rendered: tests and the bench check the cache holds.
    int stillRenders() const { return stillRenders_; }
    void releaseCaches();

private:
    struct Cloud {
        double x, y;   // shares of the width and height at time 0
        double width;  // points
        double speed;  // points per second
        double depth;  // 0 far … 1 near
        QImage sprite;
    };

    void renderStill(const QSize& size, qreal dpr);
    void prepareSprites(const QSizeF& size, qreal dpr);
    void paintStill(QPainter& p, const QRectF& area) const;
    void paintClouds(QPainter& p, const QRectF& area, double seconds) const;
    void paintFog(QPainter& p, const QRectF& area) const;
    void paintPrecipitation(QPainter& p, const QRectF& area, double seconds) const;
    void paintLightning(QPainter& p, const QRectF& area, double seconds) const;

    SkyScene scene_;
    bool hasScene_ = false;
    QImage still_;
    bool spritesReady_ = false;
    QSizeF spritesFor_;
    qreal spritesDpr_ = 0;
    std::vector<Cloud> clouds_;
    std::vector<QImage> drops_;   // a few lengths of one slanted streak
    std::vector<QImage> flakes_;  // a few sizes of one soft dot
    int stillRenders_ = 0;
};

}  // namespace trotlet::sky
