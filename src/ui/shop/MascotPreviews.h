#pragma once

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "mascot/MascotState.h"
#include "mascot/qt/MascotRenderer.h"

namespace trotlet::ui {

// The Shop's moving pictures of the mascots: one renderer whose loops are drawn once and then
// only picked, and one frame clock at a calm 12 fps that repaints only the previews a user can
// see. The clock runs while the Shop is shown and motion is allowed.
class MascotPreviews : public QObject {
    Q_OBJECT
public:
    explicit MascotPreviews(QObject* parent = nullptr);

    // The current frame of a mascot trotting (or, for `pose`, another mood) at a logical size.
    QImage frame(const std::string& id, int size, qreal devicePixelRatio,
                 mascot::MascotMood pose = mascot::MascotMood::running);
    // A frame of the loop for a view that keeps its own clock.
    QImage frameAt(const std::string& id, int index, int size, qreal devicePixelRatio,
                   mascot::MascotMood pose);
    // A mascot's still shape in one colour: the secret one before it is earned.
    QImage silhouette(const std::string& id, int size, qreal devicePixelRatio, const QColor& color);

    // A view whose preview moves; `area` is the part to repaint, in its coordinates.
    void track(QWidget* view, QRect area);
    void setRunning(bool running);
    bool isRunning() const { return timer_.isActive(); }
    int frameIndex() const { return frame_; }
    // Repaints sent by the last tick: only the visible previews.
    int lastTickRepaints() const { return lastRepaints_; }
    // Advances one frame, as the clock does.
    void tick();
    // Drops every drawn loop; the next paint draws again.
    void releaseCaches();

private:
    struct Tracked {
        QPointer<QWidget> view;
        QRect area;
    };
    mascot::MascotRenderer renderer_;
    QTimer timer_;
    int frame_ = 0;
    int lastRepaints_ = 0;
    std::vector<Tracked> tracked_;
    std::map<std::tuple<std::string, int, int, QRgb>, QImage> silhouettes_;
};

}  // namespace trotlet::ui
