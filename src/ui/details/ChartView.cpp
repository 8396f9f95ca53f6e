#include "ui/details/ChartView.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

#include "ui/cards/Sparkline.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

qreal captionHeight(const Theme& theme) { return QFontMetricsF(theme.type().caption).height(); }

// How far from the pointer a point may be and still be read, in pixels.
constexpr qreal kReachPixels = 14;

}  // namespace

ChartView::ChartView(const std::string& title, const panel::DetailChart& chart, bool strip,
                     const PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), title_(title), chart_(chart), strip_(strip), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("chart-") + qs(title));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(qs(title) + QStringLiteral(" chart"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &ThemeStore::changed, this, [this] {
        cacheValid_ = false;
        update();
    });
    refresh();
}

void ChartView::setHeaderWidget(QWidget* widget) {
    header_ = widget;
    widget->setParent(this);
    widget->show();
    resizeEvent(nullptr);
}

void ChartView::setNote(const std::string& note, panel::Level level) {
    if (note == note_ && level == noteLevel_) return;
    note_ = note;
    noteLevel_ = level;
    update();
}

void ChartView::setRange(panel::ChartRange range) {
    if (range == range_) return;
    range_ = range;
    readout_.reset();
    syncHeader();
    refresh();
}

QSize ChartView::sizeHint() const {
    const Theme& theme = theme_.theme();
    const int plot = strip_ ? Metrics::stripHeight : Metrics::chartHeight;
    const int labels = int(std::ceil(captionHeight(theme))) + Metrics::spacingSmall;
    return QSize(Metrics::gridWidth, Metrics::detailRowHeight + Metrics::spacingSmall +
                                         2 * Metrics::cardPadding + plot + labels);
}

QRectF ChartView::cardRect() const {
    return QRectF(0, Metrics::detailRowHeight + Metrics::spacingSmall, width(),
                  height() - Metrics::detailRowHeight - Metrics::spacingSmall);
}

QRectF ChartView::plotRect() const {
    const Theme& theme = theme_.theme();
    const QRectF card = cardRect().adjusted(Metrics::cardPadding, Metrics::cardPadding,
                                            -Metrics::cardPadding, -Metrics::cardPadding);
    qreal axis = 0;
    if (!strip_) {
        const QFontMetricsF fm(theme.type().caption);
        for (const auto& tick : data_.ticks)
            axis = std::max(axis, fm.horizontalAdvance(qs(tick.label)));
        axis += Metrics::spacing;
    }
    const qreal plotHeight = strip_ ? Metrics::stripHeight : Metrics::chartHeight;
    return QRectF(card.left() + axis, card.top(), card.width() - axis, plotHeight);
}

double ChartView::stepSeconds() const {
    switch (data_.request.range) {
        case panel::ChartRange::hour:
            return 60;
        case panel::ChartRange::day:
            return 300;
        case panel::ChartRange::live:
            break;
    }
    std::size_t points = 0;
    for (const auto& run : data_.first) points += run.size();
    return points > 1 ? data_.spanSeconds / double(points - 1) : data_.spanSeconds;
}

bool ChartView::refresh() {
    panel::ChartRequest request{chart_.series, chart_.second, chart_.ceiling, range_};
    const panel::ChartUnits units = model_.chartUnits();
    panel::ChartData next =
        panel::chartData(request, model_.history(), model_.dayHistory(), model_.now(), units);
    const bool same = next.first == data_.first && next.second == data_.second &&
                      next.ticks == data_.ticks && next.startLabel == data_.startLabel &&
                      next.request.range == data_.request.range && next.top == data_.top;
    data_ = std::move(next);
    describe();
    if (same) return false;
    cacheValid_ = false;
    if (readout_) readAt(readout_->t, keyboardFocus_ && hasFocus());
    update();
    return true;
}

void ChartView::describe() {
    std::string text;
    if (data_.isEmpty()) {
        text = data_.emptyText;
    } else {
        const panel::ChartRun& last =
            data_.first.empty() ? data_.second.back() : data_.first.back();
        const panel::ChartUnits units = model_.chartUnits();
        text = panel::chartRangeLabel(range_) + ", latest " +
               panel::seriesValueText(chart_.series, last.back().value, units);
    }
    setAccessibleDescription(qs(text));
}

void ChartView::resizeEvent(QResizeEvent*) {
    cacheValid_ = false;
    if (header_) {
        const QSize s = header_->sizeHint();
        header_->setGeometry(width() - s.width(), (Metrics::detailRowHeight - s.height()) / 2,
                             s.width(), s.height());
    }
}

void ChartView::renderCache() {
    const qreal dpr = devicePixelRatioF();
    cache_ = QPixmap((size() * dpr).expandedTo(QSize(1, 1)));
    cache_.setDevicePixelRatio(dpr);
    cache_.fill(Qt::transparent);
    QPainter p(&cache_);
    p.setRenderHint(QPainter::Antialiasing);
    paintChart(p);
    cacheValid_ = true;
    ++renders_;
}

