#include "ui/shop/MascotCardView.h"

#include <QKeyEvent>
#include <QPainter>

#include "shop/Catalog.h"
#include "ui/shop/MascotPreviews.h"
#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;
using Action = shop::CatalogCard::Action;

constexpr int pad = Metrics::spacingLarge;
constexpr int textLeft = pad + ShopMetrics::previewTile + pad;

QFont taglineFont(const TypeScale& type) {
    QFont font = type.caption;
    font.setItalic(true);
    return font;
}

}  // namespace

MascotCardView::MascotCardView(MascotPreviews& previews, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), previews_(previews), theme_(theme) {
    setFixedWidth(Metrics::gridWidth);
    primary_ = new ShopButton(ShopButton::Style::primary, theme_, this);
    primary_->setCompact(true);
    secondary_ = new ShopButton(ShopButton::Style::secondary, theme_, this);
    secondary_->setCompact(true);
    connect(primary_, &ShopButton::clicked, this, &MascotCardView::primaryClicked);
    connect(secondary_, &ShopButton::clicked, this, &MascotCardView::secondaryClicked);
    previews_.track(this, previewRect());
}

QRect MascotCardView::previewRect() const {
    return QRect(pad, pad, ShopMetrics::previewTile, ShopMetrics::previewTile);
}

qreal MascotCardView::textWidth() const { return Metrics::gridWidth - textLeft - pad; }

void MascotCardView::setContent(const shop::CatalogCard& content) {
    if (content == content_) return;
    const bool statusChanged = !(content.status == content_.status);
    content_ = content;
    if (statusChanged) confirming_ = false;
    setObjectName(QStringLiteral("shop.mascot.") + qs(content_.id));
    setAccessibleName(qs(content_.accessibleName));
    setAccessibleDescription(qs(content_.accessibleDescription));
    relayout();
    update();
}

void MascotCardView::setConfirming(bool confirming) {
    if (confirming == confirming_) return;
    confirming_ = confirming && content_.action == Action::buy;
    relayout();
    update();
    if (confirming_) primary_->setFocus(Qt::OtherFocusReason);
}

MascotCardView::Layout MascotCardView::layout() const {
    const TypeScale& type = theme_.theme().type();
    const qreal w = textWidth();
    Layout l;
    const qreal nameLine = QFontMetricsF(type.title).height();
    const qreal caption = QFontMetricsF(type.caption).height();
    l.tagline = pad + nameLine + caption + 2;
    qreal y = l.tagline + shoppaint::wrappedHeight(qs(content_.tagline), taglineFont(type), w);
    if (!content_.highlight.empty()) {
        l.highlight = y + Metrics::spacingSmall;
        y = l.highlight + shoppaint::wrappedHeight(qs(content_.highlight), type.caption,
                                                   w - Metrics::iconSize - 4);
    }
    const bool meter = content_.status.kind == shop::ItemStatus::Kind::needsFish || content_.secret;
    if (meter) {
        l.meter = y + Metrics::spacing;
        y = l.meter + caption + 2 + ShopMetrics::progressHeight - 1;
    }
    if (confirming_) {
        l.question = y + Metrics::spacing;
        y = l.question +
            shoppaint::wrappedHeight(qs(shop::purchaseQuestion(*shop::Catalog::item(content_.id))),
                                     type.label, w);
    }
    const bool buttons = confirming_ || content_.action != Action::none || content_.canTryOn;
    if (buttons) {
        l.buttons = y + Metrics::spacing;
        y = l.buttons + ShopMetrics::smallButtonHeight;
    }
    l.height = std::max<qreal>(y, pad + ShopMetrics::previewTile) + pad;
    return l;
}

