#include "ui/shop/MascotPreviews.h"

#include <QPainter>

#include <cmath>

#include "mascot/MascotCharacter.h"
#include "ui/shop/ShopMetrics.h"

namespace trotlet::ui {
namespace {

mascot::MascotState poseState(mascot::MascotMood mood) {
    mascot::MascotState s;
    s.mood = mood;
    s.gait = mascot::Gait::trotting;
    s.loadBand = mood == mascot::MascotMood::running ? 1 : 0;
    return s;
}

}  // namespace

MascotPreviews::MascotPreviews(QObject* parent) : QObject(parent) {
    timer_.setInterval(1000 / ShopMetrics::previewFps);
    connect(&timer_, &QTimer::timeout, this, &MascotPreviews::tick);
}

QImage MascotPreviews::frame(const std::string& id, int size, qreal dpr, mascot::MascotMood pose) {
    return frameAt(id, frame_, size, dpr, pose);
}

QImage MascotPreviews::frameAt(const std::string& id, int index, int size, qreal dpr,
                               mascot::MascotMood pose) {
    return renderer_.frame(mascot::characterFor(id), poseState(pose), index, size, dpr);
}

QImage MascotPreviews::silhouette(const std::string& id, int size, qreal dpr, const QColor& color) {
    const auto key = std::make_tuple(id, size, int(std::lround(dpr * 100)), color.rgba());
    if (auto it = silhouettes_.find(key); it != silhouettes_.end()) return it->second;
    QImage image =
        renderer_
            .frame(mascot::characterFor(id), poseState(mascot::MascotMood::sitting), 0, size, dpr)
            .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter p(&image);
    p.setCompositionMode(QPainter::CompositionMode_SourceIn);
    p.fillRect(QRectF(QPointF(0, 0), QSizeF(image.size()) / dpr), color);
    p.end();
    return silhouettes_.emplace(key, image).first->second;
}

void MascotPreviews::releaseCaches() {
    renderer_ = mascot::MascotRenderer();
    silhouettes_.clear();
}

void MascotPreviews::track(QWidget* view, QRect area) { tracked_.push_back({view, area}); }

void MascotPreviews::setRunning(bool running) {
    if (running && !timer_.isActive()) timer_.start();
    if (!running) timer_.stop();
}

void MascotPreviews::tick() {
    ++frame_;
    lastRepaints_ = 0;
    for (const Tracked& t : tracked_) {
        if (!t.view || !t.view->isVisible() ||
            t.view->visibleRegion().intersected(t.area).isEmpty())
            continue;
        t.view->update(t.area);
        ++lastRepaints_;
    }
}

}  // namespace trotlet::ui
