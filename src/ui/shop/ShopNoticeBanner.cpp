#include "ui/shop/ShopNoticeBanner.h"

#include <QPainter>

#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

using shoppaint::qs;

ShopNoticeBanner::ShopNoticeBanner(const shop::ShopBanner& banner, const ThemeStore& theme,
                                   QWidget* parent)
    : QWidget(parent), banner_(banner), theme_(theme) {
    setObjectName(QStringLiteral("shop.notice"));
    setAccessibleName(qs(banner_.title));
    setAccessibleDescription(qs(banner_.body));
    dismiss_ = new ShopButton(ShopButton::Style::icon, theme_, this);
    dismiss_->setObjectName(QStringLiteral("shop.notice.dismiss"));
    dismiss_->setSymbol("xmark");
    dismiss_->setAccessibleName(QStringLiteral("Dismiss: ") + qs(banner_.title));
    connect(dismiss_, &ShopButton::clicked, this, [this] { emit dismissed(banner_.kind); });
    setFixedWidth(Metrics::gridWidth);
    setFixedHeight(heightFor(Metrics::gridWidth));
}

QRectF ShopNoticeBanner::textBox() const {
    const qreal left = Metrics::cardPadding + Metrics::iconSize + 4 + Metrics::spacing;
    return QRectF(left, Metrics::cardPadding,
                  width() - left - ShopMetrics::smallButtonHeight - Metrics::spacing,
                  height() - 2 * Metrics::cardPadding);
}

int ShopNoticeBanner::heightFor(int width) const {
    const TypeScale& type = theme_.theme().type();
    const qreal left = Metrics::cardPadding + Metrics::iconSize + 4 + Metrics::spacing;
    const qreal w = width - left - ShopMetrics::smallButtonHeight - Metrics::spacing;
    const qreal h = shoppaint::wrappedHeight(qs(banner_.title), type.label, w) + 2 +
                    shoppaint::wrappedHeight(qs(banner_.body), type.caption, w);
    return int(std::ceil(h)) + 2 * Metrics::cardPadding;
}

void ShopNoticeBanner::resizeEvent(QResizeEvent*) {
    const int side = ShopMetrics::smallButtonHeight;
    dismiss_->setGeometry(width() - side - Metrics::spacingSmall, Metrics::spacingSmall + 2, side,
                          side);
}

void ShopNoticeBanner::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor tint = banner_.warning ? pal.busy : pal.accent;
    QColor back = tint;
    back.setAlphaF(theme.isDark() ? 0.16 : 0.10);
    QColor edge = tint;
    edge.setAlphaF(0.35);
    p.setPen(QPen(edge, 1));
    p.setBrush(back);
    p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cardRadius,
                      Metrics::cardRadius);
    const qreal icon = Metrics::iconSize + 4;
    Icons::paint(p, QRectF(Metrics::cardPadding, Metrics::cardPadding, icon, icon), banner_.symbol,
                 tint);
    const QRectF box = textBox();
    const qreal titleHeight =
        shoppaint::wrapped(p, box, qs(banner_.title), theme.type().label, pal.text);
    shoppaint::wrapped(p, box.adjusted(0, titleHeight + 2, 0, 0), qs(banner_.body),
                       theme.type().caption, pal.textSecondary);
}

}  // namespace trotlet::ui
