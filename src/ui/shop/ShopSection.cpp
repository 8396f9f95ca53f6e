#include "ui/shop/ShopSection.h"

#include <QPainter>

#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

SectionTitle::SectionTitle(const QString& title, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), title_(title), theme_(theme) {
    setFixedHeight(ShopMetrics::buttonHeight + Metrics::spacingSmall);
    setAccessibleName(title);
}

void SectionTitle::setTitle(const QString& title) {
    if (title == title_) return;
    title_ = title;
    setAccessibleName(title);
    update();
}

void SectionTitle::setFact(const QString& fact) {
    if (fact == fact_) return;
    fact_ = fact;
    setAccessibleDescription(fact);
    update();
}

void SectionTitle::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    QPainter p(this);
    const QRectF box = QRectF(rect()).adjusted(Metrics::spacingSmall, 0, -Metrics::spacingSmall, 0);
    p.setFont(theme.type().title);
    p.setPen(theme.palette().text);
    p.drawText(box, Qt::AlignLeft | Qt::AlignBottom, title_);
    p.setFont(theme.type().caption);
    p.setPen(theme.palette().textSecondary);
    p.drawText(box.adjusted(0, 0, 0, -1), Qt::AlignRight | Qt::AlignBottom, fact_);
}

PageHeader::PageHeader(const QString& title, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), title_(title), theme_(theme) {
    setFixedHeight(ShopMetrics::pageHeader);
    back_ = new ShopButton(ShopButton::Style::link, theme_, this);
    back_->setText(QStringLiteral("Shop"));
    back_->setSymbol("chevron.left");
    back_->setAccessibleName(QStringLiteral("Back to the Shop"));
    back_->setObjectName(QStringLiteral("shop.back"));
    connect(back_, &ShopButton::clicked, this, &PageHeader::backRequested);
}

void PageHeader::resizeEvent(QResizeEvent*) {
    const QSize hint = back_->sizeHint();
    back_->setGeometry(0, (height() - hint.height()) / 2, hint.width(), hint.height());
}

void PageHeader::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    QPainter p(this);
    p.setFont(theme.type().title);
    p.setPen(theme.palette().text);
    p.drawText(QRectF(rect()), Qt::AlignCenter, title_);
}

}  // namespace trotlet::ui
