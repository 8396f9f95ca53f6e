#include "ui/shop/CheckInCardView.h"

#include <QPainter>

#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;
using Dot = shop::StreakDot::Kind;

constexpr int pad = Metrics::cardPadding + Metrics::spacingSmall;
constexpr int headRow = ShopMetrics::badge;
const QString fishEmoji = QString::fromUtf8("\xF0\x9F\x90\x9F");

qreal textHeight(const QString& text, const QFont& font, qreal width) {
    // A line that draws the fish symbol stays on one line.
    if (text.contains(fishEmoji)) return QFontMetricsF(font).height();
    return shoppaint::wrappedHeight(text, font, width);
}

void drawText(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
              const QColor& color, const QColor& fish) {
    if (text.contains(fishEmoji))
        shoppaint::fishText(
            p, QRectF(box.left(), box.top(), box.width(), QFontMetricsF(font).height()), text, font,
            color, fish);
    else
        shoppaint::wrapped(p, box, text, font, color);
}

}  // namespace

CheckInCardView::CheckInCardView(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("shop.checkIn"));
    setFixedWidth(Metrics::gridWidth);
    collect_ = new ShopButton(ShopButton::Style::primary, theme_, this);
    collect_->setObjectName(QStringLiteral("shop.checkIn.collect"));
    connect(collect_, &ShopButton::clicked, this, &CheckInCardView::collectRequested);
    relayout();
}

void CheckInCardView::setContent(const shop::CheckInContent& content) {
    if (content == content_) return;
    content_ = content;
    collect_->setText(qs(content_.button));
    collect_->setEnabled(content_.canCollect);
    collect_->setSymbol(content_.state == shop::CheckInContent::State::collected ? "checkmark"
                                                                                 : "");
    setAccessibleName(QStringLiteral("Daily check-in"));
    setAccessibleDescription(qs(content_.title + ". " + content_.detail));
    relayout();
    update();
}

void CheckInCardView::setNote(const shop::CheckInNote& note) {
    note_ = note;
    relayout();
    update();
}

qreal CheckInCardView::innerWidth() const { return Metrics::gridWidth - 2 * pad; }

CheckInCardView::Layout CheckInCardView::layout() const {
    const TypeScale& type = theme_.theme().type();
    Layout l;
    const qreal w = innerWidth();
    l.title = pad + headRow + Metrics::spacingLarge;
    l.detail = l.title + textHeight(qs(content_.title), type.body, w) + 2;
    qreal y = l.detail + textHeight(qs(content_.detail), type.caption, w);
    if (!note_.empty()) {
        l.note = y + Metrics::spacing;
        qreal h = 2 * Metrics::spacing + QFontMetricsF(type.label).height();
        for (const auto& line : note_.lines)
            h += 2 + shoppaint::wrappedHeight(qs(line), type.caption, w - 2 * Metrics::spacing);
        y = l.note + h;
    }
    l.week = y + Metrics::spacingLarge;
    l.button = l.week + QFontMetricsF(type.caption).height() + 2 + ShopMetrics::dot +
               Metrics::spacingLarge + 2;
    l.saver = l.button + ShopMetrics::buttonHeight + Metrics::spacingLarge;
    const qreal saverText = w - Metrics::iconSize - Metrics::spacing;
    l.height = l.saver + 1 + Metrics::spacingLarge + QFontMetricsF(type.label).height() + 1 +
               shoppaint::wrappedHeight(qs(content_.saverDetail), type.caption, saverText) + pad;
    return l;
}

void CheckInCardView::relayout() {
    const Layout l = layout();
    setFixedHeight(int(std::ceil(l.height)));
    const QSize hint = collect_->sizeHint();
    collect_->setGeometry(pad, int(l.button), std::max(hint.width(), 140), hint.height());
}

