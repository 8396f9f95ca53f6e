#include "ui/panel/PanelHeader.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

#include "mascot/MascotCharacter.h"
#include "panel/HeaderContent.h"
#include "reports/PawTrack.h"
#include "settings/AppSettings.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Gradients.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int petMs = 700;
constexpr double maxHeaderFps = 24;

QString qs(const std::string& s) { return QString::fromStdString(s); }

// The header's colours: the palette's, or the backdrop's ink when a sky chose one.
struct HeaderColors {
    QColor text, textSecondary, chip;
    bool shadow = false;
};

// Text with a soft shadow under a light ink, so it holds on any part of a dark sky.
void drawText(QPainter& p, const QRectF& box, int flags, const QString& text, const QColor& color,
              bool shadow) {
    if (shadow) {
        p.setPen(QColor(0, 0, 0, 70));
        p.drawText(box.translated(0, 0.8), flags, text);
    }
    p.setPen(color);
    p.drawText(box, flags, text);
}

// A rounded chip with an icon and text, right-aligned at `right`; returns its left edge.
qreal drawChip(QPainter& p, const Theme& theme, const HeaderColors& colors, qreal right, qreal top,
               std::string_view symbol, const QColor& iconColor, const QString& text,
               const QString& detail = {}) {
    const QFont& font = theme.type().label;
    const QFontMetricsF fm(font);
    const QFontMetricsF dm(theme.type().caption);
    const qreal icon = 14;
    const qreal width = 8 + icon + 5 + fm.horizontalAdvance(text) +
                        (detail.isEmpty() ? 0 : 5 + dm.horizontalAdvance(detail)) + 9;
    const QRectF chip(right - width, top, width, Metrics::chipHeight);
    p.setPen(Qt::NoPen);
    p.setBrush(colors.chip);
    p.drawRoundedRect(chip, Metrics::chipRadius, Metrics::chipRadius);
    Icons::paint(p, QRectF(chip.left() + 8, chip.center().y() - icon / 2, icon, icon), symbol,
                 iconColor);
    qreal x = chip.left() + 8 + icon + 5;
    p.setFont(font);
    p.setPen(colors.text);
    p.drawText(QRectF(x, chip.top(), fm.horizontalAdvance(text) + 1, chip.height()),
               Qt::AlignVCenter | Qt::AlignLeft, text);
    if (!detail.isEmpty()) {
        x += fm.horizontalAdvance(text) + 5;
        p.setFont(theme.type().caption);
        p.setPen(colors.textSecondary);
        p.drawText(QRectF(x, chip.top(), dm.horizontalAdvance(detail) + 1, chip.height()),
                   Qt::AlignVCenter | Qt::AlignLeft, detail);
    }
    return chip.left();
}

}  // namespace

PanelHeader::PanelHeader(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("header"));
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(Metrics::headerHeight);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        ++frame_;
        update(mascotRect().toAlignedRect().adjusted(-4, -12, 4, 4));
    });
    // The mood line changes at most every 8 seconds; checking each second repaints only then.
    moodTimer_.setInterval(1000);
    connect(&moodTimer_, &QTimer::timeout, this, &PanelHeader::moodLineMaybeChanged);
    connect(&model_, &PanelModel::mascotChanged, this, [this] {
        reschedule();
        moodLineMaybeChanged();
        update();
    });
    connect(&model_, &PanelModel::sampleChanged, this, &PanelHeader::moodLineMaybeChanged);
    connect(&model_, &PanelModel::reduceMotionChanged, this, &PanelHeader::reschedule);
    connect(&model_, &PanelModel::walletChanged, this, [this] { update(); });
    connect(&model_, &PanelModel::weatherChanged, this, &PanelHeader::updateGreeting);
    connect(&model_, &PanelModel::pawChanged, this, &PanelHeader::updateGreeting);
    moodLine_ = qs(model_.moodLine());
    updateGreeting();
    setAccessibleName(QStringLiteral("Pet ") + qs(model_.mascotName()));
}

QSize PanelHeader::sizeHint() const { return QSize(Metrics::panelWidth, Metrics::headerHeight); }

void PanelHeader::setBackdrop(Backdrop backdrop) {
    backdrop_ = std::move(backdrop);
    update();
}

void PanelHeader::setInk(std::optional<Ink> ink) {
    ink_ = std::move(ink);
    update();
}

