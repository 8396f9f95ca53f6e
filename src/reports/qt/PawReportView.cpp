#include "reports/qt/PawReportView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QVBoxLayout>

#include <functional>

#include "mascot/MascotCharacter.h"
#include "ui/cards/WeekColumns.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::reports {
namespace {

using ui::Metrics;

QString qs(const std::string& s) { return QString::fromStdString(s); }

constexpr qreal rowHeight = 34;
constexpr qreal chartWidth = 86;
constexpr qreal sectionGap = 12;
constexpr qreal voiceMascot = 34;

// Each measure's colour, by the palette's kind names.
std::string_view colorOf(PawMeasure m) {
    switch (m) {
        case PawMeasure::activeTime:
            return "blue";
        case PawMeasure::fishEarned:
            return "cyan";
        case PawMeasure::distance:
            return "pink";
        case PawMeasure::asleep:
            return "indigo";
        case PawMeasure::panelOpens:
            return "purple";
        case PawMeasure::goldenFish:
            return "yellow";
        case PawMeasure::peakCPU:
            return "teal";
        case PawMeasure::hottest:
            return "orange";
        case PawMeasure::highLoad:
            return "orange";
    }
    return "pink";
}

// The back control: a chevron and the screen's title; Enter, Space or a click goes back.
class BackRow : public QWidget {
public:
    BackRow(const ui::ThemeStore& theme, std::function<void()> back, QWidget* parent)
        : QWidget(parent), theme_(theme), back_(std::move(back)) {
        setFocusPolicy(Qt::StrongFocus);
        setFixedHeight(30);
        setAccessibleName(QStringLiteral("Back to the Overview"));
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& theme = theme_.theme();
        const auto& pal = theme.palette();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRectF chevron(Metrics::margin - 4, 6, 18, 18);
        ui::Icons::paint(p, chevron, "chevron.left", pal.accent);
        p.setFont(theme.type().title);
        p.setPen(pal.text);
        p.drawText(QRectF(chevron.right() + 4, 0, width(), height()),
                   Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Paw Report"));
        if (hasFocus() && keyboard_) {
            p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
            p.setBrush(Qt::NoBrush);
            p.drawRoundedRect(QRectF(Metrics::margin - 8, 2, 140, height() - 4), 8, 8);
        }
    }
    void mouseReleaseEvent(QMouseEvent*) override { back_(); }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
            event->key() == Qt::Key_Space)
            back_();
        else
            QWidget::keyPressEvent(event);
    }
    void focusInEvent(QFocusEvent* event) override {
        keyboard_ = ui::isKeyboardFocus(event->reason());
        update();
    }
    void focusOutEvent(QFocusEvent*) override { update(); }

private:
    const ui::ThemeStore& theme_;
    std::function<void()> back_;
    bool keyboard_ = false;
};

void drawCard(QPainter& p, const ui::Palette& pal, const QRectF& box) {
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cardRadius, Metrics::cardRadius);
}

qreal lineHeight(const QFont& font) { return QFontMetricsF(font).height(); }

}  // namespace

