#include "ui/details/DetailSection.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

#include "ui/details/ActionButton.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using Kind = panel::DetailBlock::Kind;

QString qs(const std::string& s) { return QString::fromStdString(s); }

constexpr int kCoresPerRow = 16;
constexpr int kMeterTall = 44;  // a core's meter
constexpr int kHourIcon = 22;
constexpr int kDayIcon = 18;

qreal lineHeight(const QFont& font) { return std::ceil(QFontMetricsF(font).height()); }

void drawElided(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
                const QColor& color, Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter) {
    p.setFont(font);
    p.setPen(color);
    p.drawText(box, align, QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, box.width()));
}

void meter(QPainter& p, const QRectF& track, double fraction, const QColor& fill,
           const QColor& empty, bool vertical = false) {
    const qreal radius = (vertical ? track.width() : track.height()) / 2;
    p.setPen(Qt::NoPen);
    p.setBrush(empty);
    p.drawRoundedRect(track, radius, radius);
    QRectF filled = track;
    const double f = std::clamp(fraction, 0.0, 1.0);
    if (vertical)
        filled.setTop(track.bottom() - std::max(2 * radius, track.height() * f));
    else
        filled.setWidth(std::max(2 * radius, track.width() * f));
    if (f <= 0) return;
    p.setBrush(fill);
    p.drawRoundedRect(filled, radius, radius);
}

// A card's vertical padding: list-like blocks carry their own row height.
int verticalPadding(Kind kind) {
    switch (kind) {
        case Kind::rows:
        case Kind::processes:
        case Kind::days:
            return Metrics::spacingSmall;
        default:
            return Metrics::cardPadding;
    }
}

bool isFootnote(const panel::DetailBlock& b) { return b.kind == Kind::note && b.title.empty(); }

}  // namespace

DetailSection::DetailSection(const panel::DetailBlock& block, const std::string& accentName,
                             const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), block_(block), accent_(accentName), theme_(theme) {
    setObjectName(QStringLiteral("section-") + qs(block.title));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    if (block_.kind == Kind::publicAddress) {
        button_ = new ActionButton(QString(), theme_, this);
        button_->setObjectName(QStringLiteral("publicAddressButton"));
        connect(button_, &ActionButton::clicked, this, &DetailSection::buttonClicked);
    }
    connect(&theme_, &ThemeStore::changed, this, [this] { update(); });
    syncButton();
    describe();
    setFixedHeight(heightFor(Metrics::gridWidth));
}

bool DetailSection::setBlock(const panel::DetailBlock& block) {
    if (block == block_) return false;
    block_ = block;
    syncButton();
    describe();
    setFixedHeight(heightFor(std::max(width(), 1) > 1 ? width() : Metrics::gridWidth));
    update();
    return true;
}

void DetailSection::syncButton() {
    if (!button_) return;
    button_->setText(qs(block_.action));
    // The first look-up is the screen's one call to action; after it the button steps back.
    button_->setStyle(block_.rows.empty() ? ActionButton::Style::primary
                                          : ActionButton::Style::chip);
    button_->setEnabled(block_.actionEnabled);
    button_->resize(button_->sizeHint());
    resizeEvent(nullptr);
}

void DetailSection::describe() {
    setAccessibleName(qs(block_.title.empty() ? block_.note : block_.title));
    std::string text;
    auto add = [&](const std::string& part) {
        if (part.empty()) return;
        text += (text.empty() ? "" : "; ") + part;
    };
    for (const auto& r : block_.rows) add(r.label + ": " + r.value);
    for (const auto& b : block_.bars) add(b.label + ": " + (b.value.empty() ? b.note : b.value));
    for (const auto& pr : block_.processes) add(pr.name + ": " + pr.value);
    for (const auto& h : block_.hours) add(h.time + ": " + h.temperature);
    for (const auto& d : block_.days) add(d.name + ": " + d.low + " to " + d.high);
    if (!block_.title.empty()) add(block_.note);
    setAccessibleDescription(qs(text));
}

