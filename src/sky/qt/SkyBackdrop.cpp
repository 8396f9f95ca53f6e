#include "sky/qt/SkyBackdrop.h"

#include <QEvent>
#include <QPainter>

#include <cmath>
#include <cstdlib>
#include <string_view>

#include "settings/RawEnum.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::sky {
namespace {

QColor qc(const Rgb& c, double alpha = 1) {
    return QColor::fromRgbF(float(c.r), float(c.g), float(c.b), float(alpha));
}

}  // namespace

std::optional<SkyPhase> phaseFromEnvironment() {
    const char* value = std::getenv("TROTLET_QA_SKY_PHASE");
    if (!value || !*value) return std::nullopt;
    return settings::fromRawName<SkyPhase>(value, SkyPhaseNames);
}

SkyBackdrop::SkyBackdrop(ui::PanelHeader& header, ui::PanelModel& model,
                         const ui::ThemeStore& theme)
    : QObject(&header),
      header_(header),
      model_(model),
      theme_(theme),
      forcedPhase_(phaseFromEnvironment()) {
    clock_.start();
    frameTimer_.setTimerType(Qt::CoarseTimer);
    connect(&frameTimer_, &QTimer::timeout, &header_, [this] { header_.update(); });
    minuteTimer_.setInterval(60 * 1000);
    connect(&minuteTimer_, &QTimer::timeout, this, &SkyBackdrop::refresh);
    connect(&model_, &ui::PanelModel::weatherChanged, this, &SkyBackdrop::refresh);
    connect(&model_, &ui::PanelModel::mascotChanged, this, &SkyBackdrop::refresh);
    connect(&model_, &ui::PanelModel::reduceMotionChanged, this, &SkyBackdrop::refresh);
    connect(&theme_, &ui::ThemeStore::changed, this, &SkyBackdrop::refresh);
    connect(&header_, &ui::PanelHeader::animationWantedChanged, this, &SkyBackdrop::reschedule);
    header_.installEventFilter(this);
    header_.setBackdrop(
        [this](QPainter& p, const QRectF& area) { painter_.paint(p, area, seconds()); });
    refresh();
}

void SkyBackdrop::setForcedPhase(std::optional<SkyPhase> phase) {
    forcedPhase_ = phase;
    refresh();
}

double SkyBackdrop::seconds() const {
    // A still header shows the sky at its first moment, so a screenshot is repeatable.
    return isAnimating() ? double(clock_.elapsed()) / 1000.0 : 0.0;
}

void SkyBackdrop::refresh() {
    SkyInputs in;
    const auto& report = model_.weatherReport();
    in.report = report ? &*report : nullptr;
    const auto now = model_.now();
    in.now = std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count();
    in.localOffsetSeconds = model_.localOffsetSeconds();
    in.mood = model_.mascotVisual().mood;
    in.reduceMotion = model_.reduceMotion();
    in.dark = theme_.theme().isDark();
    in.forcedPhase = forcedPhase_;
    SkyScene next = skyScene(in);
    if (hasScene_ && next == scene_) {
        reschedule();
        return;
    }
    scene_ = std::move(next);
    hasScene_ = true;
    painter_.setScene(scene_);
    ui::PanelHeader::Ink ink;
    ink.text = qc(scene_.ink.text);
    ink.textSecondary = qc(scene_.ink.textSecondary);
    ink.chip = qc(scene_.ink.chip, scene_.ink.chipAlpha);
    ink.shadow = scene_.ink.light;
    header_.setInk(ink);
    reschedule();
    header_.update();
}

void SkyBackdrop::reschedule() {
    const bool shown = header_.isVisible();
    if (shown && !minuteTimer_.isActive()) minuteTimer_.start();
    if (!shown) minuteTimer_.stop();
    const bool run =
        shown && header_.animationWanted() && !model_.reduceMotion() && scene_.animated();
    if (!run) {
        frameTimer_.stop();
        header_.setBackdropTicking(false);
        return;
    }
    // One clock for the header: the sky repaints it whole and the mascot's frames ride on those
    // paints, so the rate is the faster of the two within the sky's limit.
    const double fps =
        std::clamp(std::max(double(scene_.framesPerSecond), model_.mascotFramesPerSecond()), 1.0,
                   double(maxSkyFramesPerSecond));
    const int interval = int(std::lround(1000.0 / fps));
    if (!frameTimer_.isActive() || frameTimer_.interval() != interval) frameTimer_.start(interval);
    header_.setBackdropTicking(true);
}

bool SkyBackdrop::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &header_) {
        if (event->type() == QEvent::Show) refresh();
        if (event->type() == QEvent::Hide) reschedule();
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace trotlet::sky
