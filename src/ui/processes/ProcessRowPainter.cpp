#include "ui/processes/ProcessRowPainter.h"

#include <QPainter>

#include "mascot/ProcessDisplayName.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Theme.h"

namespace trotlet::ui {
namespace {

using processes::ProcessColumn;
namespace Texts = processes::ProcessTexts;

QString qs(const std::string& s) { return QString::fromStdString(s); }

void drawElided(QPainter& p, const QRectF& box, const QString& text, Qt::Alignment align,
                Qt::TextElideMode mode = Qt::ElideRight) {
    const QString shown = p.fontMetrics().elidedText(text, mode, int(box.width()));
    p.drawText(box, align | Qt::AlignVCenter, shown);
}

QColor toneColor(const Palette& pal, Texts::Tone tone) {
    switch (tone) {
        case Texts::Tone::warning:
            return pal.busy;
        case Texts::Tone::error:
            return pal.critical;
        default:
            return pal.textSecondary;
    }
}

}  // namespace

std::array<ColumnBox, 5> processColumns(const QRectF& content) {
    const qreal gap = Metrics::listColumnGap;
    qreal right = content.right();
    auto take = [&](qreal width) {
        const QRectF box(right - width, content.top(), width, content.height());
        right -= width + gap;
        return box;
    };
    const QRectF user = take(Metrics::userColumnWidth);
    const QRectF threads = take(Metrics::threadsColumnWidth);
    const QRectF memory = take(Metrics::memoryColumnWidth);
    const QRectF cpu = take(Metrics::cpuColumnWidth);
    const QRectF name(content.left(), content.top(), std::max<qreal>(0, right - content.left()),
                      content.height());
    return {{{ProcessColumn::name, name, Qt::AlignLeft},
             {ProcessColumn::cpu, cpu, Qt::AlignRight},
             {ProcessColumn::memory, memory, Qt::AlignRight},
             {ProcessColumn::threads, threads, Qt::AlignRight},
             {ProcessColumn::user, user.adjusted(gap, 0, 0, 0), Qt::AlignLeft}}};
}

namespace ProcessRowPainter {

int detailHeight(std::size_t lines) {
    return Metrics::spacingSmall + int(lines) * Metrics::listDetailLineHeight + Metrics::spacing +
           Metrics::buttonHeight + Metrics::spacing;
}

void paintRow(QPainter& p, const Theme& theme, const QRectF& line, const RowLook& look) {
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    const auto& row = *look.row;
    const bool accent = look.selected && look.focused;
    if (look.selected || look.hovered) {
        p.setPen(Qt::NoPen);
        p.setBrush(accent ? pal.accent : look.selected ? pal.track : pal.chip);
        p.drawRoundedRect(line, Metrics::listRowRadius, Metrics::listRowRadius);
    }
    const QColor primary = accent ? pal.onAccent : look.ended ? pal.textTertiary : pal.text;
    QColor secondary = accent ? pal.onAccent : look.ended ? pal.textTertiary : pal.textSecondary;
    if (accent) secondary.setAlphaF(0.8);
    const QRectF content = line.adjusted(Metrics::listCellPadding, 0, -Metrics::listCellPadding, 0);
    const auto columns = processColumns(content);

    // Name: the process, then the app it belongs to.
    const QRectF nameBox = columns[0].box;
    const auto name = mascot::ProcessDisplayName::of(row);
    p.setFont(type.body);
    p.setPen(primary);
    const QString title = qs(name.name);
    const QFontMetricsF nameMetrics(type.body);
    const qreal titleWidth = std::min(nameBox.width(), nameMetrics.horizontalAdvance(title));
    drawElided(p, nameBox, title, Qt::AlignLeft);
    // The app only when it fits whole: a cut-off "fir…" says less than nothing.
    if (name.app) {
        const QString app = qs(*name.app);
        const qreal left = titleWidth + Metrics::spacingSmall;
        if (left + QFontMetricsF(type.caption).horizontalAdvance(app) <= nameBox.width()) {
            p.setFont(type.caption);
            p.setPen(secondary);
            p.drawText(nameBox.adjusted(left, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, app);
        }
    }

    // Readings: CPU and memory in the text colour, the rest quieter; an idle process's 0.0%
    // recedes so the busy ones stand out.
    p.setFont(type.caption);
    const bool idle = row.cpuPercent < 0.05;
    p.setPen(idle && !accent ? pal.textTertiary : primary);
    drawElided(p, columns[1].box, qs(Texts::cpu(row.cpuPercent)), columns[1].align);
    p.setPen(primary);
    drawElided(p, columns[2].box, qs(Texts::memory(row.memoryBytes)), columns[2].align);
    // A quit under way says so where the thread count and the owner were.
    if (look.status) {
        p.setPen(accent ? pal.onAccent : toneColor(pal, look.status->tone));
        drawElided(p,
                   columns[3].box.united(columns[4].box).adjusted(Metrics::listColumnGap, 0, 0, 0),
                   qs(look.status->text), Qt::AlignRight);
        return;
    }
    p.setPen(secondary);
    drawElided(p, columns[3].box, qs(Texts::threads(row.threads)), columns[3].align);
    drawElided(p, columns[4].box, qs(Texts::user(row.user)), columns[4].align);
}

QRectF actionButtonRect(const Theme& theme, const QRectF& area, const Texts::Action& action) {
    if (action.button == Texts::Action::Button::none) return {};
    const QFontMetricsF fm(theme.type().label);
    const qreal width = fm.horizontalAdvance(qs(action.buttonText)) + 2 * Metrics::spacingLarge + 4;
    const qreal left = area.left() + Metrics::listCellPadding + Metrics::listDetailLabelWidth;
    // The action line is the last: the area is as tall as the lines above it need.
    return QRectF(left, area.bottom() - Metrics::spacing - Metrics::buttonHeight, width,
                  Metrics::buttonHeight);
}

void paintDetails(QPainter& p, const Theme& theme, const QRectF& area,
                  const std::vector<Texts::DetailLine>& lines, const Texts::Action& action) {
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    const qreal left = area.left() + Metrics::listCellPadding;
    const qreal valueLeft = left + Metrics::listDetailLabelWidth;
    const qreal valueWidth = area.right() - Metrics::listCellPadding - valueLeft;
    p.setFont(type.caption);
    qreal y = area.top() + Metrics::spacingSmall;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const QRectF label(left, y, Metrics::listDetailLabelWidth, Metrics::listDetailLineHeight);
        const QRectF value(valueLeft, y, valueWidth, Metrics::listDetailLineHeight);
        p.setPen(pal.textTertiary);
        drawElided(p, label, qs(lines[i].label), Qt::AlignLeft);
        p.setPen(pal.textSecondary);
        // Paths and command lines keep both ends: the program and the last argument tell most.
        drawElided(p, value, qs(lines[i].value), Qt::AlignLeft,
                   lines[i].label == "User" || lines[i].label == "Started" ? Qt::ElideRight
                                                                           : Qt::ElideMiddle);
        y += Metrics::listDetailLineHeight;
    }

    const QRectF button = actionButtonRect(theme, area, action);
    const qreal lineTop = area.bottom() - Metrics::spacing - Metrics::buttonHeight;
    qreal noteLeft = valueLeft;
    if (!button.isEmpty()) {
        const bool destructive = action.button == Texts::Action::Button::forceQuit;
        p.setPen(destructive ? Qt::NoPen : QPen(pal.border, 1));
        p.setBrush(destructive ? pal.critical : pal.surface);
        p.drawRoundedRect(button.adjusted(0.5, 0.5, -0.5, -0.5), button.height() / 2,
                          button.height() / 2);
        p.setFont(type.label);
        p.setPen(!action.enabled ? pal.textTertiary : destructive ? pal.onAccent : pal.text);
        p.drawText(button, Qt::AlignCenter, qs(action.buttonText));
        noteLeft = button.right() + Metrics::spacingLarge;
    }
    if (action.note.empty()) return;
    const QColor ink = toneColor(pal, action.tone);
    if (action.locked) {
        const qreal icon = Metrics::iconSize - 2;
        Icons::paint(p, QRectF(noteLeft, lineTop + (Metrics::buttonHeight - icon) / 2, icon, icon),
                     "lock.fill", pal.textTertiary);
        noteLeft += icon + Metrics::spacingSmall + 2;
    }
    p.setFont(type.caption);
    p.setPen(ink);
    drawElided(p,
               QRectF(noteLeft, lineTop, area.right() - Metrics::listCellPadding - noteLeft,
                      Metrics::buttonHeight),
               qs(action.note), Qt::AlignLeft);
}

}  // namespace ProcessRowPainter

}  // namespace trotlet::ui