int DetailSection::contentHeight(int width) const {
    const Theme& theme = theme_.theme();
    const TypeScale& type = theme.type();
    const int cap = int(lineHeight(type.caption));
    const int inner = width - 2 * Metrics::cardPadding;
    const int n = int(std::max(
        {block_.rows.size(), block_.bars.size(), block_.processes.size(), block_.days.size()}));
    auto wrapped = [&](const std::string& text, const QFont& font) {
        return int(std::ceil(QFontMetricsF(font)
                                 .boundingRect(QRectF(0, 0, inner, 1e6), Qt::TextWordWrap, qs(text))
                                 .height()));
    };
    switch (block_.kind) {
        case Kind::rows:
        case Kind::processes:
        case Kind::days:
            return n * Metrics::detailRowHeight;
        case Kind::bars:
            return n * (Metrics::detailRowHeight + Metrics::meterHeight + Metrics::spacingSmall +
                        cap) +
                   (n - 1) * Metrics::spacingLarge;
        case Kind::cores: {
            const int count = int(block_.bars.size());
            const int perRow = std::min(count, kCoresPerRow);
            const int rows = (count + kCoresPerRow - 1) / kCoresPerRow;
            const bool values = perRow > 0 && inner / perRow >= 30;
            const int row = (values ? cap + 2 : 0) + kMeterTall + 2 + cap;
            return rows * row + (rows - 1) * Metrics::spacing;
        }
        case Kind::hours:
            return cap + Metrics::spacingSmall + kHourIcon + Metrics::spacingSmall +
                   int(lineHeight(type.body)) + cap;
        case Kind::note:
            return wrapped(block_.note, type.caption);
        case Kind::publicAddress: {
            int h = int(block_.rows.size()) * Metrics::detailRowHeight;
            if (!block_.note.empty()) h += wrapped(block_.note, type.caption) + Metrics::spacing;
            return h + Metrics::buttonHeight;
        }
        case Kind::chart:
        case Kind::pressure:
            return 0;
    }
    return 0;
}

int DetailSection::heightFor(int width) const {
    if (isFootnote(block_)) return contentHeight(width + 2 * Metrics::cardPadding);
    const int title = block_.title.empty() ? 0 : Metrics::detailRowHeight + Metrics::spacingSmall;
    return title + contentHeight(width) + 2 * verticalPadding(block_.kind);
}

QRectF DetailSection::cardRect() const {
    const qreal top = block_.title.empty() ? 0 : Metrics::detailRowHeight + Metrics::spacingSmall;
    return QRectF(0, top, width(), height() - top);
}

void DetailSection::resizeEvent(QResizeEvent*) {
    if (!button_) return;
    const QRectF card = cardRect();
    button_->move(int(card.left()) + Metrics::cardPadding,
                  int(card.bottom()) - Metrics::cardPadding - Metrics::buttonHeight);
}

void DetailSection::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);

    if (isFootnote(block_)) {
        p.setFont(theme.type().caption);
        p.setPen(block_.level >= panel::Level::busy ? pal.level(block_.level) : pal.textTertiary);
        p.drawText(QRectF(rect()), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                   qs(block_.note));
        return;
    }
    if (!block_.title.empty()) {
        p.setFont(theme.type().label);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(0, 0, width(), Metrics::detailRowHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, qs(block_.title));
    }
    const QRectF card = cardRect().adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(card, Metrics::cardRadius, Metrics::cardRadius);
    const int vpad = verticalPadding(block_.kind);
    const QRectF box =
        cardRect().adjusted(Metrics::cardPadding, vpad, -Metrics::cardPadding, -vpad);
    switch (block_.kind) {
        case Kind::rows:
            paintRows(p, box);
            break;
        case Kind::bars:
            paintBars(p, box);
            break;
        case Kind::cores:
            paintCores(p, box);
            break;
        case Kind::processes:
            paintProcesses(p, box);
            break;
        case Kind::hours:
            paintHours(p, box);
            break;
        case Kind::days:
            paintDays(p, box);
            break;
        case Kind::note:
            paintNote(p, box);
            break;
        case Kind::publicAddress:
            paintRows(p, box);
            if (!block_.note.empty()) {
                QRectF note = box;
                note.setTop(box.top() + qreal(block_.rows.size()) * Metrics::detailRowHeight);
                note.setBottom(box.bottom() - Metrics::buttonHeight - Metrics::spacing);
                paintNote(p, note);
            }
            break;
        default:
            break;
    }
}

void DetailSection::paintRows(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const QFont& font = theme.type().body;
    const QFontMetricsF fm(font);
    for (std::size_t i = 0; i < block_.rows.size(); ++i) {
        const auto& r = block_.rows[i];
        const QRectF line(box.left(), box.top() + qreal(i) * Metrics::detailRowHeight, box.width(),
                          Metrics::detailRowHeight);
        if (i > 0) {
            p.setPen(QPen(pal.separator, 1));
            p.drawLine(QPointF(line.left(), std::round(line.top()) + 0.5),
                       QPointF(line.right(), std::round(line.top()) + 0.5));
        }
        const QString label = qs(r.label);
        const qreal labelWidth =
            std::min(fm.horizontalAdvance(label) + Metrics::spacingLarge, line.width() * 0.55);
        drawElided(p, QRectF(line.left(), line.top(), labelWidth, line.height()), label, font,
                   pal.textSecondary);
        const QColor ink = r.missing                       ? pal.textTertiary
                           : r.level >= panel::Level::busy ? pal.level(r.level)
                                                           : pal.text;
        drawElided(p, line.adjusted(labelWidth, 0, 0, 0), qs(r.value), font, ink,
                   Qt::AlignRight | Qt::AlignVCenter);
    }
}