void PanelHeader::setAnimating(bool animating) {
    const bool changed = wantAnimation_ != animating;
    wantAnimation_ = animating;
    reschedule();
    if (changed) emit animationWantedChanged();
}

QRectF PanelHeader::greetingRect() const {
    return QRectF(Metrics::margin, height() - Metrics::greetingHeight - 6,
                  width() - 2 * Metrics::margin, Metrics::greetingHeight);
}

void PanelHeader::updateGreeting() {
    const Theme& theme = theme_.theme();
    const auto& paw = model_.paw();
    const QString odometer = paw ? qs(reports::distanceText(paw->track.todayMeters)) : QString();
    // The greeting takes the row but for the odometer and a gap.
    const QFontMetricsF odometerFont(theme.type().caption);
    const qreal odometerWidth =
        odometer.isEmpty() ? 0 : odometerFont.horizontalAdvance(odometer) + 14 + 4 + 12;
    const qreal room = greetingRect().width() - odometerWidth;
    const QFontMetricsF fm(theme.type().body);
    const auto& report = model_.weatherReport();
    const auto now =
        std::chrono::duration_cast<std::chrono::seconds>(model_.now().time_since_epoch()).count();
    const QString greeting = qs(panel::headerGreeting(
        report ? &*report : nullptr, now, model_.localOffsetSeconds(), model_.firstName(),
        [&](const std::string& text) { return fm.horizontalAdvance(qs(text)) <= room; }));
    if (greeting == greeting_ && odometer == odometer_) return;
    greeting_ = greeting;
    odometer_ = odometer;
    setAccessibleDescription(odometer_.isEmpty() ? greeting_
                                                 : greeting_ + QStringLiteral(". ") + odometer_ +
                                                       QStringLiteral(" run today"));
    update();
}

void PanelHeader::setFrameIndex(int index) {
    frame_ = index;
    update();
}

void PanelHeader::releaseCaches() { renderer_ = mascot::MascotRenderer(); }

QRectF PanelHeader::mascotRect() const {
    const qreal size = Metrics::mascotSize;
    return QRectF(Metrics::margin - 2, 14, size, size);
}

void PanelHeader::setBackdropTicking(bool ticking) {
    if (ticking == backdropTicking_) return;
    backdropTicking_ = ticking;
    frameClock_.restart();
    reschedule();
}

void PanelHeader::reschedule() {
    const bool run = wantAnimation_ && isVisible() && !model_.reduceMotion();
    if (run && backdropTicking_) {
        timer_.stop();
        if (!moodTimer_.isActive()) moodTimer_.start();
        return;
    }
    if (!run) {
        timer_.stop();
        moodTimer_.stop();
        return;
    }
    const double fps = std::clamp(model_.mascotFramesPerSecond(), 1.0, maxHeaderFps);
    const int interval = int(std::lround(1000.0 / fps));
    if (!timer_.isActive() || timer_.interval() != interval) timer_.start(interval);
    if (!moodTimer_.isActive()) moodTimer_.start();
}

void PanelHeader::moodLineMaybeChanged() {
    updateGreeting();  // the part of the day moves on too
    const QString line = qs(model_.moodLine());
    if (line == moodLine_) return;
    moodLine_ = line;
    update();
}

qreal PanelHeader::petLift() const {
    if (!petClock_.isValid() || petClock_.elapsed() > petMs) return 0;
    const double t = double(petClock_.elapsed()) / petMs;
    return std::sin(t * M_PI) * 6;
}

void PanelHeader::pet() {
    petClock_.restart();
    emit model_.petRequested();
    // The happy hop is short; a few quick repaints carry it even with the clock paused.
    for (int ms = 30; ms <= petMs + 30; ms += 30)
        QTimer::singleShot(
            ms, this, [this] { update(mascotRect().toAlignedRect().adjusted(-4, -16, 24, 4)); });
}