void ChartView::paintChart(QPainter& p) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();

    // Title row: the chart's name, and a note (the pressure level) after it.
    const QRectF titleRow(0, 0, width(), Metrics::detailRowHeight);
    p.setFont(type.label);
    p.setPen(pal.textSecondary);
    const QString title = qs(title_);
    p.drawText(titleRow, Qt::AlignLeft | Qt::AlignVCenter, title);
    if (!note_.empty()) {
        const qreal x = QFontMetricsF(type.label).horizontalAdvance(title) + Metrics::spacing;
        p.setPen(noteLevel_ == panel::Level::calm ? pal.text : pal.level(noteLevel_));
        p.drawText(titleRow.adjusted(x, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, qs(note_));
    }

    const QRectF card = cardRect().adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(card, Metrics::cardRadius, Metrics::cardRadius);

    const QRectF plot = plotRect();
    const QColor accent = pal.named(accent_);

    // Range ends under the plot.
    const QRectF labels(plot.left(), plot.bottom() + Metrics::spacingSmall, plot.width(),
                        captionHeight(theme));
    p.setFont(type.caption);
    p.setPen(pal.textTertiary);
    p.drawText(labels, Qt::AlignLeft | Qt::AlignVCenter, qs(data_.startLabel));
    p.drawText(labels, Qt::AlignRight | Qt::AlignVCenter, qs(data_.endLabel));
    {
        const QFontMetricsF fm(type.caption);
        const qreal leftEnd = labels.left() + fm.horizontalAdvance(qs(data_.startLabel)) + 6;
        const qreal rightEnd = labels.right() - fm.horizontalAdvance(qs(data_.endLabel)) - 6;
        for (const auto& mark : data_.marks) {
            const qreal x = plot.left() + mark.value / data_.spanSeconds * plot.width();
            const qreal w = fm.horizontalAdvance(qs(mark.label));
            if (x - w / 2 < leftEnd || x + w / 2 > rightEnd) continue;
            p.setPen(pal.textTertiary);
            p.drawText(QRectF(x - w / 2 - 1, labels.top(), w + 2, labels.height()), Qt::AlignCenter,
                       qs(mark.label));
            if (!strip_) {
                p.setPen(QPen(pal.separator, 1, Qt::DotLine));
                p.drawLine(QPointF(std::round(x) + 0.5, plot.top()),
                           QPointF(std::round(x) + 0.5, plot.bottom()));
            }
        }
    }

    if (strip_) {
        paintStrip(p, plot);
        return;
    }

    // Grid lines with their values.
    const double range = std::max(1e-12, data_.top - data_.bottom);
    auto yOf = [&](double v) {
        return plot.bottom() - std::clamp((v - data_.bottom) / range, 0.0, 1.0) * plot.height();
    };
    auto xOf = [&](double t) { return plot.left() + t / data_.spanSeconds * plot.width(); };
    for (const auto& tick : data_.ticks) {
        const qreal y = std::round(yOf(tick.value)) + 0.5;
        p.setPen(QPen(pal.separator, 1));
        p.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        p.setPen(pal.textTertiary);
        p.drawText(
            QRectF(cardRect().left() + Metrics::cardPadding, y - 8,
                   plot.left() - cardRect().left() - Metrics::cardPadding - Metrics::spacing, 16),
            Qt::AlignRight | Qt::AlignVCenter, qs(tick.label));
    }

    if (data_.isEmpty()) {
        p.setFont(type.caption);
        p.setPen(pal.textTertiary);
        p.drawText(plot.adjusted(8, 0, -8, 0), Qt::AlignCenter | Qt::TextWordWrap,
                   qs(data_.emptyText));
        return;
    }

    auto drawRuns = [&](const std::vector<panel::ChartRun>& runs, const QColor& color, bool fill) {
        for (const auto& run : runs) {
            if (run.size() == 1) {
                p.setPen(Qt::NoPen);
                p.setBrush(color);
                p.drawEllipse(QPointF(xOf(run[0].t), yOf(run[0].value)), 1.8, 1.8);
                continue;
            }
            if (data_.band) {
                QPainterPath band(QPointF(xOf(run[0].t), yOf(run[0].high)));
                for (const auto& pt : run) band.lineTo(xOf(pt.t), yOf(pt.high));
                for (auto it = run.rbegin(); it != run.rend(); ++it)
                    band.lineTo(xOf(it->t), yOf(it->low));
                band.closeSubpath();
                QColor shade = color;
                shade.setAlphaF(0.18);
                p.fillPath(band, shade);
            }
            QPolygonF line;
            for (const auto& pt : run) line.append({xOf(pt.t), yOf(pt.value)});
            Sparkline::paintRun(p, line, plot, color, 1.6, fill && !data_.band ? 0.26 : 0);
        }
    };
    p.save();
    p.setClipRect(plot.adjusted(-2, -2, 2, 2));
    if (!data_.second.empty()) drawRuns(data_.second, pal.textTertiary, false);
    drawRuns(data_.first, accent, true);
    p.restore();
}