PawReportView::PawReportView(const ui::PanelModel& model, const ui::ThemeStore& theme,
                             QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("pawReport"));
    setAccessibleName(QStringLiteral("Paw Report"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    auto* back = new BackRow(
        theme, [this] { emit backRequested(); }, this);
    column->addWidget(back);
    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(false);
    scroll_->viewport()->setAutoFillBackground(false);
    body_ = new PawReportBody(model, theme);
    scroll_->setWidget(body_);
    column->addWidget(scroll_, 1);
    new ui::ScrollIndicator(*scroll_, theme);
    setFocusProxy(back);
}

QSize PawReportView::sizeHint() const {
    return QSize(Metrics::panelWidth, 36 + body_->layoutHeight());
}

PawReportBody::PawReportBody(const ui::PanelModel& model, const ui::ThemeStore& theme,
                             QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Today's report"));
    connect(&model_, &ui::PanelModel::pawChanged, this, &PawReportBody::refresh);
    connect(&theme_, &ui::ThemeStore::changed, this, &PawReportBody::refresh);
    refresh();
}

void PawReportBody::refresh() {
    report_ = model_.paw();
    setFixedSize(Metrics::panelWidth, layoutHeight());
    QString text;
    if (report_) {
        text = qs(report_->voice) + QStringLiteral(" ");
        text += qs(distanceText(report_->track.todayMeters)) + QStringLiteral(" today, ") +
                qs(distanceText(report_->track.lifetimeMeters)) + QStringLiteral(" in all. ");
        for (const auto& row : report_->rows)
            text += qs(row.label + ": " + row.value +
                       (row.detail.empty() ? "" : ", " + row.detail) + ". ");
    } else {
        text = QStringLiteral("Nothing to report yet");
    }
    setAccessibleDescription(text.trimmed());
    update();
}

int PawReportBody::layoutHeight() const {
    if (!report_) return 200;
    return int(std::ceil(paintDays(nullptr, paintTrack(nullptr, paintVoice(nullptr, 0))) +
                         Metrics::margin));
}

void PawReportBody::paintEvent(QPaintEvent*) {
    const auto& theme = theme_.theme();
    const auto& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!report_) {
        p.setFont(theme.type().body);
        p.setPen(pal.textSecondary);
        p.drawText(rect().adjusted(Metrics::margin, 0, -Metrics::margin, 0), Qt::AlignCenter,
                   QStringLiteral("Nothing to report yet"));
        return;
    }
    paintDays(&p, paintTrack(&p, paintVoice(&p, 0)));
}

qreal PawReportBody::paintVoice(QPainter* p, qreal top) const {
    const auto& theme = theme_.theme();
    const auto& pal = theme.palette();
    const qreal left = Metrics::margin;
    const qreal bubbleLeft = left + voiceMascot + 10;
    const qreal bubbleWidth = width() - Metrics::margin - bubbleLeft;
    const QFontMetricsF fm(theme.type().body);
    const QString text = qs(report_->voice);
    const QRectF textBox =
        fm.boundingRect(QRectF(0, 0, bubbleWidth - 24, 200), Qt::TextWordWrap, text);
    const qreal height = std::max<qreal>(voiceMascot + 4, textBox.height() + 18);
    if (p) {
        const auto& character = mascot::characterFor(model_.mascotId());
        const QImage frame = renderer_.frame(character, model_.mascotVisual(), 0, int(voiceMascot),
                                             devicePixelRatioF());
        p->drawImage(QRectF(left, top + height - voiceMascot - 2, voiceMascot, voiceMascot), frame);
        // The bubble, its tail pointing at the mascot.
        const QRectF bubble(bubbleLeft, top, bubbleWidth, height);
        QPainterPath shape;
        shape.addRoundedRect(bubble, 14, 14);
        QPainterPath tail;
        const qreal ty = bubble.bottom() - 16;
        tail.moveTo(bubble.left() + 1, ty - 6);
        tail.lineTo(bubble.left() - 7, ty + 5);
        tail.lineTo(bubble.left() + 1, ty + 6);
        tail.closeSubpath();
        p->setPen(QPen(pal.border, 1));
        p->setBrush(pal.surface);
        p->drawPath(shape.united(tail));
        p->setFont(theme.type().body);
        p->setPen(pal.text);
        p->drawText(bubble.adjusted(12, 9, -12, -9),
                    Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text);
    }
    return top + height + sectionGap;
}