void CheckInCardView::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    shoppaint::card(p, QRectF(rect()), pal);
    const Layout l = layout();
    const qreal w = innerWidth();
    const QColor flame = pal.named("orange");
    const QColor fish = shoppaint::fishColor(pal);
    const bool behind = content_.state == shop::CheckInContent::State::clockBehind;

    shoppaint::badge(p, QRectF(pad, pad, headRow, headRow), behind ? "clock.fill" : "flame.fill",
                     behind ? pal.busy : flame);
    p.setFont(type.label);
    p.setPen(pal.text);
    p.drawText(QRectF(pad + headRow + Metrics::spacing, pad, w, headRow),
               Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Daily check-in"));
    if (!content_.streak.empty()) {
        const QString streak = qs(content_.streak);
        const qreal pw = shoppaint::pillWidth(streak, type.label) + Metrics::iconSize;
        const QFontMetricsF fm(type.label);
        const QRectF pillBox(pad + w - pw, pad + (headRow - fm.height() - 2) / 2, pw,
                             fm.height() + 2);
        QColor back = flame;
        back.setAlphaF(0.14);
        p.setPen(Qt::NoPen);
        p.setBrush(back);
        p.drawRoundedRect(pillBox, pillBox.height() / 2, pillBox.height() / 2);
        const qreal icon = Metrics::iconSize - 2;
        Icons::paint(p, QRectF(pillBox.left() + 6, pillBox.center().y() - icon / 2, icon, icon),
                     "flame.fill", flame);
        p.setFont(type.label);
        p.setPen(flame);
        p.drawText(pillBox.adjusted(icon + 8, 0, -6, 0), Qt::AlignVCenter | Qt::AlignLeft, streak);
    }

    QFont titleFont = type.body;
    titleFont.setWeight(QFont::DemiBold);
    drawText(p, QRectF(pad, l.title, w, 200), qs(content_.title), titleFont, pal.text, fish);
    drawText(p, QRectF(pad, l.detail, w, 200), qs(content_.detail), type.caption, pal.textSecondary,
             fish);

    if (!note_.empty()) {
        qreal h = 2 * Metrics::spacing + QFontMetricsF(type.label).height();
        for (const auto& line : note_.lines)
            h += 2 + shoppaint::wrappedHeight(qs(line), type.caption, w - 2 * Metrics::spacing);
        const QRectF box(pad, l.note, w, h);
        QColor back = behind ? pal.busy : pal.calm;
        back.setAlphaF(0.12);
        p.setPen(Qt::NoPen);
        p.setBrush(back);
        p.drawRoundedRect(box, Metrics::spacing, Metrics::spacing);
        qreal y = box.top() + Metrics::spacing;
        p.setFont(type.label);
        p.setPen(pal.text);
        const qreal lh = QFontMetricsF(type.label).height();
        p.drawText(QRectF(box.left() + Metrics::spacing, y, box.width() - 2 * Metrics::spacing, lh),
                   Qt::AlignLeft | Qt::AlignVCenter, qs(note_.headline));
        y += lh + 2;
        for (const auto& line : note_.lines)
            y += 2 + shoppaint::wrapped(p,
                                        QRectF(box.left() + Metrics::spacing, y,
                                               box.width() - 2 * Metrics::spacing, 100),
                                        qs(line), type.caption, pal.textSecondary);
    }

    // The week, Monday first.
    if (!content_.week.empty()) {
        const qreal cell = w / qreal(content_.week.size());
        const qreal letterHeight = QFontMetricsF(type.caption).height();
        for (std::size_t i = 0; i < content_.week.size(); ++i) {
            const auto& day = content_.week[i];
            const qreal cx = pad + cell * (qreal(i) + 0.5);
            p.setFont(type.caption);
            p.setPen(day.kind == Dot::today ? pal.text : pal.textTertiary);
            p.drawText(QRectF(cx - cell / 2, l.week, cell, letterHeight), Qt::AlignCenter,
                       qs(day.label));
            const qreal r = ShopMetrics::dot / 2.0;
            const QPointF c(cx, l.week + letterHeight + 2 + r);
            const QRectF disc(c.x() - r, c.y() - r, 2 * r, 2 * r);
            const qreal icon = r * 1.1;
            const QRectF iconBox(c.x() - icon / 2, c.y() - icon / 2, icon, icon);
            switch (day.kind) {
                case Dot::checkedIn:
                    p.setPen(Qt::NoPen);
                    p.setBrush(flame);
                    p.drawEllipse(disc);
                    Icons::paint(p, iconBox, "checkmark", pal.onAccent);
                    break;
                case Dot::saved:
                    p.setPen(Qt::NoPen);
                    p.setBrush(pal.calm);
                    p.drawEllipse(disc);
                    Icons::paint(p, iconBox, "shield.fill", pal.onAccent);
                    break;
                case Dot::missed:
                    if (day.beforeFirstCheckIn) {
                        p.setPen(Qt::NoPen);
                        p.setBrush(pal.track);
                        p.drawEllipse(disc);
                        break;
                    }
                    p.setPen(Qt::NoPen);
                    p.setBrush(pal.track);
                    p.drawEllipse(disc);
                    Icons::paint(p, iconBox.adjusted(2, 2, -2, -2), "xmark", pal.textTertiary);
                    break;
                case Dot::today:
                    p.setPen(QPen(flame, 2));
                    p.setBrush(Qt::NoBrush);
                    p.drawEllipse(disc.adjusted(1, 1, -1, -1));
                    p.setPen(Qt::NoPen);
                    p.setBrush(flame);
                    p.drawEllipse(c, 3, 3);
                    break;
                case Dot::future: {
                    QPen pen(pal.border, 1.5, Qt::DashLine);
                    p.setPen(pen);
                    p.setBrush(Qt::NoBrush);
                    p.drawEllipse(disc.adjusted(1, 1, -1, -1));
                    break;
                }
            }
        }
    }

    // The streak saver, below a hairline.
    p.setPen(QPen(pal.separator, 1));
    p.drawLine(QPointF(pad, l.saver + 0.5), QPointF(pad + w, l.saver + 0.5));
    const qreal y = l.saver + 1 + Metrics::spacingLarge;
    const qreal lh = QFontMetricsF(type.label).height();
    Icons::paint(
        p, QRectF(pad, y + (lh - Metrics::iconSize) / 2, Metrics::iconSize, Metrics::iconSize),
        "shield.fill", content_.saverReady ? pal.calm : pal.textTertiary);
    const qreal tx = pad + Metrics::iconSize + Metrics::spacing;
    p.setFont(type.label);
    p.setPen(pal.text);
    p.drawText(QRectF(tx, y, w, lh), Qt::AlignLeft | Qt::AlignVCenter, qs(content_.saverTitle));
    shoppaint::wrapped(p, QRectF(tx, y + lh + 1, w - Metrics::iconSize - Metrics::spacing, 100),
                       qs(content_.saverDetail), type.caption, pal.textSecondary);
}

}  // namespace trotlet::ui