void DetailSection::paintBars(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    const QColor accent = pal.named(accent_);
    const qreal cap = lineHeight(type.caption);
    const qreal item =
        Metrics::detailRowHeight + Metrics::meterHeight + Metrics::spacingSmall + cap;
    for (std::size_t i = 0; i < block_.bars.size(); ++i) {
        const auto& b = block_.bars[i];
        const qreal top = box.top() + qreal(i) * (item + Metrics::spacingLarge);
        const QRectF line(box.left(), top, box.width(), Metrics::detailRowHeight);
        const QFontMetricsF fm(type.body);
        const qreal valueWidth = fm.horizontalAdvance(qs(b.value)) + Metrics::spacing;
        QFont label = type.body;
        label.setWeight(QFont::Medium);
        drawElided(p, line.adjusted(0, 0, -valueWidth, 0), qs(b.label), label, pal.text);
        drawElided(p, line, qs(b.value), type.body,
                   b.level >= panel::Level::hot ? pal.level(b.level) : pal.textSecondary,
                   Qt::AlignRight | Qt::AlignVCenter);
        const QRectF track(box.left(), line.bottom(), box.width(), Metrics::meterHeight);
        meter(p, track, b.fraction, b.level == panel::Level::calm ? accent : pal.level(b.level),
              pal.track);

        // The note, then the tags as small chips at the right.
        const QRectF under(box.left(), track.bottom() + Metrics::spacingSmall, box.width(), cap);
        QFont chipFont = type.caption;
        chipFont.setPointSizeF(chipFont.pointSizeF() * 0.92);
        const QFontMetricsF cm(chipFont);
        qreal x = under.right();
        p.setFont(chipFont);
        for (auto it = b.tags.rbegin(); it != b.tags.rend(); ++it) {
            const QString tag = qs(*it);
            const qreal w = cm.horizontalAdvance(tag) + 2 * Metrics::spacingSmall + 2;
            const QRectF chip(x - w, under.top() + 1, w, under.height() - 1);
            p.setPen(Qt::NoPen);
            p.setBrush(pal.chip);
            p.drawRoundedRect(chip, chip.height() / 2, chip.height() / 2);
            p.setPen(pal.textSecondary);
            p.drawText(chip, Qt::AlignCenter, tag);
            x -= w + Metrics::spacingSmall;
        }
        drawElided(p, QRectF(under.left(), under.top(), x - under.left(), under.height()),
                   qs(b.note), type.caption, pal.textTertiary);
    }
}

void DetailSection::paintCores(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const QFont& font = theme.type().caption;
    const QColor accent = pal.named(accent_);
    const int count = int(block_.bars.size());
    const int perRow = std::max(1, std::min(count, kCoresPerRow));
    const qreal column = box.width() / perRow;
    const qreal cap = lineHeight(font);
    const bool values = column >= 30;
    const qreal row = (values ? cap + 2 : 0) + kMeterTall + 2 + cap + Metrics::spacing;
    const qreal meterWidth = std::clamp<qreal>(column * 0.2, 4, 8);
    for (int i = 0; i < count; ++i) {
        const auto& b = block_.bars[std::size_t(i)];
        const qreal left = box.left() + (i % perRow) * column;
        qreal y = box.top() + (i / perRow) * row;
        const QColor fill = b.level == panel::Level::calm ? accent : pal.level(b.level);
        if (values) {
            drawElided(p, QRectF(left, y, column, cap), qs(b.value), font,
                       b.level >= panel::Level::hot ? fill : pal.textSecondary, Qt::AlignCenter);
            y += cap + 2;
        }
        meter(p, QRectF(left + (column - meterWidth) / 2, y, meterWidth, kMeterTall), b.fraction,
              fill, pal.track, true);
        drawElided(p, QRectF(left, y + kMeterTall + 2, column, cap), qs(b.label), font,
                   pal.textTertiary, Qt::AlignCenter);
    }
}

void DetailSection::paintProcesses(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const QFont& font = theme.type().body;
    const QColor accent = pal.named(accent_);
    const QFontMetricsF fm(font);
    for (std::size_t i = 0; i < block_.processes.size(); ++i) {
        const auto& pr = block_.processes[i];
        const QRectF line(box.left(), box.top() + qreal(i) * Metrics::detailRowHeight, box.width(),
                          Metrics::detailRowHeight);
        // A share meter before the value column: who takes most reads at a glance.
        const qreal valueColumn = fm.horizontalAdvance(QStringLiteral("00.0 GB"));
        const qreal meterWidth = 44;
        const QRectF track(line.right() - valueColumn - Metrics::spacing - meterWidth,
                           line.center().y() - Metrics::meterHeight / 2.0, meterWidth,
                           Metrics::meterHeight);
        meter(p, track, pr.fraction, accent, pal.track);
        drawElided(p,
                   QRectF(line.left(), line.top(), track.left() - Metrics::spacing - line.left(),
                          line.height()),
                   qs(pr.name), font, pal.text);
        drawElided(p, line, qs(pr.value), font, pal.textSecondary,
                   Qt::AlignRight | Qt::AlignVCenter);
    }
}