qreal PawReportBody::paintTrack(QPainter* p, qreal top) const {
    const auto& theme = theme_.theme();
    const auto& pal = theme.palette();
    const auto& type = theme.type();
    const PawTrack& track = report_->track;
    const QRectF card(Metrics::margin, top, width() - 2 * Metrics::margin, 0);
    const qreal pad = Metrics::cardPadding + 2;
    const qreal inner = card.width() - 2 * pad;
    const qreal x = card.left() + pad;
    const QColor accent = pal.named("pink");
    const qreal caption = lineHeight(type.caption);
    const qreal headline = lineHeight(type.headlineSmall);
    const bool perMascot = track.byMascot.size() >= 2;
    const std::size_t mascots = std::min<std::size_t>(track.byMascot.size(), 3);
    qreal height = pad + caption + 6 + headline + caption + 12 + caption + 4 + 6 + pad;
    if (perMascot) height += 10 + qreal(mascots) * (caption + 4);
    if (!p) return top + height + sectionGap;

    drawCard(*p, pal, QRectF(card.left(), top, card.width(), height));
    qreal y = top + pad;
    ui::Icons::paint(*p, QRectF(x, y + (caption - 14) / 2, 14, 14), "pawprint.fill", accent);
    p->setFont(type.label);
    p->setPen(pal.textSecondary);
    p->drawText(QRectF(x + 20, y, inner, caption), Qt::AlignLeft | Qt::AlignVCenter,
                QStringLiteral("Paw Track"));
    y += caption + 6;

    // Today on the left, the lifetime odometer on the right.
    const QString today = qs(distanceText(track.todayMeters));
    p->setFont(type.headlineSmall);
    p->setPen(pal.text);
    const QFontMetricsF hm(type.headlineSmall);
    const QString number = today.section(' ', 0, 0), unit = today.section(' ', 1);
    const qreal baseline = y + hm.ascent();
    p->drawText(QPointF(x, baseline), number);
    p->setFont(type.unit);
    p->setPen(pal.textSecondary);
    p->drawText(QPointF(x + hm.horizontalAdvance(number) + 3, baseline),
                unit + QStringLiteral(" today"));
    p->setFont(type.caption);
    const QString comparison = track.todayMeters >= 1 ? qs(comparisonText(track.todayMeters))
                                                      : QStringLiteral("No run yet today");
    p->drawText(QRectF(x, y + headline, inner * 0.62, caption), Qt::AlignLeft | Qt::AlignVCenter,
                QFontMetricsF(type.caption).elidedText(comparison, Qt::ElideRight, inner * 0.62));
    const QRectF lifetime(x + inner * 0.62, y, inner * 0.38, headline + caption);
    p->drawText(QRectF(lifetime.left(), lifetime.top() + 2, lifetime.width(), caption),
                Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Lifetime"));
    p->setFont(type.label);
    p->setPen(pal.text);
    p->drawText(QRectF(lifetime.left(), lifetime.top() + 2 + caption, lifetime.width(),
                       lineHeight(type.label)),
                Qt::AlignRight | Qt::AlignVCenter, qs(distanceText(track.lifetimeMeters)));
    p->setFont(type.caption);
    p->setPen(pal.textSecondary);
    // Short of a marathon the progress bar below says it; past one, how many.
    if (track.marathonDone)
        p->drawText(QRectF(lifetime.left() - 40, lifetime.bottom() - caption + 2,
                           lifetime.width() + 40, caption),
                    Qt::AlignRight | Qt::AlignVCenter, qs(comparisonText(track.lifetimeMeters)));
    y += headline + caption + 12;

    // The Marathon achievement's progress.
    p->drawText(QRectF(x, y, inner, caption), Qt::AlignLeft | Qt::AlignVCenter,
                QStringLiteral("Marathon"));
    p->drawText(
        QRectF(x, y, inner, caption), Qt::AlignRight | Qt::AlignVCenter,
        track.marathonDone
            ? QStringLiteral("Reached")
            : QString::number(int(std::floor(track.marathonFraction * 100))) + QStringLiteral("%"));
    y += caption + 4;
    const QRectF bar(x, y, inner, 6);
    p->setPen(Qt::NoPen);
    p->setBrush(pal.track);
    p->drawRoundedRect(bar, 3, 3);
    p->setBrush(accent);
    p->drawRoundedRect(
        QRectF(bar.left(), bar.top(), std::max<qreal>(6, bar.width() * track.marathonFraction), 6),
        3, 3);
    y += 6;

    if (perMascot) {
        y += 10;
        const double longest = track.byMascot.front().meters;
        for (std::size_t i = 0; i < mascots; ++i) {
            const auto& m = track.byMascot[i];
            p->setFont(type.caption);
            p->setPen(pal.textSecondary);
            p->drawText(QRectF(x, y, 80, caption), Qt::AlignLeft | Qt::AlignVCenter, qs(m.name));
            const QString value = qs(distanceText(m.meters));
            p->setPen(pal.text);
            p->drawText(QRectF(x, y, inner, caption), Qt::AlignRight | Qt::AlignVCenter, value);
            const QRectF lane(x + 80, y + caption / 2 - 2, inner - 80 - 70, 4);
            p->setPen(Qt::NoPen);
            p->setBrush(pal.track);
            p->drawRoundedRect(lane, 2, 2);
            QColor fill = accent;
            fill.setAlphaF(i == 0 ? 1.0f : 0.55f);
            p->setBrush(fill);
            p->drawRoundedRect(QRectF(lane.left(), lane.top(),
                                      std::max<qreal>(4, lane.width() * m.meters / longest), 4),
                               2, 2);
            y += caption + 4;
        }
    }
    return top + height + sectionGap;
}

qreal PawReportBody::paintDays(QPainter* p, qreal top) const {
    const auto& theme = theme_.theme();
    const auto& pal = theme.palette();
    const auto& type = theme.type();
    const qreal pad = Metrics::cardPadding + 2;
    const qreal caption = lineHeight(type.caption);
    const qreal height = pad + caption + 4 + qreal(report_->rows.size()) * rowHeight + pad - 4;
    if (!p) return top + height;

    const QRectF card(Metrics::margin, top, width() - 2 * Metrics::margin, height);
    drawCard(*p, pal, card);
    const qreal x = card.left() + pad;
    const qreal right = card.right() - pad;
    const QRectF chartColumn(right - chartWidth, 0, chartWidth, 0);
    qreal y = top + pad;
    p->setFont(type.label);
    p->setPen(pal.textSecondary);
    p->drawText(QRectF(x, y, chartColumn.left() - x, caption), Qt::AlignLeft | Qt::AlignVCenter,
                QStringLiteral("Today"));
    // The week's initials over the charts, today's in the accent.
    p->setFont(type.caption);
    const qreal step = chartWidth / qreal(weekDays);
    for (std::size_t i = 0; i < weekDays; ++i) {
        const auto& day = report_->days[i];
        const std::string name = weekdayName(day.day);
        p->setPen(day.isToday ? pal.accent : pal.textTertiary);
        p->drawText(QRectF(chartColumn.left() + step * qreal(i), y, step, caption), Qt::AlignCenter,
                    qs(name.substr(0, 1)));
    }
    y += caption + 4;

    const QFontMetricsF vm(type.label);
    for (std::size_t r = 0; r < report_->rows.size(); ++r) {
        const PawRow& row = report_->rows[r];
        const QColor color = pal.named(colorOf(row.measure));
        const QRectF box(x, y, right - x, rowHeight);
        if (r > 0) {
            p->setPen(QPen(pal.separator, 1));
            p->drawLine(QPointF(x + 22, box.top() + 0.5), QPointF(right, box.top() + 0.5));
        }
        ui::Icons::paint(*p, QRectF(x, box.center().y() - 7, 14, 14), row.symbol, color);
        const qreal textLeft = x + 22;
        const qreal textWidth = chartColumn.left() - 10 - textLeft;
        p->setFont(type.caption);
        p->setPen(pal.textSecondary);
        p->drawText(QRectF(textLeft, box.top() + 2, textWidth, caption),
                    Qt::AlignLeft | Qt::AlignVCenter, qs(row.label));
        p->setFont(type.label);
        p->setPen(pal.text);
        const QString value = qs(row.value);
        const qreal valueTop = box.top() + 2 + caption;
        const qreal valueWidth = std::min(vm.horizontalAdvance(value) + 1, textWidth);
        p->drawText(QRectF(textLeft, valueTop, valueWidth, vm.height()),
                    Qt::AlignLeft | Qt::AlignVCenter,
                    vm.elidedText(value, Qt::ElideRight, textWidth));
        if (!row.detail.empty() && valueWidth + 6 < textWidth) {
            p->setFont(type.caption);
            p->setPen(pal.textSecondary);
            const qreal dx = textLeft + valueWidth + 6;
            const QFontMetricsF cm(type.caption);
            p->drawText(QRectF(dx, valueTop, textLeft + textWidth - dx, vm.height()),
                        Qt::AlignLeft | Qt::AlignVCenter,
                        cm.elidedText(qs(row.detail), Qt::ElideRight, textLeft + textWidth - dx));
        }
        std::vector<std::optional<double>> week(row.week.begin(), row.week.end());
        ui::WeekColumns::paint(
            *p, QRectF(chartColumn.left(), box.top() + 7, chartWidth, rowHeight - 12), week, color,
            pal.track, 7);
        y += rowHeight;
    }
    return top + height;
}

}  // namespace trotlet::reports
