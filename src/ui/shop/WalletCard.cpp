#include "ui/shop/WalletCard.h"

#include <QPainter>

#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;

constexpr int pad = Metrics::cardPadding + Metrics::spacingSmall;  // 14
constexpr int badgeSize = 40;
constexpr int topRow = badgeSize;  // the balance beside its badge
constexpr int progressTop = pad + topRow + Metrics::spacingLarge;
constexpr int linesTop = progressTop + ShopMetrics::progressHeight + Metrics::spacing;
constexpr int lineHeight = 18;

}  // namespace

WalletCard::WalletCard(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("shop.wallet"));
    setFixedWidth(Metrics::gridWidth);
    history_ = new ShopButton(ShopButton::Style::link, theme_, this);
    history_->setText(QStringLiteral("History"));
    history_->setTrailingSymbol("chevron.right");
    history_->setObjectName(QStringLiteral("shop.history"));
    history_->setAccessibleName(QStringLiteral("Fish history"));
    connect(history_, &ShopButton::clicked, this, &WalletCard::historyRequested);
    explain_ = new ShopButton(ShopButton::Style::link, theme_, this);
    explain_->setText(QStringLiteral("How to earn"));
    explain_->setObjectName(QStringLiteral("shop.howToEarn"));
    explain_->setTrailingSymbol("chevron.down");
    connect(explain_, &ShopButton::clicked, this, [this] { setExplainerOpen(!open_); });
    relayout();
}

void WalletCard::setContent(const shop::WalletContent& content) {
    if (content == content_) return;
    const bool rows = content.howToEarn != content_.howToEarn;
    const bool first = content_.balance.empty();
    content_ = content;
    // Unfolded for a newcomer when the card first shows; later it stays as the user left it.
    if (first && content_.explainFirst) setExplainerOpen(true);
    setAccessibleName(QStringLiteral("Wallet"));
    setAccessibleDescription(qs(content_.accessibleSummary));
    if (rows) relayout();
    update();
}

void WalletCard::setExplainerOpen(bool open) {
    if (open == open_) return;
    open_ = open;
    explain_->setTrailingSymbol(open_ ? "chevron.up" : "chevron.down");
    explain_->setAccessibleDescription(open_ ? QStringLiteral("Shown") : QStringLiteral("Hidden"));
    relayout();
    update();
}

qreal WalletCard::textWidth() const { return Metrics::gridWidth - 2 * pad; }

int WalletCard::earnRowHeight(const shop::EarnWay& way) const {
    const TypeScale& type = theme_.theme().type();
    const qreal w = textWidth() - ShopMetrics::smallBadge - Metrics::spacing;
    const qreal h = QFontMetricsF(type.label).height() + 1 +
                    shoppaint::wrappedHeight(qs(way.detail), type.caption, w);
    return std::max(ShopMetrics::smallBadge, int(std::ceil(h)));
}

void WalletCard::relayout() {
    int height = linesTop + 2 * lineHeight + pad;
    if (open_) {
        height += Metrics::spacing + 1 + Metrics::spacingLarge;
        for (const auto& way : content_.howToEarn)
            height += earnRowHeight(way) + Metrics::spacingLarge;
        height -= Metrics::spacingLarge;
    }
    setFixedHeight(height);
    const QSize h = history_->sizeHint();
    history_->setGeometry(Metrics::gridWidth - pad - h.width() + Metrics::spacingSmall, pad,
                          h.width(), h.height());
    const QSize e = explain_->sizeHint();
    explain_->setGeometry(Metrics::gridWidth - pad - e.width() + Metrics::spacingSmall,
                          linesTop + (lineHeight - e.height()) / 2, e.width(), e.height());
}

void WalletCard::resizeEvent(QResizeEvent*) { relayout(); }

void WalletCard::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    shoppaint::card(p, QRectF(rect()), pal);

    const QColor fish = shoppaint::fishColor(pal);
    shoppaint::badge(p, QRectF(pad, pad, badgeSize, badgeSize), "fish.fill", fish);
    const qreal x = pad + badgeSize + Metrics::spacingLarge;
    const QFontMetricsF big(type.headlineSmall);
    const QString balance = qs(content_.balance);
    p.setFont(type.headlineSmall);
    p.setPen(pal.text);
    const qreal baseline = pad + big.ascent() - 3;
    p.drawText(QPointF(x, baseline), balance);
    p.setFont(type.unit);
    p.setPen(pal.textSecondary);
    p.drawText(QPointF(x + big.horizontalAdvance(balance) + Metrics::spacingSmall + 1, baseline),
               QStringLiteral("Fish"));
    p.setFont(type.caption);
    p.setPen(content_.earnedToday.rfind('+', 0) == 0 ? pal.calm : pal.textSecondary);
    p.drawText(QRectF(x, baseline + 3, textWidth(), lineHeight), Qt::AlignLeft | Qt::AlignVCenter,
               qs(content_.earnedToday));

    shoppaint::progress(p, QRectF(pad, progressTop, textWidth(), ShopMetrics::progressHeight),
                        content_.nextFishFraction, fish, pal.track);
    const qreal left = textWidth() - explain_->width();
    p.setFont(type.label);
    p.setPen(pal.text);
    p.drawText(QRectF(pad, linesTop, left, lineHeight), Qt::AlignLeft | Qt::AlignVCenter,
               QFontMetricsF(type.label).elidedText(qs(content_.nextFish), Qt::ElideRight, left));
    p.setFont(type.caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(pad, linesTop + lineHeight, textWidth(), lineHeight),
               Qt::AlignLeft | Qt::AlignVCenter, qs(content_.rate));

    if (!open_) return;
    qreal y = linesTop + 2 * lineHeight + Metrics::spacing;
    p.setPen(QPen(pal.separator, 1));
    p.drawLine(QPointF(pad, y + 0.5), QPointF(pad + textWidth(), y + 0.5));
    y += 1 + Metrics::spacingLarge;
    const QFontMetricsF label(type.label);
    const qreal textLeft = pad + ShopMetrics::smallBadge + Metrics::spacing;
    const qreal w = textWidth() - ShopMetrics::smallBadge - Metrics::spacing;
    for (const auto& way : content_.howToEarn) {
        const QColor tint = way.symbol == "fish.fill"    ? shoppaint::gold(pal)
                            : way.symbol == "flame.fill" ? pal.named("orange")
                            : way.symbol == "star.fill"  ? pal.named("purple")
                                                         : pal.named("pink");
        shoppaint::badge(p, QRectF(pad, y, ShopMetrics::smallBadge, ShopMetrics::smallBadge),
                         way.symbol, tint);
        p.setFont(type.label);
        p.setPen(pal.text);
        p.drawText(QRectF(textLeft, y, w, label.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   qs(way.title));
        shoppaint::wrapped(p, QRectF(textLeft, y + label.height() + 1, w, 100), qs(way.detail),
                           type.caption, pal.textSecondary);
        y += earnRowHeight(way) + Metrics::spacingLarge;
    }
}

}  // namespace trotlet::ui
