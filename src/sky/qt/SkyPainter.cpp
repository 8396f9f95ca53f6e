#include "sky/qt/SkyPainter.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "ui/theme/Gradients.h"

namespace trotlet::sky {
namespace {

constexpr double referenceWidth = 384;  // the panel's width: counts of drops and stars are per this

QColor qc(const Rgb& c, double alpha = 1) {
    return QColor::fromRgbF(float(c.r), float(c.g), float(c.b), float(std::clamp(alpha, 0.0, 1.0)));
}

// A repeatable pseudo-random share in 0…1 for item i of stream k: the sky looks the same at
// every paint and in every screenshot.
double hash01(unsigned i, unsigned k) {
    std::uint32_t x = i * 0x9E3779B1u ^ (k + 0x7F4A7C15u) * 0x85EBCA77u;
    x ^= x >> 16;
    x *= 0x7FEB352Du;
    x ^= x >> 15;
    x *= 0x846CA68Bu;
    x ^= x >> 16;
    return double(x) / 4294967296.0;
}

double wrap(double x, double span) { return span > 0 ? x - std::floor(x / span) * span : 0; }

// Where the sun or the moon stands: in the free band between the mascot and the chips, above
// the header's text, rising at the left, highest halfway, setting at the right.
QPointF bodyCentre(const QRectF& area, double progress, double height) {
    const double x = area.left() + area.width() * (0.2 + 0.26 * std::clamp(progress, 0.0, 1.0));
    const double y = area.top() + area.height() * (0.24 - 0.13 * std::clamp(height, 0.0, 1.0));
    return {x, y};
}

QPainterPath cloudShape(double w, double h) {
    // A flat-bottomed cumulus: a low base and three bumps of different sizes.
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);  // overlapping parts fill, they do not cut holes
    path.addRoundedRect(QRectF(0, h * 0.52, w, h * 0.46), h * 0.23, h * 0.23);
    path.addEllipse(QRectF(w * 0.10, h * 0.30, w * 0.36, h * 0.62));
    path.addEllipse(QRectF(w * 0.30, h * 0.02, w * 0.42, h * 0.86));
    path.addEllipse(QRectF(w * 0.56, h * 0.24, w * 0.34, h * 0.66));
    return path.simplified();
}

void paintMoon(QPainter& p, const QPointF& centre, double radius, double phase, double alpha) {
    const QColor lit = qc(Rgb::hex(0xF4F0DE), alpha);
    // The whole disc faintly (earthshine), then the lit part: a half disc and the terminator's
    // half ellipse, added for a gibbous moon and cut away for a crescent.
    p.setPen(Qt::NoPen);
    p.setBrush(qc(Rgb::hex(0xF4F0DE), alpha * 0.14));
    p.drawEllipse(centre, radius, radius);
    const double k = std::cos(2 * M_PI * phase);  // 1 new, -1 full
    const bool waxing = phase < 0.5;
    QPainterPath half;
    const QRectF disc(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    half.moveTo(centre.x(), disc.top());
    half.arcTo(disc, 90, waxing ? -180 : 180);
    half.closeSubpath();
    QPainterPath terminator;
    const double rx = radius * std::fabs(k);
    terminator.addEllipse(centre, rx, radius);
    const QPainterPath shape = k > 0 ? half.subtracted(terminator) : half.united(terminator);
    p.setBrush(lit);
    p.drawPath(shape);
}

}  // namespace

void SkyPainter::setScene(const SkyScene& scene) {
    if (hasScene_ && scene == scene_) return;
    scene_ = scene;
    hasScene_ = true;
    // The sprites take the scene's colours; the next paint draws them again with the still
    // layer. Both are small, and a scene changes at most once a minute.
    releaseCaches();
}

void SkyPainter::releaseCaches() {
    still_ = QImage();
    spritesReady_ = false;
    clouds_.clear();
    drops_.clear();
    flakes_.clear();
}

void SkyPainter::paint(QPainter& painter, const QRectF& area, double seconds) {
    const qreal dpr = painter.device() ? painter.device()->devicePixelRatioF() : 1.0;
    const QSize pixels = (area.size() * dpr).toSize();
    prepareSprites(area.size(), dpr);
    if (still_.isNull() || still_.size() != pixels || still_.devicePixelRatio() != dpr)
        renderStill(pixels, dpr);
    painter.drawImage(area.topLeft(), still_);
    if (!scene_.animated()) return;
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    paintClouds(painter, area, seconds);
    paintPrecipitation(painter, area, seconds);
    paintLightning(painter, area, seconds);
    painter.restore();
}

void SkyPainter::renderStill(const QSize& pixels, qreal dpr) {
    ++stillRenders_;
    still_ = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    still_.setDevicePixelRatio(dpr);
    still_.fill(Qt::transparent);
    QPainter p(&still_);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area(QPointF(0, 0), QSizeF(pixels) / dpr);
    paintStill(p, area);
    // Fog drifts too slowly to see at a few frames a second: it stays in the picture.
    paintFog(p, area);
    if (!scene_.animated()) {
        // Nothing moves: the clouds and the falling rain stand still in the picture.
        paintClouds(p, area, 0);
        paintPrecipitation(p, area, 0);
    }
}

void SkyPainter::paintStill(QPainter& p, const QRectF& area) const {
    const SkyScene& s = scene_;
    p.fillRect(area, ui::verticalGradient(area, {{0, qc(s.gradient[0])},
                                                 {0.5, qc(s.gradient[1])},
                                                 {1, qc(s.gradient[2])}}));

    if (s.starAlpha > 0.01) {
        p.setPen(Qt::NoPen);
        const int stars = int(std::lround(44 * area.width() / referenceWidth));
        for (int i = 0; i < stars; ++i) {
            const QPointF at(area.left() + hash01(i, 1) * area.width(),
                             area.top() + hash01(i, 2) * area.height() * 0.9);
            const double size = 0.45 + hash01(i, 3) * 0.85;
            p.setBrush(qc(Rgb::hex(0xFFFFFF), s.starAlpha * (0.35 + 0.65 * hash01(i, 4))));
            p.drawEllipse(at, size, size);
        }
    }

    if (s.sun) {
        const QPointF c = bodyCentre(area, s.clock.progress, s.clock.elevation);
        const QRectF glow(c - QPointF(36, 36), QSizeF(72, 72));
        p.setPen(Qt::NoPen);
        p.setBrush(ui::radialGradient(
            p, glow, {{0, qc(s.sunColor, 0.5 * s.sunAlpha)}, {1, qc(s.sunColor, 0)}}));
        p.drawEllipse(glow);
        // Through cloud the disc pales rather than fading into the blue.
        p.setBrush(qc(mix(s.sunColor, Rgb::hex(0xFFFFFF), 0.6 * (1 - s.sunAlpha)),
                      0.5 + 0.5 * s.sunAlpha));
        p.drawEllipse(c, 8.5, 8.5);
    }
    if (s.moon) {
        const double height = 1 - std::fabs(s.clock.progress - 0.5) * 2;
        const QPointF c = bodyCentre(area, s.clock.progress, 0.35 + 0.65 * height);
        const QRectF glow(c - QPointF(24, 24), QSizeF(48, 48));
        p.setPen(Qt::NoPen);
        p.setBrush(ui::radialGradient(p, glow,
                                      {{0, qc(Rgb::hex(0xDDE4FF), 0.22 * s.moonAlpha)},
                                       {1, qc(Rgb::hex(0xDDE4FF), 0)}}));
        p.drawEllipse(glow);
        paintMoon(p, c, 7, s.moonPhase, s.moonAlpha);
    }

    if (s.moodTintAlpha > 0) {
        // Rising from the bottom edge and gone by a third of the way up.
        const QRectF glow(QPointF(area.left(), area.top() + area.height() * 0.35),
                          area.bottomRight());
        p.fillRect(glow, ui::verticalGradient(glow, {{0, qc(s.moodTint, 0)},
                                                     {1, qc(s.moodTint, s.moodTintAlpha)}}));
    }
}

void SkyPainter::prepareSprites(const QSizeF& size, qreal dpr) {
    if (spritesReady_ && spritesFor_ == size && spritesDpr_ == dpr) return;
    clouds_.clear();
    drops_.clear();
    flakes_.clear();
    spritesReady_ = true;
    spritesFor_ = size;
    spritesDpr_ = dpr;
    still_ = QImage();  // a still sky bakes its clouds in
    const SkyScene& s = scene_;
    auto canvas = [dpr](QSizeF logical) {
        QImage image((logical * dpr).toSize() + QSize(2, 2), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(dpr);
        image.fill(Qt::transparent);
        return image;
    };

    const int count = int(std::lround(s.cloudiness * 9 * size.width() / referenceWidth));
    const Rgb underside = mix(s.cloudColor, s.skyAt(0.8), 0.35);
    for (int i = 0; i < count; ++i) {
        Cloud c;
        c.depth = hash01(i, 11);
        c.x = hash01(i, 12);
        // Far clouds sit higher; a full deck spreads down the whole header.
        c.y = 0.02 + hash01(i, 13) * (0.25 + 0.45 * s.cloudiness) + (1 - c.depth) * 0.05;
        c.width = (46 + 64 * c.depth) * (0.8 + 0.6 * s.cloudiness);
        c.speed = 2 + 6 * c.depth;
        const double height = c.width * 0.42;
        c.sprite = canvas(QSizeF(c.width, height));
        QPainter p(&c.sprite);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(ui::verticalGradient(QRectF(0, 0, c.width, height),
                                        {{0, qc(mix(s.cloudColor, Rgb::hex(0xFFFFFF), 0.12))},
                                         {1, qc(underside)}}));
        p.setOpacity(s.cloudAlpha * (0.55 + 0.45 * c.depth));
        p.drawPath(cloudShape(c.width, height));
        clouds_.push_back(std::move(c));
    }

    if (s.precipitation == Precipitation::rain || s.precipitation == Precipitation::drizzle) {
        const bool drizzle = s.precipitation == Precipitation::drizzle;
        const double length = drizzle ? 4 : 9;
        const double norm = std::sqrt(1 + s.slant * s.slant);
        for (double scale : {0.75, 0.95, 1.15, 1.3}) {
            const double dy = length * scale / norm, dx = s.slant * dy;
            QImage drop = canvas(QSizeF(dx + 3, dy + 3));
            QPainter p(&drop);
            p.setRenderHint(QPainter::Antialiasing);
            QPen pen(qc(s.precipitationColor, s.precipitationAlpha), drizzle ? 0.8 : 1.1);
            pen.setCapStyle(Qt::RoundCap);
            p.setPen(pen);
            // The head at the bottom right: a sprite drawn at (x - dx, y - dy) puts it at (x, y).
            p.drawLine(QPointF(1.5, 1.5), QPointF(1.5 + dx, 1.5 + dy));
            drops_.push_back(std::move(drop));
        }
    }
    if (s.precipitation == Precipitation::snow) {
        for (double r : {0.8, 1.2, 1.6}) {
            QImage flake = canvas(QSizeF(2 * r + 2, 2 * r + 2));
            QPainter p(&flake);
            p.setRenderHint(QPainter::Antialiasing);
            p.setPen(Qt::NoPen);
            p.setBrush(qc(s.precipitationColor, s.precipitationAlpha));
            p.drawEllipse(QPointF(r + 1, r + 1), r, r);
            flakes_.push_back(std::move(flake));
        }
    }
}

void SkyPainter::paintClouds(QPainter& p, const QRectF& area, double seconds) const {
    // Far clouds first, so near ones pass in front.
    std::vector<const Cloud*> order;
    for (const auto& c : clouds_) order.push_back(&c);
    std::sort(order.begin(), order.end(),
              [](const Cloud* a, const Cloud* b) { return a->depth < b->depth; });
    for (const Cloud* c : order) {
        const double track = area.width() + c->width;
        const double x =
            wrap(c->x * track + c->speed * scene_.motionScale * seconds, track) - c->width;
        p.drawImage(QPointF(area.left() + x, area.top() + c->y * area.height()), c->sprite);
    }
}

void SkyPainter::paintFog(QPainter& p, const QRectF& area) const {
    if (scene_.fogAlpha <= 0) return;
    p.setPen(Qt::NoPen);
    for (int i = 0; i < 3; ++i) {
        const double cy = area.top() + area.height() * (0.4 + 0.25 * i);
        const double cx = area.left() + area.width() * (0.5 + 0.3 * std::sin(i * 2.1));
        const double rx = area.width() * 0.75, ry = area.height() * 0.22;
        const QRectF band(cx - rx, cy - ry, 2 * rx, 2 * ry);
        p.setBrush(ui::radialGradient(
            p, band, {{0, qc(scene_.fogColor, scene_.fogAlpha)}, {1, qc(scene_.fogColor, 0)}}));
        p.drawEllipse(band);
    }
}

void SkyPainter::paintPrecipitation(QPainter& p, const QRectF& area, double seconds) const {
    const SkyScene& s = scene_;
    if (s.precipitation == Precipitation::none || s.amount <= 0) return;
    const double w = area.width(), h = area.height();
    const double t = seconds * s.motionScale;
    if (s.precipitation == Precipitation::snow) {
        if (flakes_.empty()) return;
        const int flakes = int(std::lround(s.amount * 56 * w / referenceWidth));
        for (int i = 0; i < flakes; ++i) {
            const QImage& sprite =
                flakes_[std::size_t(hash01(i, 21) * double(flakes_.size())) % flakes_.size()];
            const double speed = h * 0.2 * (0.7 + 0.6 * hash01(i, 22));
            const double y = wrap(hash01(i, 23) * (h + 4) + speed * t, h + 4) - 2;
            const double sway = 5 * std::sin(t * 0.9 + 6.283 * hash01(i, 24));
            const double x = wrap(hash01(i, 25) * w + s.slant * y + sway, w);
            p.drawImage(QPointF(area.left() + x - 2, area.top() + y - 2), sprite);
        }
        return;
    }
    if (drops_.empty()) return;
    const bool drizzle = s.precipitation == Precipitation::drizzle;
    const int drops = int(std::lround(s.amount * (drizzle ? 90 : 120) * w / referenceWidth));
    const double fall = h * (drizzle ? 1.2 : 1.9);
    for (int i = 0; i < drops; ++i) {
        const QImage& sprite =
            drops_[std::size_t(hash01(i, 31) * double(drops_.size())) % drops_.size()];
        const QSizeF size = sprite.deviceIndependentSize();
        const double speed = fall * (0.8 + 0.4 * hash01(i, 32));
        const double y = wrap(hash01(i, 33) * (h + size.height()) + speed * t, h + size.height());
        const double x = wrap(hash01(i, 34) * w + s.slant * y, w);
        p.drawImage(
            QPointF(area.left() + x - size.width() + 1.5, area.top() + y - size.height() + 1.5),
            sprite);
    }
}

void SkyPainter::paintLightning(QPainter& p, const QRectF& area, double seconds) const {
    const SkyScene& s = scene_;
    if (!s.lightning || s.flashAlpha <= 0 || s.flashEverySeconds <= 0) return;
    const double period = s.flashEverySeconds;
    const auto stroke = unsigned(std::floor(seconds / period));
    const double since = seconds - stroke * period - hash01(stroke, 41) * period * 0.5;
    if (since < 0 || since > 0.5) return;
    // A double flash: a bright strike and a weaker echo, each fading in a tenth of a second.
    auto pulse = [](double x) { return x < 0 ? 0.0 : std::exp(-x / 0.07); };
    const double alpha = std::min(1.0, pulse(since) + 0.6 * pulse(since - 0.16)) * s.flashAlpha;
    p.fillRect(area, qc(Rgb::hex(0xFFFFFF), alpha));
    if (since < 0.18) {
        QPainterPath bolt;
        double x = area.left() + area.width() * (0.25 + 0.6 * hash01(stroke, 42));
        double y = area.top();
        bolt.moveTo(x, y);
        for (int i = 0; i < 5; ++i) {
            x += (hash01(stroke * 8 + i, 43) - 0.5) * 14;
            y += area.height() * 0.13;
            bolt.lineTo(x, y);
        }
        p.setPen(QPen(qc(Rgb::hex(0xFFFFFF), 0.85 * (1 - since / 0.18)), 1.4, Qt::SolidLine,
                      Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(bolt);
    }
}

}  // namespace trotlet::sky