void MascotCardView::relayout() {
    const Layout l = layout();
    setFixedHeight(int(std::ceil(l.height)));
    QString primary;
    QString secondary;
    std::string secondarySymbol;
    if (confirming_) {
        primary = QStringLiteral("Adopt");
        secondary = QStringLiteral("Cancel");
    } else {
        primary = qs(content_.actionLabel);
        if (content_.canTryOn) {
            secondary = qs(content_.tryOnLabel);
            secondarySymbol = "eye";
        }
    }
    primary_->setText(primary);
    primary_->setSymbol(confirming_ ? "bag.fill" : "");
    primary_->setVisible(!primary.isEmpty());
    primary_->setAccessibleName(confirming_
                                    ? qs(shop::purchaseQuestion(*shop::Catalog::item(content_.id)))
                                    : primary + QStringLiteral(" ") + qs(content_.name));
    secondary_->setText(secondary);
    secondary_->setSymbol(secondarySymbol);
    secondary_->setVisible(!secondary.isEmpty());
    secondary_->setAccessibleName(secondary + QStringLiteral(" ") + qs(content_.name));
    qreal right = Metrics::gridWidth - pad;
    for (ShopButton* b : {primary_, secondary_}) {
        if (!b->isVisibleTo(this)) continue;
        const QSize hint = b->sizeHint();
        const int w = std::max(hint.width(), b == primary_ ? 72 : 64);
        b->setGeometry(int(right) - w, int(l.buttons), w, hint.height());
        right -= w + Metrics::spacing;
    }
}

void MascotCardView::primaryClicked() {
    if (confirming_) {
        emit buyRequested(content_.id);
        return;
    }
    if (content_.action == Action::buy)
        setConfirming(true);
    else if (content_.action == Action::equip)
        emit equipRequested(content_.id);
}

