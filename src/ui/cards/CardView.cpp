#include "ui/cards/CardView.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "layout/LayoutEditSession.h"
#include "layout/OverviewCardRegistry.h"
#include "panel/CardGeometry.h"
#include "settings/AppSettings.h"
#include "ui/cards/Sparkline.h"
#include "ui/cards/WeekColumns.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

struct CardPaintContext {
    const Theme& theme;
    panel::CardGeometry geometry;
    QColor accent;
    QColor levelColor;
};

namespace {

QRectF toRect(const panel::Box& b) { return QRectF(b.x, b.y, b.width, b.height); }

QString qs(const std::string& s) { return QString::fromStdString(s); }

void drawElided(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
                const QColor& color, Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter) {
    p.setFont(font);
    p.setPen(color);
    const QString elided = QFontMetricsF(font).elidedText(text, Qt::ElideRight, box.width());
    p.drawText(box, align, elided);
}

}  // namespace

CardView::CardView(const std::string& id, layout::CardSize size, const PanelModel& model,
                   const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), id_(id), size_(size), model_(model), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setObjectName(QStringLiteral("card-") + qs(id));
    refresh();
}

void CardView::setEditing(bool editing) {
    if (editing == editing_) return;
    editing_ = editing;
    setCursor(editing ? Qt::OpenHandCursor : Qt::ArrowCursor);
    update();
}

void CardView::setSize(layout::CardSize size) {
    if (size == size_) return;
    size_ = size;
    refresh();
    update();
}

void CardView::setLifted(bool lifted) {
    if (lifted == lifted_) return;
    lifted_ = lifted;
    setCursor(lifted ? Qt::ClosedHandCursor : editing_ ? Qt::OpenHandCursor : Qt::ArrowCursor);
    update();
}

QRectF CardView::hideButtonRect() const {
    const qreal side = Metrics::editBadge;
    return QRectF(width() - side - 5, 5, side, side);
}

QRectF CardView::gripRect() const {
    const qreal side = layout::LayoutEditSession::gripSize;
    return QRectF(width() - side, height() - side, side, side);
}

void CardView::setHighlighted(bool highlighted) {
    if (highlighted_ == highlighted) return;
    highlighted_ = highlighted;
    update();
}

std::size_t CardView::chartVersion() const {
    if (!content_.chart || !content_.chart->columns.empty()) return 0;
    // The newest point's time changes with every sample the chart shows.
    std::size_t version = 0;
    for (auto series : {std::optional(content_.chart->series), content_.chart->second}) {
        if (!series) continue;
        if (const auto last = model_.history().latest(*series))
            version ^=
                std::size_t(last->time.time_since_epoch().count()) + std::size_t(last->value * 1e6);
    }
    return version;
}

bool CardView::refresh() {
    panel::CardContent next = panel::describeCard(id_, size_, model_.cardInputs());
    const bool textChanged = !(next == content_);
    content_ = std::move(next);
    const std::size_t version = chartVersion();
    const bool chartChanged = version != chartVersion_;
    chartVersion_ = version;
    if (textChanged && !editing_) {
        setAccessibleName(qs(content_.accessibleName));
        setAccessibleDescription(qs(content_.accessibleValue));
        setToolTip(content_.standIn ? qs(*content_.standIn) : QString());
        if (isVisible()) {
            QAccessibleEvent event(this, QAccessible::DescriptionChanged);
            QAccessible::updateAccessibility(&event);
        }
    }
    if (!textChanged && !chartChanged) return false;
    update();
    return true;
}

