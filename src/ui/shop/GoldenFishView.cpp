#include "ui/shop/GoldenFishView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

#include "shop/ShopScreenContent.h"
#include "shop/qt/ShopRuntime.h"
#include "ui/panel/PanelModel.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Gradients.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

// Swimming, the view hugs the fish, its glow and its wake, so a frame repaints little of the
// header; for the word after a catch it grows around the same spot.
constexpr QSize swimSize(100, 44);
constexpr QSize reactionSize(128, 84);  // room for "Daily max reached" above the fish
constexpr double fadeInSeconds = 0.4;
constexpr double fadeOutSeconds = 0.8;
constexpr double stillX = 0.64;  // where the fish waits with reduced motion

// A plump fish facing left, on a 34 x 22 box: body, tail, fin and eye.
void paintFish(QPainter& p, const QRectF& box, const QColor& gold, const QColor& eye, double wag) {
    const qreal w = box.width();
    const qreal h = box.height();
    auto at = [&](qreal x, qreal y) { return QPointF(box.left() + x * w, box.top() + y * h); };
    QPainterPath tail;
    tail.moveTo(at(0.70, 0.5));
    tail.lineTo(at(1.0, 0.10 + wag * 0.08));
    tail.quadTo(at(0.92, 0.5), at(1.0, 0.90 + wag * 0.08));
    tail.closeSubpath();
    QPainterPath body;
    body.moveTo(at(0.02, 0.52));
    body.cubicTo(at(0.14, 0.02), at(0.62, -0.04), at(0.80, 0.5));
    body.cubicTo(at(0.62, 1.04), at(0.14, 0.98), at(0.02, 0.52));
    p.setPen(QPen(gold.darker(150), 1.1));
    p.setBrush(verticalGradient(box, {{0, gold.lighter(135)}, {0.55, gold}, {1, gold.darker(125)}}));
    p.drawPath(tail.united(body));
    QPainterPath fin;
    fin.moveTo(at(0.36, 0.28));
    fin.quadTo(at(0.48, 0.05 - wag * 0.05), at(0.58, 0.30));
    p.setPen(QPen(gold.darker(150), 1.2, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawPath(fin);
    p.setPen(QPen(gold.darker(140), 1, Qt::SolidLine, Qt::RoundCap));
    p.drawArc(QRectF(at(0.30, 0.30), at(0.42, 0.72)), -70 * 16, 140 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(eye);
    p.drawEllipse(at(0.17, 0.44), h * 0.08, h * 0.08);
    p.setBrush(QColor(255, 255, 255, 200));
    p.drawEllipse(at(0.15, 0.41), h * 0.03, h * 0.03);
}

}  // namespace

GoldenFishView::GoldenFishView(shop::ShopRuntime& shop, const PanelModel& model,
                               const ThemeStore& theme, QWidget* header)
    : QWidget(header), shop_(shop), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("goldenFish"));
    setAccessibleName(QStringLiteral("Golden Fish"));
    setAccessibleDescription(QStringLiteral("Catch it before it leaves: 5 Fish"));
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    resize(swimSize);
    frames_.setTimerType(Qt::PreciseTimer);
    frames_.setInterval(1000 / ShopMetrics::fishFps);
    connect(&frames_, &QTimer::timeout, this, &GoldenFishView::step);
    connect(&shop_, &shop::ShopRuntime::goldenFishChanged, this, &GoldenFishView::sync);
    connect(&model_, &PanelModel::reduceMotionChanged, this, &GoldenFishView::step);
    hide();
    sync();
}

void GoldenFishView::sync() {
    const auto& active = shop_.engine().activeGoldenFish();
    if (active && shop_.engine().goldenFishEnabled()) {
        if (!fish_ || fish_->id != active->id) reaction_.clear();
        fish_ = active;
    } else {
        fish_.reset();
    }
    step();
}

QRectF GoldenFishView::bodyRect() const {
    return QRectF((width() - ShopMetrics::fishWidth) / 2.0,
                  (height() - ShopMetrics::fishHeight) / 2.0, ShopMetrics::fishWidth,
                  ShopMetrics::fishHeight);
}

QRectF GoldenFishView::bodyInHeader() const { return bodyRect().translated(pos()); }

void GoldenFishView::placeAt(QPointF centre) {
    const QRectF body = bodyRect();
    move(int(std::lround(centre.x() - body.center().x())),
         int(std::lround(centre.y() - body.center().y())));
}

void GoldenFishView::step() {
    QWidget* header = parentWidget();
    if (!reaction_.isEmpty()) {
        if (reactionClock_.elapsed() < ShopMetrics::reactionMs) {
            update();
            if (!frames_.isActive()) frames_.start();
            return;
        }
        reaction_.clear();
    }
    swimming_ = false;
    if (fish_ && shop_.engine().goldenFishEnabled()) {
        const shop::Timestamp now = shop_.engine().trustedNow();
        const double elapsed = now - fish_->spawnedAt;
        const double length = fish_->endsAt - fish_->spawnedAt;
        if (elapsed >= 0 && elapsed < length) {
            swimming_ = true;
            if (size() != swimSize) resize(swimSize);
            phase_ = elapsed;
            facingRight_ = fish_->direction;
            const qreal y = fish_->yAt(now) * header->height();
            if (model_.reduceMotion()) {
                opacity_ = std::clamp(
                    std::min(elapsed / fadeInSeconds, (length - elapsed) / fadeOutSeconds), 0.0,
                    1.0);
                placeAt(QPointF(stillX * header->width(), fish_->lane * header->height()));
            } else {
                opacity_ = 1;
                placeAt(QPointF(fish_->xAt(now) * header->width(), y));
            }
        }
    }
    if (swimming_) {
        if (!isVisible()) {
            raise();
            show();
        }
        update();
        if (!frames_.isActive()) frames_.start();
        return;
    }
    frames_.stop();
    hide();
}