void ChartView::paintStrip(QPainter& p, const QRectF& plot) {
    const Palette& pal = theme_.theme().palette();
    const qreal radius = plot.height() / 2;
    p.setPen(Qt::NoPen);
    p.setBrush(pal.track);
    p.drawRoundedRect(plot, radius, radius);
    if (data_.isEmpty()) return;
    QPainterPath clip;
    clip.addRoundedRect(plot, radius, radius);
    p.save();
    p.setClipPath(clip);
    const double half = stepSeconds() / 2;
    auto levelOf = [&](const panel::ChartPoint& pt) {
        // A step shows its worst moment: a warning inside five minutes is not averaged away.
        const long level = std::lround(data_.band ? pt.high : pt.value);
        return level >= 3   ? panel::Level::critical
               : level == 2 ? panel::Level::busy
                            : panel::Level::calm;
    };
    auto xOf = [&](double t) {
        return plot.left() +
               std::clamp(t, 0.0, data_.spanSeconds) / data_.spanSeconds * plot.width();
    };
    for (const auto& run : data_.first) {
        // Neighbouring points of one level are drawn as one stretch, so no seams show.
        std::size_t i = 0;
        while (i < run.size()) {
            std::size_t j = i;
            while (j + 1 < run.size() && levelOf(run[j + 1]) == levelOf(run[i])) ++j;
            const double from = i > 0 ? (run[i - 1].t + run[i].t) / 2 : run[i].t - half;
            const double to = j + 1 < run.size() ? (run[j].t + run[j + 1].t) / 2 : run[j].t + half;
            p.fillRect(QRectF(QPointF(xOf(from), plot.top()), QPointF(xOf(to), plot.bottom())),
                       pal.level(levelOf(run[i])));
            i = j + 1;
        }
    }
    p.restore();
}

void ChartView::paintReadout(QPainter& p) {
    if (!readout_) return;
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const QRectF plot = plotRect();
    const qreal x = plot.left() + readout_->t / data_.spanSeconds * plot.width();
    p.setPen(QPen(pal.textSecondary, 1, Qt::DashLine));
    p.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));

    const QFont& font = theme.type().caption;
    const QFontMetricsF fm(font);
    const QString text = qs(readout_->text);
    const qreal w = fm.horizontalAdvance(text) + 2 * Metrics::spacing;
    const qreal h = fm.height() + Metrics::spacingSmall * 1.5;
    // The bubble sits in the title row, over the chart's name, following the pointer.
    const qreal left = std::clamp(x - w / 2, 0.0, qreal(width()) - w);
    const QRectF bubble(left, (Metrics::detailRowHeight - h) / 2, w, h);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(bubble, h / 2, h / 2);
    p.setFont(font);
    p.setPen(pal.text);
    p.drawText(bubble, Qt::AlignCenter, text);
}

void ChartView::paintEvent(QPaintEvent*) {
    if (!cacheValid_ || cache_.size() != size() * devicePixelRatioF()) renderCache();
    QPainter p(this);
    p.drawPixmap(0, 0, cache_);
    p.setRenderHint(QPainter::Antialiasing);
    paintReadout(p);
    if (hasFocus() && keyboardFocus_) {
        const Palette& pal = theme_.theme().palette();
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(cardRect().adjusted(1.5, 1.5, -1.5, -1.5), Metrics::cardRadius - 1,
                          Metrics::cardRadius - 1);
    }
}

void ChartView::readAt(double t, bool keyboard) {
    const QRectF plot = plotRect();
    const panel::ChartUnits units = model_.chartUnits();
    const double reach =
        std::max(stepSeconds() * (keyboard ? 1.5 : 0.75),
                 kReachPixels * data_.spanSeconds / std::max<qreal>(1, plot.width()));
    auto next = panel::chartReadout(data_, t, reach, units, chart_.name, chart_.secondName);
    if (next == readout_) return;
    readout_ = std::move(next);
    syncHeader();
    if (readout_ && keyboard) {
        setAccessibleDescription(qs(readout_->text));
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    update();
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
    const QRectF plot = plotRect();
    const qreal x = event->position().x();
    if (x < plot.left() - 4 || x > plot.right() + 4 || data_.isEmpty()) {
        leaveEvent(nullptr);
        return;
    }
    readAt((x - plot.left()) / plot.width() * data_.spanSeconds, false);
}

void ChartView::leaveEvent(QEvent*) {
    if (!readout_) return;
    readout_.reset();
    syncHeader();
    update();
}

void ChartView::syncHeader() {
    // The read-out takes the title row; the header control steps aside while it shows.
    if (header_) header_->setVisible(!readout_);
}

void ChartView::setAccentName(const std::string& name) {
    accent_ = name;
    cacheValid_ = false;
    update();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (!plain || (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) ||
        data_.isEmpty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    // The arrows walk the points, starting from the newest.
    const double step = stepSeconds();
    double t =
        readout_ ? readout_->t + (event->key() == Qt::Key_Left ? -step : step) : data_.spanSeconds;
    t = std::clamp(t, 0.0, data_.spanSeconds);
    readAt(t, true);
}

void ChartView::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}

void ChartView::focusOutEvent(QFocusEvent*) {
    if (keyboardFocus_) {
        readout_.reset();
        syncHeader();
    }
    update();
}

}  // namespace trotlet::ui