void CardView::paintEvent(QPaintEvent*) {
    ++repaints_;
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);

    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (lifted_) {
        // A soft shadow under the card the pointer carries.
        for (int i = 3; i >= 1; --i) {
            QColor shade = pal.text;
            shade.setAlphaF(0.035 * (4 - i));
            p.setPen(Qt::NoPen);
            p.setBrush(shade);
            p.drawRoundedRect(frame.adjusted(-i + 1, -i + 2, i - 1, i), Metrics::cardRadius + i,
                              Metrics::cardRadius + i);
        }
    }
    p.setPen(QPen(editing_ && !lifted_ ? pal.separator : pal.border, 1));
    p.setBrush(hovered_ || lifted_ ? pal.surfaceHover : pal.surface);
    p.drawRoundedRect(frame, Metrics::cardRadius, Metrics::cardRadius);

    const auto* kind = layout::OverviewCardRegistry::standard().kind(id_);
    const QColor accent = pal.named(kind ? kind->color : "");
    panel::CardLines lines;
    lines.title = QFontMetricsF(type.label).height();
    lines.headline = QFontMetricsF(type.headline).height();
    lines.caption = QFontMetricsF(type.caption).height();
    panel::CardParts parts;
    parts.gauge = content_.gauge.has_value();
    parts.chart = content_.chart.has_value();
    parts.bars = !content_.bars.empty();
    parts.facts = content_.facts.size();
    CardPaintContext ctx{
        theme, panel::layoutCard(size_, width(), height(), parts, lines, Metrics::cardPadding),
        accent, content_.level == panel::Level::calm ? accent : pal.level(content_.level)};

    // Title row: the kind's symbol in its accent, then the title.
    const QRectF titleBox = toRect(ctx.geometry.title);
    const qreal icon = std::min<qreal>(Metrics::iconSize, titleBox.height());
    const QString symbol = qs(content_.symbol);
    Icons::paint(p, QRectF(titleBox.left(), titleBox.center().y() - icon / 2, icon, icon),
                 content_.symbol, accent);
    drawElided(p, titleBox.adjusted(icon + 6, 0, 0, 0), qs(content_.title), type.label,
               pal.textSecondary);

    if (content_.standIn) {
        p.setFont(type.caption);
        p.setPen(pal.textSecondary);
        p.drawText(toRect(ctx.geometry.standIn), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                   qs(*content_.standIn));
    } else {
        paintReadings(p, ctx);
    }

    if (editing_) {
        // The hide button on a disc of the card's own colour, so it reads over any content.
        const QRectF badge = hideButtonRect();
        p.setPen(Qt::NoPen);
        p.setBrush(hovered_ || lifted_ ? pal.surfaceHover : pal.surface);
        p.drawEllipse(badge.adjusted(-2, -2, 2, 2));
        Icons::paint(p, badge, "minus.circle.fill", pal.textSecondary);
        Icons::paint(p, gripRect().adjusted(1, 1, -3, -3), "resize.grip", pal.textTertiary);
    }
    if (showsFocusRing() || highlighted_ || (editing_ && hasFocus())) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(frame.adjusted(1, 1, -1, -1), Metrics::cardRadius - 1,
                          Metrics::cardRadius - 1);
    }
}

