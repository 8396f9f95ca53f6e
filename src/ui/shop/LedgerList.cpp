#include "ui/shop/LedgerList.h"

#include <QAccessible>
#include <QDateTime>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>

#include <algorithm>

#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using shoppaint::qs;

QColor tintFor(const Palette& pal, const std::string& symbol) {
    if (symbol == "pawprint.fill") return pal.named("pink");
    if (symbol == "flame.fill") return pal.named("orange");
    if (symbol == "fish.fill") return shoppaint::gold(pal);
    if (symbol == "gift.fill") return pal.named("green");
    if (symbol == "bag.fill") return pal.named("blue");
    if (symbol == "ladybug.fill" || symbol == "tray.full.fill" || symbol == "checkmark.seal.fill")
        return pal.textSecondary;
    return pal.named("purple");  // achievements, each with its own symbol
}

QDateTime localTime(shop::Timestamp t) { return QDateTime::fromMSecsSinceEpoch(qint64(t * 1000)); }

}  // namespace

LedgerList::LedgerList(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("shop.ledger"));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Fish history"));
    setFixedWidth(Metrics::gridWidth);
}

QString LedgerList::sectionLabel(const shop::LedgerSection& section) const {
    switch (section.label) {
        case shop::LedgerSection::Label::today:
            return QStringLiteral("Today");
        case shop::LedgerSection::Label::yesterday:
            return QStringLiteral("Yesterday");
        case shop::LedgerSection::Label::earlier:
            return QStringLiteral("Earlier");
        case shop::LedgerSection::Label::date:
            break;
    }
    return QLocale().toString(localTime(section.dayStart + 12 * 3600).date(), QLocale::LongFormat);
}

void LedgerList::setSections(const std::vector<shop::LedgerSection>& sections) {
    if (sections == sections_) return;
    sections_ = sections;
    items_.clear();
    rowItem_.clear();
    const QLocale locale;
    // The locale's short time, without seconds where it has them: a row's minute is enough.
    QString timeFormat = locale.timeFormat(QLocale::ShortFormat);
    timeFormat.remove(QStringLiteral(":ss")).remove(QStringLiteral(".ss"));
    int y = 0;
    int flat = 0;
    for (std::size_t s = 0; s < sections_.size(); ++s) {
        Item heading;
        heading.top = y;
        heading.section = int(s);
        heading.title = sectionLabel(sections_[s]);
        items_.push_back(heading);
        y += ShopMetrics::ledgerSection;
        for (std::size_t r = 0; r < sections_[s].rows.size(); ++r) {
            const auto& row = sections_[s].rows[r];
            Item item;
            item.top = y;
            item.section = int(s);
            item.row = int(r);
            item.flat = flat++;
            item.title = qs(row.title);
            item.subtitle = qs(row.subtitle);
            item.amount = qs(row.amount);
            item.symbol = row.symbol;
            item.sign = row.sign;
            // The carryover row stands for many days: it shows its date, the others their time.
            item.time = sections_[s].label == shop::LedgerSection::Label::earlier
                            ? locale.toString(localTime(row.date).date(), QLocale::ShortFormat)
                            : locale.toString(localTime(row.date).time(), timeFormat);
            rowItem_.push_back(int(items_.size()));
            items_.push_back(std::move(item));
            y += ShopMetrics::ledgerRow;
        }
    }
    rows_ = flat;
    if (current_ >= rows_) current_ = rows_ - 1;
    setFixedHeight(std::max(y, ShopMetrics::ledgerRow));
    update();
}

int LedgerList::itemAt(int y) const {
    const auto it = std::upper_bound(items_.begin(), items_.end(), y,
                                     [](int value, const Item& item) { return value < item.top; });
    return int(it - items_.begin()) - 1;
}