void GoldenFishView::tryCatch() {
    if (!fish_ || !reaction_.isEmpty()) return;
    const shop::CatchResult result = shop_.catchGoldenFish(fish_->id);
    fish_.reset();
    reaction_ = QString::fromStdString(shop::catchReaction(result));
    reactionGood_ = result.kind == shop::CatchResult::Kind::caught;
    if (reaction_.isEmpty()) {
        step();
        return;
    }
    reactionClock_.start();
    const QPointF spot = bodyInHeader().center();
    resize(reactionSize);
    placeAt(spot);
    show();
    update();
    if (!frames_.isActive()) frames_.start();
}

void GoldenFishView::mousePressEvent(QMouseEvent* event) {
    // Only the body catches; a click beside it belongs to the header (the mascot, the chips).
    if (swimming_ && bodyRect().adjusted(-4, -4, 4, 4).contains(event->position())) {
        tryCatch();
        return;
    }
    event->ignore();
}

void GoldenFishView::keyPressEvent(QKeyEvent* event) {
    if (swimming_ && (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                      event->key() == Qt::Key_Enter)) {
        tryCatch();
        return;
    }
    QWidget::keyPressEvent(event);
}

void GoldenFishView::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor gold = shoppaint::gold(pal);
    if (!reaction_.isEmpty()) {
        // The word rises and fades where the fish was.
        const double t =
            std::clamp(reactionClock_.elapsed() / double(ShopMetrics::reactionMs), 0.0, 1.0);
        p.setOpacity(1 - t * t);
        QFont font = reactionGood_ ? theme.type().headlineSmall : theme.type().label;
        p.setFont(font);
        const QRectF box(0, bodyRect().top() - 14 - t * 16, width(),
                         QFontMetricsF(font).height() + 4);
        QPainterPath outline;
        outline.addText(QPointF(0, 0), font, reaction_);
        const QRectF bounds = outline.boundingRect();
        outline.translate(box.center() - bounds.center());
        p.setPen(QPen(pal.surface, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(outline);
        p.setPen(Qt::NoPen);
        p.setBrush(reactionGood_ ? gold.darker(theme.isDark() ? 100 : 115) : pal.textSecondary);
        p.drawPath(outline);
        if (reactionGood_) {
            p.setBrush(gold);
            for (int i = 0; i < 5; ++i) {
                const double a = i * 2 * M_PI / 5 + 0.4;
                const QPointF c =
                    bodyRect().center() + QPointF(std::cos(a), std::sin(a)) * (10 + 18 * t);
                p.drawEllipse(c, 2.2 * (1 - t) + 0.5, 2.2 * (1 - t) + 0.5);
            }
        }
        return;
    }
    if (!swimming_) return;
    p.setOpacity(opacity_);
    const QRectF body = bodyRect();
    // A soft glow so the fish reads on the light and the dark header alike.
    QColor halo = gold;
    halo.setAlphaF(theme.isDark() ? 0.35 : 0.25);
    QColor clear = halo;
    clear.setAlphaF(0);
    const QPointF c = body.center();
    const QPointF radii(body.width() * 0.75, body.height() * 0.9);
    const QRectF glowBox(c - radii, c + radii);
    p.setPen(Qt::NoPen);
    p.setBrush(radialGradient(p, glowBox, {{0, halo}, {1, clear}}));
    p.drawEllipse(glowBox);
    if (!model_.reduceMotion()) {
        // A short wake of glints behind the tail, bobbing a little out of step.
        const qreal back = facingRight_ ? -1 : 1;
        for (int i = 1; i <= 3; ++i) {
            QColor glint = gold;
            glint.setAlphaF(0.8 - 0.18 * i);
            p.setBrush(glint);
            const QPointF c(body.center().x() + back * (body.width() / 2 + 5 + 8 * i),
                            body.center().y() + 3 * std::sin(phase_ * 9 - i));
            p.drawEllipse(c, 3.2 - 0.6 * i, 3.2 - 0.6 * i);
        }
    }
    p.save();
    if (facingRight_) {
        p.translate(body.center().x() * 2, 0);
        p.scale(-1, 1);
    }
    const double wag = model_.reduceMotion() ? 0 : std::sin(phase_ * 14);
    // The eye stays dark on either theme: it belongs to the gold, not to the text.
    paintFish(p, body, gold, gold.darker(400), wag);
    p.restore();
    if (hasFocus())
        shoppaint::focusRing(p, body.adjusted(-5, -5, 5, 5), pal, body.height() / 2 + 4);
}

}  // namespace trotlet::ui