void CardView::paintReadings(QPainter& p, const CardPaintContext& ctx) {
    const Palette& pal = ctx.theme.palette();
    const TypeScale& type = ctx.theme.type();
    const auto& g = ctx.geometry;

    // Headline: digits, then the unit in a lighter voice on the same baseline.
    const QFont& digits = g.compactHeadline ? type.headlineSmall : type.headline;
    const QRectF head = toRect(g.headline);
    const QFontMetricsF dm(digits);
    const qreal baseline = head.top() + (head.height() + dm.ascent() - dm.descent()) / 2;
    const QColor valueColor = content_.level >= panel::Level::hot ? ctx.levelColor : pal.text;
    p.setFont(digits);
    p.setPen(valueColor);
    const QString value = qs(content_.value);
    p.drawText(QPointF(head.left(), baseline), value);
    p.setFont(type.unit);
    p.setPen(pal.textSecondary);
    const qreal unitX = head.left() + dm.horizontalAdvance(value) + 3;
    p.drawText(QPointF(unitX, baseline),
               QFontMetricsF(type.unit).elidedText(qs(content_.unit), Qt::ElideRight,
                                                   head.right() - unitX));
    if (!g.caption.isEmpty())
        drawElided(p, toRect(g.caption), qs(content_.caption), type.caption, pal.textSecondary);

    if (content_.gauge && !g.gauge.isEmpty()) {
        const QRectF track = toRect(g.gauge);
        p.setPen(Qt::NoPen);
        p.setBrush(pal.track);
        p.drawRoundedRect(track, track.height() / 2, track.height() / 2);
        QRectF fill = track;
        fill.setWidth(
            std::max(track.height(), track.width() * std::clamp(*content_.gauge, 0.0, 1.0)));
        p.setBrush(ctx.levelColor);
        p.drawRoundedRect(fill, track.height() / 2, track.height() / 2);
    }

    if (content_.chart && !content_.chart->columns.empty() && !g.chart.isEmpty()) {
        WeekColumns::paint(p, toRect(g.chart), content_.chart->columns, ctx.accent, pal.track, 10);
    } else if (content_.chart && !g.chart.isEmpty()) {
        const auto& history = model_.history();
        const auto line = panel::sparklineData(
            history.points(content_.chart->series),
            content_.chart->second ? history.points(*content_.chart->second)
                                   : std::vector<metrics::HistoryPoint>{},
            panel::sparklineWindowSeconds(history.capacity(),
                                          model_.settings().monitoring().updateInterval()));
        const double top = Sparkline::scaleTop(content_.chart->ceiling, line);
        const QRectF box = toRect(g.chart);
        p.setPen(QPen(pal.separator, 1));
        p.drawLine(box.bottomLeft(), box.bottomRight());
        Sparkline::paint(p, box, line.second, line.spanSeconds, top, pal.textTertiary, false);
        Sparkline::paint(p, box, line.first, line.spanSeconds, top, ctx.levelColor, true);
    }

    if (!g.bars.isEmpty() && !content_.bars.empty()) {
        const QRectF box = toRect(g.bars);
        const std::size_t n = content_.bars.size();
        // Cores as a row of columns; a handful of named bars would need labels, which the
        // detail screen gives them.
        const qreal step = box.width() / qreal(n);
        const qreal barWidth = std::clamp<qreal>(step - 3, 1.5, 10);
        p.setPen(Qt::NoPen);
        for (std::size_t i = 0; i < n; ++i) {
            const auto& bar = content_.bars[i];
            const QRectF column(box.left() + qreal(i) * step + (step - barWidth) / 2, box.top(),
                                barWidth, box.height());
            p.setBrush(pal.track);
            p.drawRoundedRect(column, 1.5, 1.5);
            QRectF fill = column;
            fill.setTop(column.bottom() - column.height() * std::clamp(bar.fraction, 0.0, 1.0));
            p.setBrush(bar.level == panel::Level::calm ? ctx.accent : pal.level(bar.level));
            p.drawRoundedRect(fill, 1.5, 1.5);
        }
    }

    if (g.factRows > 0) {
        const QRectF box = toRect(g.facts);
        const qreal rowHeight = box.height() / qreal(g.factRows);
        const qreal columnWidth =
            (box.width() - qreal(g.factColumns - 1) * 16) / qreal(g.factColumns);
        const QFontMetricsF fm(type.caption);
        for (std::size_t i = 0; i < content_.facts.size() && i < g.factRows * g.factColumns; ++i) {
            const auto& fact = content_.facts[i];
            const std::size_t column = i / g.factRows;
            const std::size_t row = i % g.factRows;
            const QRectF cell(box.left() + qreal(column) * (columnWidth + 16),
                              box.top() + qreal(row) * rowHeight, columnWidth, rowHeight);
            const QString label = qs(fact.label);
            const qreal labelWidth = std::min(fm.horizontalAdvance(label) + 8, cell.width() * 0.5);
            drawElided(p, QRectF(cell.left(), cell.top(), labelWidth, cell.height()), label,
                       type.caption, pal.textSecondary);
            drawElided(p, cell.adjusted(labelWidth, 0, 0, 0), qs(fact.value), type.caption,
                       fact.level >= panel::Level::busy ? pal.level(fact.level) : pal.text,
                       Qt::AlignRight | Qt::AlignVCenter);
        }
    }
}

void CardView::mouseReleaseEvent(QMouseEvent* event) {
    if (editing_) return;
    if (rect().contains(event->position().toPoint())) emit activated(id_);
}

void CardView::keyPressEvent(QKeyEvent* event) {
    if (editing_) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Space) {
        emit activated(id_);
        return;
    }
    QWidget::keyPressEvent(event);
}

void CardView::enterEvent(QEnterEvent*) {
    hovered_ = true;
    update();
}

void CardView::leaveEvent(QEvent*) {
    hovered_ = false;
    update();
}

void CardView::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}
void CardView::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