void PanelHeader::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = rect();
    if (backdrop_) {
        backdrop_(p, area);
    } else {
        p.fillRect(area, verticalGradient(area, {{0, pal.headerTop}, {1, pal.headerBottom}}));
    }
    const HeaderColors colors =
        ink_ ? HeaderColors{ink_->text, ink_->textSecondary, ink_->chip, ink_->shadow}
             : HeaderColors{pal.text, pal.textSecondary, pal.chip, false};

    if (backdropTicking_ && frameClock_.isValid()) {
        const double fps = std::clamp(model_.mascotFramesPerSecond(), 1.0, maxHeaderFps);
        const int advance = int(double(frameClock_.elapsed()) * fps / 1000.0);
        if (advance > 0) {
            frame_ += advance;
            frameClock_.restart();
        }
    }

    // The mascot, hopping while petted.
    const QRectF mascotBox = mascotRect().translated(0, -petLift());
    const auto& character = mascot::characterFor(model_.mascotId());
    const QImage frame = renderer_.frame(character, model_.mascotVisual(), frame_,
                                         Metrics::mascotSize, devicePixelRatioF());
    p.drawImage(mascotBox, frame);
    if (petLift() > 0)
        Icons::paint(p, QRectF(mascotBox.right() - 4, mascotBox.top() - 8, 12, 12), "heart.fill",
                     pal.critical);
    if (showsFocusRing()) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(mascotRect().adjusted(-3, -3, 3, 3), 8, 8);
    }

    // Chips on the right: Fish first, then the weather when it is shown.
    const qreal chipTop = 12;
    qreal right = width() - Metrics::margin;
    const auto chips = panel::headerChips(model_.fishBalance(), model_.weather(),
                                          model_.settings().weather().showInHeader(),
                                          model_.settings().monitoring().temperatureUnit());
    right =
        drawChip(p, theme, colors, right, chipTop, "fish.fill", pal.named("cyan"), qs(chips.fish)) -
        6;
    if (chips.weather)
        drawChip(p, theme, colors, right, chipTop, chips.weather->symbol, pal.named("yellow"),
                 qs(chips.weather->temperature), qs(chips.weather->age));

    // Name and mood line beside the mascot, under the chips' row.
    const qreal textLeft = mascotRect().right() + 12;
    const QRectF nameBox(textLeft, 40, width() - textLeft - Metrics::margin, 18);
    p.setFont(theme.type().title);
    drawText(p, nameBox, Qt::AlignLeft | Qt::AlignVCenter, qs(model_.mascotName()), colors.text,
             colors.shadow);
    const QRectF foot = greetingRect();
    if (!moodLine_.isEmpty()) {
        p.setFont(theme.type().caption);
        const QRectF moodBox(textLeft, nameBox.bottom() + 1, nameBox.width(),
                             foot.top() - nameBox.bottom() - 3);
        const QFontMetricsF fm(theme.type().caption);
        // Two lines at most; the mood line is short by design, but a long process name is not.
        QString text = moodLine_;
        if (fm.boundingRect(moodBox, Qt::TextWordWrap, text).height() > fm.lineSpacing() * 2 + 1)
            text = fm.elidedText(text, Qt::ElideRight, moodBox.width() * 1.9);
        drawText(p, moodBox, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text,
                 colors.textSecondary, colors.shadow);
    }

    // The foot: the greeting on the left, the day's odometer on the right.
    qreal greetingRight = foot.right();
    if (!odometer_.isEmpty()) {
        p.setFont(theme.type().caption);
        const qreal textWidth = QFontMetricsF(theme.type().caption).horizontalAdvance(odometer_);
        const QRectF textBox(foot.right() - textWidth - 1, foot.top(), textWidth + 1,
                             foot.height());
        drawText(p, textBox, Qt::AlignRight | Qt::AlignVCenter, odometer_, colors.textSecondary,
                 colors.shadow);
        const qreal icon = 12;
        Icons::paint(p, QRectF(textBox.left() - icon - 4, foot.center().y() - icon / 2, icon, icon),
                     "pawprint.fill", colors.textSecondary);
        greetingRight = textBox.left() - icon - 4 - 12;
    }
    p.setFont(theme.type().body);
    drawText(p, QRectF(foot.left(), foot.top(), greetingRight - foot.left(), foot.height()),
             Qt::AlignLeft | Qt::AlignVCenter, greeting_, colors.text, colors.shadow);
    p.setPen(QPen(pal.separator, 1));
    p.drawLine(QPointF(0, height() - 0.5), QPointF(width(), height() - 0.5));
}

void PanelHeader::mousePressEvent(QMouseEvent* event) {
    if (mascotRect().adjusted(-4, -4, 4, 4).contains(event->position())) pet();
}

void PanelHeader::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter) {
        pet();
        return;
    }
    QWidget::keyPressEvent(event);
}

void PanelHeader::showEvent(QShowEvent*) {
    updateGreeting();
    reschedule();
}
void PanelHeader::hideEvent(QHideEvent*) { reschedule(); }
void PanelHeader::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}
void PanelHeader::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
