#include "ui/shop/AchievementTileView.h"

#include <QDateTime>
#include <QFocusEvent>
#include <QLocale>
#include <QPainter>

#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;

constexpr int pad = Metrics::cardPadding + 2;

}  // namespace

int AchievementTileView::tileHeight() { return 142; }

AchievementTileView::AchievementTileView(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(ShopMetrics::tileWidth, tileHeight());
}

QString AchievementTileView::unlockedText() const {
    if (!content_.unlocked) return {};
    if (!content_.unlockedAt) return QStringLiteral("Unlocked");
    const QDate day = QDateTime::fromMSecsSinceEpoch(qint64(*content_.unlockedAt * 1000)).date();
    return QStringLiteral("Unlocked ") + QLocale().toString(day, QLocale::ShortFormat);
}

void AchievementTileView::setContent(const shop::AchievementTile& content) {
    if (content == content_) return;
    content_ = content;
    setObjectName(QStringLiteral("shop.achievement.") + qs(content_.id));
    setAccessibleName(qs(content_.accessibleName));
    QString description = qs(content_.goal) + QStringLiteral(". Reward ") + qs(content_.reward) +
                          QStringLiteral(" Fish.");
    if (content_.unlocked)
        description += QStringLiteral(" ") + unlockedText() + QStringLiteral(".");
    setAccessibleDescription(description);
    update();
}

void AchievementTileView::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    shoppaint::card(p, QRectF(rect()), pal);
    if (hasFocus() && keyboardFocus_)
        shoppaint::focusRing(p, QRectF(rect()), pal, Metrics::cardRadius);
    const QColor tint = content_.unlocked ? shoppaint::gold(pal) : pal.textTertiary;
    shoppaint::badge(p, QRectF(pad, pad, ShopMetrics::badge, ShopMetrics::badge), content_.symbol,
                     tint, !content_.unlocked);
    if (content_.unlocked) {
        const qreal mark = 14;
        const QRectF m(pad + ShopMetrics::badge - mark + 3, pad + ShopMetrics::badge - mark + 3,
                       mark, mark);
        p.setPen(QPen(pal.surface, 1.5));
        p.setBrush(pal.calm);
        p.drawEllipse(m);
        Icons::paint(p, m.adjusted(3, 3, -3, -3), "checkmark", pal.onAccent);
    }
    // The reward, top right.
    const QString reward =
        qs(content_.reward) + QStringLiteral(" ") + QString::fromUtf8("\xF0\x9F\x90\x9F");
    const QFontMetricsF cap(type.caption);
    shoppaint::fishText(p, QRectF(pad, pad, width() - 2 * pad, cap.height()), reward, type.caption,
                        content_.unlocked ? pal.text : pal.textSecondary, shoppaint::fishColor(pal),
                        Qt::AlignRight);

    const qreal w = width() - 2 * pad;
    qreal y = pad + ShopMetrics::badge + Metrics::spacing;
    p.setFont(type.label);
    p.setPen(content_.unlocked ? pal.text : pal.textSecondary);
    const QFontMetricsF label(type.label);
    p.drawText(QRectF(pad, y, w, label.height()), Qt::AlignLeft | Qt::AlignVCenter,
               label.elidedText(qs(content_.title), Qt::ElideRight, w));
    y += label.height() + 1;
    // Two lines of goal at most; the tables' goals fit.
    p.setFont(type.caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(pad, y, w, cap.lineSpacing() * 2 + 1),
               Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, qs(content_.goal));
    y = height() - pad - cap.height() - ShopMetrics::progressHeight - 3;
    const QColor fill = content_.unlocked ? pal.calm : pal.named("purple");
    shoppaint::progress(p, QRectF(pad, y, w, ShopMetrics::progressHeight - 1), content_.fraction,
                        fill, pal.track);
    y += ShopMetrics::progressHeight + 2;
    p.setFont(type.caption);
    p.setPen(content_.unlocked ? pal.calm : pal.textSecondary);
    p.drawText(QRectF(pad, y, w, cap.height()), Qt::AlignLeft | Qt::AlignVCenter,
               content_.unlocked ? unlockedText() : qs(content_.progress));
}

void AchievementTileView::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
    QWidget::focusInEvent(event);
}

void AchievementTileView::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

}  // namespace trotlet::ui