void DetailSection::paintHours(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    const QColor accent = pal.named(accent_);
    const std::size_t n = block_.hours.size();
    if (n == 0) return;
    const qreal column = box.width() / qreal(n);
    const qreal cap = lineHeight(type.caption);
    const qreal body = lineHeight(type.body);
    for (std::size_t i = 0; i < n; ++i) {
        const auto& h = block_.hours[i];
        const qreal left = box.left() + qreal(i) * column;
        qreal y = box.top();
        drawElided(p, QRectF(left, y, column, cap), qs(h.time), type.caption,
                   i == 0 ? pal.text : pal.textSecondary, Qt::AlignCenter);
        y += cap + Metrics::spacingSmall;
        Icons::paint(p, QRectF(left + (column - kHourIcon) / 2, y, kHourIcon, kHourIcon), h.symbol,
                     pal.textSecondary);
        y += kHourIcon + Metrics::spacingSmall;
        drawElided(p, QRectF(left, y, column, body), qs(h.temperature), type.body, pal.text,
                   Qt::AlignCenter);
        y += body;
        drawElided(p, QRectF(left, y, column, cap), qs(h.precipitation), type.caption, accent,
                   Qt::AlignCenter);
    }
}

void DetailSection::paintDays(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    const QColor accent = pal.named(accent_);
    const QFontMetricsF fm(type.body);
    const qreal nameWidth = fm.horizontalAdvance(QStringLiteral("Today")) + Metrics::spacing;
    const qreal tempWidth = fm.horizontalAdvance(QStringLiteral("-00°")) + Metrics::spacing;
    const qreal chanceWidth = QFontMetricsF(type.caption).horizontalAdvance(QStringLiteral("100%"));
    for (std::size_t i = 0; i < block_.days.size(); ++i) {
        const auto& d = block_.days[i];
        const QRectF line(box.left(), box.top() + qreal(i) * Metrics::detailRowHeight, box.width(),
                          Metrics::detailRowHeight);
        if (i > 0) {
            p.setPen(QPen(pal.separator, 1));
            p.drawLine(QPointF(line.left(), std::round(line.top()) + 0.5),
                       QPointF(line.right(), std::round(line.top()) + 0.5));
        }
        qreal x = line.left();
        drawElided(p, QRectF(x, line.top(), nameWidth, line.height()), qs(d.name), type.body,
                   i == 0 ? pal.text : pal.textSecondary);
        x += nameWidth;
        Icons::paint(p, QRectF(x, line.center().y() - kDayIcon / 2.0, kDayIcon, kDayIcon), d.symbol,
                     pal.textSecondary);
        x += kDayIcon + Metrics::spacingSmall;
        drawElided(p, QRectF(x, line.top(), chanceWidth, line.height()), qs(d.precipitation),
                   type.caption, accent);
        x += chanceWidth + Metrics::spacing;
        drawElided(p, QRectF(x, line.top(), tempWidth, line.height()), qs(d.low), type.body,
                   pal.textSecondary, Qt::AlignRight | Qt::AlignVCenter);
        x += tempWidth + Metrics::spacing;
        const qreal barRight = line.right() - tempWidth - Metrics::spacing;
        const QRectF track(x, line.center().y() - Metrics::meterHeight / 2.0, barRight - x,
                           Metrics::meterHeight);
        p.setPen(Qt::NoPen);
        p.setBrush(pal.track);
        p.drawRoundedRect(track, track.height() / 2, track.height() / 2);
        QRectF span(track.left() + track.width() * d.from, track.top(),
                    std::max(track.height(), track.width() * (d.to - d.from)), track.height());
        p.setBrush(accent);
        p.drawRoundedRect(span, track.height() / 2, track.height() / 2);
        drawElided(p, QRectF(line.right() - tempWidth, line.top(), tempWidth, line.height()),
                   qs(d.high), type.body, pal.text, Qt::AlignRight | Qt::AlignVCenter);
    }
}

void DetailSection::paintNote(QPainter& p, const QRectF& box) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    p.setFont(theme.type().caption);
    p.setPen(block_.level >= panel::Level::busy ? pal.level(block_.level) : pal.textSecondary);
    p.drawText(box, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, qs(block_.note));
}

}  // namespace trotlet::ui