void MascotCardView::secondaryClicked() {
    if (confirming_) {
        setConfirming(false);
        primary_->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (content_.tryingOn)
        emit tryOnStopped();
    else
        emit tryOnRequested(content_.id);
}

void MascotCardView::keyPressEvent(QKeyEvent* event) {
    if (confirming_ && event->key() == Qt::Key_Escape) {
        setConfirming(false);
        primary_->setFocus(Qt::OtherFocusReason);
        return;
    }
    QWidget::keyPressEvent(event);
}

void MascotCardView::paintEvent(QPaintEvent* event) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor rarity = shoppaint::rarityColor(pal, content_.rarityKind);
    const bool equipped = content_.status.kind == shop::ItemStatus::Kind::equipped;
    shoppaint::card(p, QRectF(rect()), pal);
    if (equipped || content_.tryingOn) {
        QColor edge = equipped ? pal.accent : shoppaint::gold(pal);
        p.setPen(QPen(edge, 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Metrics::cardRadius - 0.5,
                          Metrics::cardRadius - 0.5);
    }

    // The preview on a tile tinted by its rarity.
    const QRectF tile = previewRect();
    QColor back = rarity;
    back.setAlphaF(theme.isDark() ? 0.18 : 0.11);
    p.setPen(Qt::NoPen);
    p.setBrush(back);
    p.drawRoundedRect(tile, Metrics::cardRadius - 2, Metrics::cardRadius - 2);
    if (event->rect().intersects(previewRect())) {
        const int size = Metrics::mascotSize;
        const QRectF box(tile.center().x() - size / 2.0, tile.center().y() - size / 2.0, size,
                         size);
        const qreal dpr = devicePixelRatioF();
        const QImage image = content_.secret
                                 ? previews_.silhouette(content_.id, size, dpr, pal.textTertiary)
                                 : previews_.frame(content_.id, size, dpr);
        p.drawImage(box, image);
    }
    if (event->rect() == previewRect()) return;  // a frame of the preview, nothing else moved

    // Name, rarity and, on the right, the price or the state.
    const qreal w = textWidth();
    const QFontMetricsF nameFm(type.title);
    const QString name = qs(content_.name);
    p.setFont(type.title);
    p.setPen(content_.secret ? pal.textSecondary : pal.text);
    p.drawText(QPointF(textLeft, pad + nameFm.ascent()), name);
    const qreal pillX = textLeft + nameFm.horizontalAdvance(name) + Metrics::spacing;
    const qreal pillY = pad + (nameFm.height() - QFontMetricsF(type.caption).height() - 2) / 2;
    shoppaint::pill(p, QPointF(pillX, pillY), qs(content_.rarity), type.caption, rarity);

    const QRectF right(textLeft, pad, w, nameFm.height());
    using Badge = shop::CatalogCard::Badge;
    if (content_.badge == Badge::equipped || content_.badge == Badge::tryingOn) {
        const QString label = qs(content_.badgeText);
        const QColor tint = equipped ? pal.accent : shoppaint::gold(pal);
        const qreal pw = shoppaint::pillWidth(label, type.label) + Metrics::iconSize;
        QColor pb = tint;
        pb.setAlphaF(0.14);
        const QFontMetricsF lf(type.label);
        const QRectF box(right.right() - pw, right.center().y() - (lf.height() + 2) / 2, pw,
                         lf.height() + 2);
        p.setPen(Qt::NoPen);
        p.setBrush(pb);
        p.drawRoundedRect(box, box.height() / 2, box.height() / 2);
        const qreal icon = Metrics::iconSize - 2;
        Icons::paint(p, QRectF(box.left() + 6, box.center().y() - icon / 2, icon, icon),
                     equipped ? "checkmark" : "eye", tint);
        p.setFont(type.label);
        p.setPen(tint);
        p.drawText(box.adjusted(icon + 8, 0, -6, 0), Qt::AlignLeft | Qt::AlignVCenter, label);
    } else if (content_.badge == Badge::owned) {
        p.setFont(type.caption);
        p.setPen(pal.textSecondary);
        p.drawText(right, Qt::AlignRight | Qt::AlignVCenter, qs(content_.badgeText));
    } else if (content_.priceInFish) {
        const QString price =
            qs(content_.price) + QStringLiteral(" ") + QString::fromUtf8("\xF0\x9F\x90\x9F");
        const bool affordable = content_.status.kind == shop::ItemStatus::Kind::canBuy;
        shoppaint::fishText(p, right, price, type.label, affordable ? pal.text : pal.textSecondary,
                            shoppaint::fishColor(pal), Qt::AlignRight);
    } else if (!content_.secret) {
        p.setFont(type.caption);
        p.setPen(pal.textSecondary);
        p.drawText(right, Qt::AlignRight | Qt::AlignVCenter, qs(content_.price));
    }

    p.setFont(type.caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(textLeft, pad + nameFm.height(), w, QFontMetricsF(type.caption).height()),
               Qt::AlignLeft | Qt::AlignVCenter, qs(content_.species));
    const Layout l = layout();
    shoppaint::wrapped(p, QRectF(textLeft, l.tagline, w, 100), qs(content_.tagline),
                       taglineFont(type), pal.textSecondary);
    if (!content_.highlight.empty()) {
        const QColor tint = content_.highlightSymbol == "sparkles" ? pal.named("orange")
                            : content_.secret                      ? pal.textSecondary
                                                                   : shoppaint::gold(pal);
        const qreal icon = Metrics::iconSize - 1;
        const qreal lh = QFontMetricsF(type.caption).height();
        Icons::paint(p, QRectF(textLeft, l.highlight + (lh - icon) / 2, icon, icon),
                     content_.highlightSymbol, tint);
        QFont font = type.caption;
        font.setWeight(QFont::DemiBold);
        shoppaint::wrapped(p, QRectF(textLeft + icon + 4, l.highlight, w - icon - 4, 100),
                           qs(content_.highlight), font,
                           content_.secret ? pal.textSecondary : tint);
    }
    if (l.meter > 0) {
        const qreal lh = QFontMetricsF(type.caption).height();
        p.setFont(type.caption);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(textLeft, l.meter, w, lh), Qt::AlignLeft | Qt::AlignVCenter,
                   qs(content_.note));
        const QColor fill = content_.secret ? pal.named("orange") : shoppaint::fishColor(pal);
        shoppaint::progress(p,
                            QRectF(textLeft, l.meter + lh + 2, w, ShopMetrics::progressHeight - 1),
                            content_.affordFraction, fill, pal.track);
    }
    if (confirming_) {
        shoppaint::wrapped(p, QRectF(textLeft, l.question, w, 100),
                           qs(shop::purchaseQuestion(*shop::Catalog::item(content_.id))),
                           type.label, pal.text);
    }
}

}  // namespace trotlet::ui
