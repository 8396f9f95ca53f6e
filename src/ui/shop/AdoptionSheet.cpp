#include "ui/shop/AdoptionSheet.h"

#include <QKeyEvent>
#include <QPainter>

#include <cmath>

#include "shop/Catalog.h"
#include "shop/ShopScreenContent.h"
#include "ui/shop/MascotPreviews.h"
#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;

constexpr int cardWidth = Metrics::gridWidth - 2 * Metrics::spacingLarge;
constexpr int titleHeight = 24;
constexpr int pad = Metrics::margin + Metrics::spacingSmall;

}  // namespace

AdoptionSheet::AdoptionSheet(MascotPreviews& previews, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), previews_(previews), theme_(theme) {
    setObjectName(QStringLiteral("shop.welcome"));
    later_ = new ShopButton(ShopButton::Style::secondary, theme_, this);
    later_->setText(QStringLiteral("Later"));
    later_->setObjectName(QStringLiteral("shop.welcome.later"));
    equip_ = new ShopButton(ShopButton::Style::primary, theme_, this);
    equip_->setText(QStringLiteral("Equip now"));
    equip_->setObjectName(QStringLiteral("shop.welcome.equip"));
    connect(later_, &ShopButton::clicked, this, &AdoptionSheet::close);
    connect(equip_, &ShopButton::clicked, this, [this] {
        // Equipped first, so that closing finds no try-on left to undo.
        emit equipRequested(id_);
        close();
    });
    frames_.setInterval(1000 / ShopMetrics::previewFps);
    connect(&frames_, &QTimer::timeout, this, [this] {
        ++frame_;
        update(previewRect().toAlignedRect().adjusted(-24, -16, 24, 8));
    });
    hide();
}

QRectF AdoptionSheet::cardRect() const {
    const qreal body =
        shoppaint::wrappedHeight(body_, theme_.theme().type().body, cardWidth - 2 * pad);
    const qreal h = pad + ShopMetrics::sheetPreview + Metrics::spacingLarge + titleHeight + 2 +
                    body + Metrics::margin + ShopMetrics::buttonHeight + pad;
    // A little above the middle, where the eye rests.
    return QRectF((width() - cardWidth) / 2.0,
                  std::max<qreal>(Metrics::margin, (height() - h) / 2.0 - 40), cardWidth, h);
}

QRectF AdoptionSheet::previewRect() const {
    const QRectF card = cardRect();
    const qreal s = ShopMetrics::sheetPreview;
    return QRectF(card.center().x() - s / 2, card.top() + pad, s, s);
}

void AdoptionSheet::present(const std::string& mascotId, bool earned, bool equipped) {
    const shop::CatalogItem* item = shop::Catalog::item(mascotId);
    if (!item) return;
    id_ = mascotId;
    title_ = qs(shop::welcomeTitle(*item));
    body_ = qs(shop::welcomeBody(*item, earned));
    equip_->setVisible(!equipped);
    later_->setText(equipped ? QStringLiteral("Done") : QStringLiteral("Later"));
    setAccessibleName(title_);
    setAccessibleDescription(body_);
    setGeometry(parentWidget()->rect());
    placeButtons();
    frame_ = 0;
    raise();
    show();
    frames_.start();
    (equipped ? later_ : equip_)->setFocus(Qt::OtherFocusReason);
}

void AdoptionSheet::close() {
    frames_.stop();
    hide();
    emit closed();
}

void AdoptionSheet::resizeEvent(QResizeEvent*) { placeButtons(); }

void AdoptionSheet::placeButtons() {
    const QRectF card = cardRect();
    const int y = int(card.bottom()) - pad - ShopMetrics::buttonHeight;
    const int gap = Metrics::spacing;
    const int w = (cardWidth - 2 * pad - gap) / 2;
    if (equip_->isVisibleTo(this)) {
        later_->setGeometry(int(card.left()) + pad, y, w, ShopMetrics::buttonHeight);
        equip_->setGeometry(int(card.left()) + pad + w + gap, y, w, ShopMetrics::buttonHeight);
    } else {
        later_->setGeometry(int(card.center().x()) - w / 2, y, w, ShopMetrics::buttonHeight);
    }
}

void AdoptionSheet::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QColor scrim = pal.window;
    scrim.setAlphaF(0.82);
    p.fillRect(rect(), scrim);
    const QRectF card = cardRect();
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(card, Metrics::panelRadius, Metrics::panelRadius);

    // A ring of sparkles around the newcomer, turning slowly.
    const QRectF preview = previewRect();
    const QColor gold = shoppaint::gold(pal);
    QColor glow = gold;
    glow.setAlphaF(0.16);
    p.setPen(Qt::NoPen);
    p.setBrush(glow);
    p.drawEllipse(preview.center(), preview.width() * 0.62, preview.height() * 0.62);
    for (int i = 0; i < 6; ++i) {
        const double a = i * M_PI / 3 + frame_ * 0.05;
        const double r = preview.width() * (0.72 + 0.06 * std::sin(frame_ * 0.3 + i));
        const qreal s = i % 2 ? 10 : 14;
        const QPointF c = preview.center() + QPointF(std::cos(a) * r, std::sin(a) * r * 0.8);
        Icons::paint(p, QRectF(c.x() - s / 2, c.y() - s / 2, s, s), "sparkles", gold);
    }
    const qreal dpr = devicePixelRatioF();
    const QImage image = previews_.frameAt(id_, frame_, ShopMetrics::sheetPreview, dpr,
                                           mascot::MascotMood::celebrating);
    p.drawImage(preview, image);

    p.setFont(theme.type().title);
    p.setPen(pal.text);
    const qreal textTop = preview.bottom() + Metrics::spacingLarge;
    p.drawText(QRectF(card.left() + pad, textTop, card.width() - 2 * pad, titleHeight),
               Qt::AlignCenter, title_);
    p.setFont(theme.type().body);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(card.left() + pad, textTop + titleHeight + 2, card.width() - 2 * pad, 60),
               Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, body_);
}

void AdoptionSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void AdoptionSheet::mousePressEvent(QMouseEvent* event) {
    // A click beside the card is "later", as on any sheet.
    if (!cardRect().contains(event->position())) close();
}

}  // namespace trotlet::ui
