#include "ui/shop/ShopTiles.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;

constexpr int pad = Metrics::cardPadding + 2;
constexpr int tileHeight = 118;

// The tile's head: a badge and a label.
void head(QPainter& p, const Theme& theme, std::string_view symbol, const QColor& tint,
          const QString& label) {
    shoppaint::badge(p, QRectF(pad, pad, ShopMetrics::smallBadge, ShopMetrics::smallBadge), symbol,
                     tint);
    p.setFont(theme.type().label);
    p.setPen(theme.palette().text);
    p.drawText(QRectF(pad + ShopMetrics::smallBadge + Metrics::spacing, pad, ShopMetrics::tileWidth,
                      ShopMetrics::smallBadge),
               Qt::AlignLeft | Qt::AlignVCenter, label);
}

}  // namespace

GoldenFishTile::GoldenFishTile(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("shop.goldenFish"));
    setFixedSize(ShopMetrics::tileWidth, tileHeight);
    setAccessibleName(QStringLiteral("Golden Fish"));
    catch_ = new ShopButton(ShopButton::Style::primary, theme_, this);
    catch_->setText(QStringLiteral("Catch"));
    catch_->setSymbol("fish.fill");
    catch_->setCompact(true);
    catch_->setObjectName(QStringLiteral("shop.goldenFish.catch"));
    catch_->setAccessibleName(QStringLiteral("Catch the Golden Fish"));
    catch_->hide();
    const QSize hint = catch_->sizeHint();
    catch_->setGeometry(pad, tileHeight - pad - hint.height(), hint.width(), hint.height());
    connect(catch_, &ShopButton::clicked, this, &GoldenFishTile::catchRequested);
}

void GoldenFishTile::setContent(const shop::GoldenFishTileContent& content) {
    if (content == content_) return;
    content_ = content;
    catch_->setVisible(content_.swimming);
    setAccessibleDescription(qs(content_.caught + ". " + content_.status));
    update();
}

void GoldenFishTile::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    shoppaint::card(p, QRectF(rect()), pal);
    const QColor gold = shoppaint::gold(pal);
    head(p, theme, "fish.fill", gold, QStringLiteral("Golden Fish"));
    // Today's catches: one fish per possible catch, gold when caught.
    const int max = int(content_.dailyMax);
    const int caught = int(content_.caughtToday);
    const qreal size = 20;
    QColor empty = pal.textTertiary;
    empty.setAlphaF(0.35);
    qreal y = pad + ShopMetrics::smallBadge + Metrics::spacing;
    for (int i = 0; i < max; ++i)
        Icons::paint(p, QRectF(pad + i * (size + 4), y, size, size), "fish.fill",
                     i < caught ? gold : empty);
    p.setFont(theme.type().caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(pad + max * (size + 4) + 2, y, width() - pad * 2, size),
               Qt::AlignLeft | Qt::AlignVCenter, qs(content_.caught));
    y += size + Metrics::spacingSmall + 2;
    if (content_.swimming) {
        p.setFont(theme.type().label);
        p.setPen(gold);
        p.drawText(QRectF(pad, y, width() - 2 * pad, 30),
                   Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                   QStringLiteral("Swimming now!"));
        return;
    }
    shoppaint::wrapped(p, QRectF(pad, y, width() - 2 * pad, height() - y - pad),
                       qs(content_.status), theme.type().caption, pal.textSecondary);
}

AchievementsTile::AchievementsTile(const ThemeStore& theme, QWidget* parent)
    : QAbstractButton(parent), theme_(theme) {
    setObjectName(QStringLiteral("shop.achievements"));
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setFixedSize(ShopMetrics::tileWidth, tileHeight);
    setAccessibleName(QStringLiteral("Achievements"));
}

void AchievementsTile::setSummary(const shop::AchievementsSummary& summary) {
    if (summary == summary_) return;
    summary_ = summary;
    setAccessibleDescription(qs(summary_.count + " unlocked, " + summary_.reward));
    update();
}

void AchievementsTile::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    shoppaint::card(p, QRectF(rect()), pal, hovered_ || isDown());
    if (hasFocus() && keyboardFocus_)
        shoppaint::focusRing(p, QRectF(rect()), pal, Metrics::cardRadius);
    const QColor tint = pal.named("purple");
    head(p, theme, "trophy.fill", tint, QStringLiteral("Achievements"));
    const qreal chevron = Metrics::iconSize;
    Icons::paint(p,
                 QRectF(width() - pad - chevron + 2, pad + (ShopMetrics::smallBadge - chevron) / 2,
                        chevron, chevron),
                 "chevron.right", pal.textTertiary);
    qreal y = pad + ShopMetrics::smallBadge + Metrics::spacing;
    const QFontMetricsF big(theme.type().headlineSmall);
    p.setFont(theme.type().headlineSmall);
    p.setPen(pal.text);
    const QString unlocked = QString::number(summary_.unlocked);
    p.drawText(QPointF(pad, y + big.ascent() - 4), unlocked);
    p.setFont(theme.type().caption);
    p.setPen(pal.textSecondary);
    p.drawText(QPointF(pad + big.horizontalAdvance(unlocked) + 4, y + big.ascent() - 4),
               QStringLiteral("of %1").arg(summary_.total));
    y += big.ascent() + 2;
    const double fraction = summary_.total ? double(summary_.unlocked) / summary_.total : 0;
    shoppaint::progress(p, QRectF(pad, y, width() - 2 * pad, ShopMetrics::progressHeight - 1),
                        fraction, tint, pal.track);
    y += ShopMetrics::progressHeight + Metrics::spacingSmall;
    p.setFont(theme.type().caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(pad, y, width() - 2 * pad, height() - y - pad + 4),
               Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, qs(summary_.reward));
}

void AchievementsTile::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void AchievementsTile::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

void AchievementsTile::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void AchievementsTile::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}

}  // namespace trotlet::ui
