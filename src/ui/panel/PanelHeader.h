#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

#include "mascot/qt/MascotRenderer.h"

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// The panel's header: the mascot at 44 pt with its own frame clock, the mood line, the Fish
// and weather chips, and at its foot the greeting with the day's odometer. The backdrop is a
// hook for the painted sky, which also says which ink reads over it; the band to the right of
// the mascot is kept clear for fish swimming across.
class PanelHeader : public QWidget {
    Q_OBJECT
public:
    using Backdrop = std::function<void(QPainter&, const QRectF&)>;
    // Text and chip colours chosen to read over the backdrop; a light ink gets a soft shadow.
    struct Ink {
        QColor text;
        QColor textSecondary;
        QColor chip;
        bool shadow = false;
    };

    PanelHeader(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);

    void setBackdrop(Backdrop backdrop);
    void setInk(std::optional<Ink> ink);
    // Stops or starts the frame clock: it runs only while shown and motion is allowed.
    void setAnimating(bool animating);
    bool isAnimating() const { return timer_.isActive(); }
    // Whether the owner wants motion at all (a screenshot does not); the sky follows it.
    bool animationWanted() const { return wantAnimation_; }
    // While the backdrop repaints the whole header at its own rate, the mascot's frames ride
    // on those paints (advanced by the time gone) instead of a second timer's.
    void setBackdropTicking(bool ticking);
    bool backdropTicking() const { return backdropTicking_; }
    // The greeting as last drawn, for tests and the accessible description.
    const QString& greeting() const { return greeting_; }
    // Shows a fixed frame: for screenshots.
    void setFrameIndex(int index);
    int frameIndex() const { return frame_; }
    QRectF mascotRect() const;
    // Drops the drawn frames; the next paint draws again.
    void releaseCaches();

    QSize sizeHint() const override;

signals:
    void animationWantedChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool showsFocusRing() const { return hasFocus() && keyboardFocus_; }

private:
    void pet();
    void reschedule();
    void moodLineMaybeChanged();
    void updateGreeting();
    qreal petLift() const;
    QRectF greetingRect() const;

    PanelModel& model_;
    const ThemeStore& theme_;
    Backdrop backdrop_;
    std::optional<Ink> ink_;
    QString greeting_;
    QString odometer_;
    mascot::MascotRenderer renderer_;
    QTimer timer_;
    QTimer moodTimer_;
    QString moodLine_;
    int frame_ = 0;
    bool backdropTicking_ = false;
    QElapsedTimer frameClock_;  // while the backdrop ticks: time since frame_ was last set
    bool wantAnimation_ = true;
    QElapsedTimer petClock_;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