void LedgerList::paintEvent(QPaintEvent* event) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    lastPainted_ = 0;
    if (items_.empty()) {
        p.setFont(type.body);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(rect()), Qt::AlignCenter, QStringLiteral("No Fish yet"));
        return;
    }
    const QRect area = event->rect();
    const int pad = Metrics::cardPadding + 2;
    const QFontMetricsF label(type.label);
    const QFontMetricsF cap(type.caption);
    for (int i = std::max(0, itemAt(area.top())); i < int(items_.size()); ++i) {
        const Item& item = items_[std::size_t(i)];
        if (item.top > area.bottom()) break;
        if (item.row < 0) {
            const QRectF box(Metrics::spacingSmall, item.top, width() - 2 * Metrics::spacingSmall,
                             ShopMetrics::ledgerSection);
            p.setFont(type.label);
            p.setPen(pal.textSecondary);
            p.drawText(box.adjusted(0, 0, 0, -4), Qt::AlignLeft | Qt::AlignBottom, item.title);
            continue;
        }
        ++lastPainted_;
        const auto& section = sections_[std::size_t(item.section)];
        const bool first = item.row == 0;
        const bool last = item.row + 1 == int(section.rows.size());
        // Rows of a day sit on one card: round the first and last, hairlines between.
        const QRectF row(0, item.top, width(), ShopMetrics::ledgerRow);
        QPainterPath shape;
        const qreal r = Metrics::cardRadius;
        shape.addRoundedRect(row.adjusted(0.5, first ? 0.5 : -r, -0.5, last ? -0.5 : r), r, r);
        p.save();
        p.setClipRect(row);
        p.setPen(QPen(pal.border, 1));
        p.setBrush(item.flat == current_ && hasFocus() ? pal.surfaceHover : pal.surface);
        p.drawPath(shape);
        p.restore();
        if (!first) {
            p.setPen(QPen(pal.separator, 1));
            p.drawLine(QPointF(pad + ShopMetrics::smallBadge + Metrics::spacing, row.top() + 0.5),
                       QPointF(row.right() - pad, row.top() + 0.5));
        }
        if (item.flat == current_ && hasFocus() && keyboardFocus_)
            shoppaint::focusRing(p, row.adjusted(1, 1, -1, -1), pal, Metrics::spacing);
        const qreal badge = ShopMetrics::smallBadge;
        shoppaint::badge(p, QRectF(pad, row.center().y() - badge / 2, badge, badge), item.symbol,
                         tintFor(pal, item.symbol));
        const qreal textLeft = pad + badge + Metrics::spacing;
        const qreal amountWidth =
            std::max(label.horizontalAdvance(item.amount), cap.horizontalAdvance(item.time)) + 2;
        const qreal textWidth = row.width() - textLeft - pad - amountWidth - Metrics::spacing;
        const qreal top = row.center().y() - (label.height() + cap.height() + 1) / 2;
        p.setFont(type.label);
        p.setPen(pal.text);
        p.drawText(QRectF(textLeft, top, textWidth, label.height()),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   label.elidedText(item.title, Qt::ElideRight, textWidth));
        p.setFont(type.caption);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(textLeft, top + label.height() + 1, textWidth, cap.height()),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   cap.elidedText(item.subtitle, Qt::ElideRight, textWidth));
        const QRectF amountBox(row.right() - pad - amountWidth, top, amountWidth, label.height());
        p.setFont(type.label);
        p.setPen(item.sign > 0 ? pal.calm : item.sign < 0 ? pal.critical : pal.textSecondary);
        p.drawText(amountBox, Qt::AlignRight | Qt::AlignVCenter, item.amount);
        p.setFont(type.caption);
        p.setPen(pal.textTertiary);
        p.drawText(amountBox.translated(0, label.height() + 1), Qt::AlignRight | Qt::AlignVCenter,
                   item.time);
    }
}

void LedgerList::setCurrentRow(int row) {
    if (rows_ == 0) return;
    row = std::clamp(row, 0, rows_ - 1);
    const int before = current_;
    current_ = row;
    const Item& item = items_[std::size_t(rowItem_[std::size_t(row)])];
    if (area_) {
        // The first row of a day brings its heading into view with it.
        const int top = item.row == 0 ? item.top - ShopMetrics::ledgerSection : item.top;
        area_->ensureVisible(0, mapTo(area_->widget(), QPoint(0, top)).y(), 0, 0);
        area_->ensureVisible(
            0, mapTo(area_->widget(), QPoint(0, item.top + ShopMetrics::ledgerRow)).y(), 0, 0);
    }
    if (before >= 0 && before < rows_) {
        const Item& old = items_[std::size_t(rowItem_[std::size_t(before)])];
        update(0, old.top, width(), ShopMetrics::ledgerRow);
    }
    update(0, item.top, width(), ShopMetrics::ledgerRow);
    announce();
}

void LedgerList::announce() {
    if (current_ < 0) return;
    const Item& item = items_[std::size_t(rowItem_[std::size_t(current_)])];
    setAccessibleDescription(
        item.title + QStringLiteral(", ") + item.amount + QStringLiteral(" Fish, ") +
        sectionLabel(sections_[std::size_t(item.section)]) + QStringLiteral(" ") + item.time +
        (item.subtitle.isEmpty() ? QString() : QStringLiteral(". ") + item.subtitle));
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}

void LedgerList::keyPressEvent(QKeyEvent* event) {
    const int page =
        area_ ? std::max(1, area_->viewport()->height() / ShopMetrics::ledgerRow - 1) : 8;
    switch (event->key()) {
        case Qt::Key_Down:
            setCurrentRow(current_ + 1);
            return;
        case Qt::Key_Up:
            setCurrentRow(current_ - 1);
            return;
        case Qt::Key_PageDown:
            setCurrentRow(current_ + page);
            return;
        case Qt::Key_PageUp:
            setCurrentRow(current_ - page);
            return;
        case Qt::Key_Home:
            setCurrentRow(0);
            return;
        case Qt::Key_End:
            setCurrentRow(rows_ - 1);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void LedgerList::mousePressEvent(QMouseEvent* event) {
    const int i = itemAt(int(event->position().y()));
    if (i >= 0 && items_[std::size_t(i)].row >= 0) setCurrentRow(items_[std::size_t(i)].flat);
    QWidget::mousePressEvent(event);
}

void LedgerList::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    if (current_ < 0 && rows_ > 0 && keyboardFocus_) current_ = 0;
    update();
    announce();
    QWidget::focusInEvent(event);
}

void LedgerList::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

}  // namespace trotlet::ui
