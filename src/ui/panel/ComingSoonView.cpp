#include "ui/panel/ComingSoonView.h"

#include <QPainter>

#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

ComingSoonView::ComingSoonView(const QString& title, const QString& sentence,
                               const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), title_(title), sentence_(sentence), theme_(theme) {
    setAccessibleName(title);
    setAccessibleDescription(sentence);
    setMinimumHeight(200);
}

void ComingSoonView::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(Metrics::margin, 0, -Metrics::margin, 0);
    const qreal icon = 36;
    const qreal top = area.top() + 48;
    Icons::paint(p, QRectF(area.center().x() - icon / 2, top, icon, icon), "pawprint.fill",
                 pal.textTertiary);
    p.setFont(theme.type().title);
    p.setPen(pal.text);
    const QRectF titleBox(area.left(), top + icon + 12, area.width(), 22);
    p.drawText(titleBox, Qt::AlignHCenter | Qt::AlignVCenter, title_);
    p.setFont(theme.type().body);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(area.left() + 24, titleBox.bottom() + 6, area.width() - 48, 60),
               Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, sentence_);
}

}  // namespace trotlet::ui
