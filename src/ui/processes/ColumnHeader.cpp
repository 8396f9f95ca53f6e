#include "ui/processes/ColumnHeader.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "processes/ProcessTexts.h"
#include "ui/processes/ProcessRowPainter.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

using processes::ProcessColumn;
using processes::ProcessSort;

namespace {
constexpr int arrowSize = 9;
}

ColumnHeader::ColumnHeader(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("processColumns"));
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(Metrics::listHeaderHeight);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(QStringLiteral("Sort processes"));
    setSort(sort_);
}

QSize ColumnHeader::sizeHint() const {
    return QSize(Metrics::gridWidth, Metrics::listHeaderHeight);
}

void ColumnHeader::setSort(const ProcessSort& sort) {
    sort_ = sort;
    setAccessibleDescription(
        QString::fromStdString(processes::ProcessTexts::sortDescription(sort)));
    if (isVisible()) {
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    update();
}

QRectF ColumnHeader::contentRect() const {
    // Lines up with the rows: the list's inset and each row's padding.
    const qreal inset = Metrics::listInset + Metrics::listCellPadding;
    return QRectF(rect()).adjusted(inset, 0, -inset, 0);
}

void ColumnHeader::choose(ProcessColumn column) {
    focused_ = column;
    const ProcessSort next = sort_.choosing(column);
    setSort(next);
    emit sortChosen(next);
}

void ColumnHeader::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(theme.type().caption);
    const QFontMetricsF fm(theme.type().caption);
    for (const auto& [column, box, align] : processColumns(contentRect())) {
        const bool sorted = column == sort_.column;
        const QString title = QString::fromStdString(processes::ProcessTexts::columnTitle(column));
        const qreal textWidth = std::min(box.width(), fm.horizontalAdvance(title));
        // The arrow goes after a left-aligned title and before a right-aligned one, so the
        // title itself stays in line with the values below it.
        QRectF textBox = box;
        QRectF arrow;
        if (sorted) {
            const qreal y = box.center().y() - arrowSize / 2.0;
            if (align & Qt::AlignRight) {
                arrow = QRectF(box.right() - textWidth - arrowSize - 2, y, arrowSize, arrowSize);
            } else {
                arrow = QRectF(box.left() + textWidth + 2, y, arrowSize, arrowSize);
            }
        }
        p.setPen(sorted ? pal.text : pal.textSecondary);
        QFont font = theme.type().caption;
        font.setWeight(sorted ? QFont::DemiBold : QFont::Normal);
        p.setFont(font);
        p.drawText(textBox, align | Qt::AlignVCenter,
                   QFontMetricsF(font).elidedText(title, Qt::ElideRight, box.width()));
        if (sorted)
            Icons::paint(p, arrow, sort_.descending ? "chevron.down" : "chevron.up",
                         pal.textSecondary);
        if (hasFocus() && keyboardFocus_ && column == focused_) {
            p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
            p.setBrush(Qt::NoBrush);
            const qreal left =
                (align & Qt::AlignRight) ? box.right() - textWidth - arrowSize - 6 : box.left() - 4;
            p.drawRoundedRect(QRectF(left, 3, textWidth + arrowSize + 10, height() - 6), 5, 5);
        }
    }
    p.setPen(QPen(pal.separator, 1));
    p.drawLine(QPointF(Metrics::listInset, height() - 0.5),
               QPointF(width() - Metrics::listInset, height() - 0.5));
}

void ColumnHeader::mousePressEvent(QMouseEvent* event) {
    for (const auto& column : processColumns(contentRect()))
        if (column.box.adjusted(-Metrics::listColumnGap / 2.0, 0, Metrics::listColumnGap / 2.0, 0)
                .contains(event->position()))
            choose(column.column);
}

void ColumnHeader::keyPressEvent(QKeyEvent* event) {
    const int index = int(focused_);
    switch (event->key()) {
        case Qt::Key_Left:
            focused_ = ProcessColumn(std::max(0, index - 1));
            update();
            return;
        case Qt::Key_Right:
            focused_ =
                ProcessColumn(std::min(int(processes::ProcessColumnNames.size()) - 1, index + 1));
            update();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            choose(focused_);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void ColumnHeader::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    focused_ = sort_.column;
    update();
}

void ColumnHeader::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
