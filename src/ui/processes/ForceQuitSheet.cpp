#include "ui/processes/ForceQuitSheet.h"

#include <QKeyEvent>
#include <QPainter>

#include "processes/ProcessTexts.h"
#include "ui/processes/PillButton.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {
constexpr int iconSide = 28;
constexpr int cardWidth = 300;
}  // namespace

ForceQuitSheet::ForceQuitSheet(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("forceQuitSheet"));
    setAccessibleName(QStringLiteral("Force Quit"));
    cancel_ = new PillButton(QStringLiteral("Cancel"), PillButton::Kind::plain, theme_, this);
    force_ =
        new PillButton(QStringLiteral("Force Quit"), PillButton::Kind::destructive, theme_, this);
    connect(cancel_, &PillButton::clicked, this, [this] {
        hide();
        emit cancelled(pid_);
    });
    connect(force_, &PillButton::clicked, this, [this] {
        hide();
        emit confirmed(pid_);
    });
    setTabOrder(cancel_, force_);
    hide();
}

void ForceQuitSheet::ask(std::int32_t pid, const QString& name) {
    pid_ = pid;
    title_ = QString::fromStdString(processes::ProcessTexts::forceQuitTitle(name.toStdString()));
    body_ = QString::fromStdString(processes::ProcessTexts::forceQuitBody(name.toStdString()));
    setAccessibleDescription(title_ + QLatin1Char(' ') + body_);
    setGeometry(parentWidget()->rect());
    layoutButtons();
    show();
    raise();
    cancel_->setFocus(Qt::OtherFocusReason);
}

QRectF ForceQuitSheet::cardRect() const {
    const Theme& theme = theme_.theme();
    const qreal inner = cardWidth - 2 * Metrics::sheetPadding;
    const QFontMetricsF title(theme.type().title);
    const QFontMetricsF body(theme.type().body);
    const qreal titleHeight =
        title.boundingRect(QRectF(0, 0, inner, 1000), Qt::TextWordWrap | Qt::AlignHCenter, title_)
            .height();
    const qreal bodyHeight =
        body.boundingRect(QRectF(0, 0, inner, 1000), Qt::TextWordWrap | Qt::AlignHCenter, body_)
            .height();
    const qreal height = Metrics::sheetPadding + iconSide + Metrics::spacingLarge + titleHeight +
                         Metrics::spacing + bodyHeight + Metrics::sheetPadding +
                         Metrics::buttonHeight + Metrics::sheetPadding;
    const qreal width = std::min<qreal>(cardWidth, this->width() - 2 * Metrics::margin);
    return QRectF((this->width() - width) / 2,
                  std::max<qreal>(Metrics::margin, (this->height() - height) / 2.6), width, height);
}

void ForceQuitSheet::layoutButtons() {
    const QRectF card = cardRect();
    const int width = int((card.width() - 2 * Metrics::sheetPadding - Metrics::spacing) / 2);
    const int top = int(card.bottom() - Metrics::sheetPadding - Metrics::buttonHeight);
    const int left = int(card.left() + Metrics::sheetPadding);
    cancel_->setGeometry(left, top, width, Metrics::buttonHeight);
    force_->setGeometry(left + width + Metrics::spacing, top, width, Metrics::buttonHeight);
}

void ForceQuitSheet::resizeEvent(QResizeEvent*) { layoutButtons(); }

void ForceQuitSheet::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QColor dim = pal.window;
    dim.setAlphaF(0.72);
    p.fillRect(rect(), dim);
    const QRectF card = cardRect();
    // A soft shadow: a few widening rings of faint ink.
    for (int i = 1; i <= 6; ++i) {
        QColor shade(0, 0, 0, theme.isDark() ? 22 - 3 * i : 12 - 2 * i);
        if (shade.alpha() <= 0) break;
        p.setPen(Qt::NoPen);
        p.setBrush(shade);
        p.drawRoundedRect(card.adjusted(-i, -i + 2, i, i + 2), Metrics::sheetRadius + i,
                          Metrics::sheetRadius + i);
    }
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(card, Metrics::sheetRadius, Metrics::sheetRadius);

    const qreal inner = card.width() - 2 * Metrics::sheetPadding;
    qreal y = card.top() + Metrics::sheetPadding;
    Icons::paint(p, QRectF(card.center().x() - iconSide / 2.0, y, iconSide, iconSide),
                 "exclamationmark.triangle.fill", pal.busy);
    y += iconSide + Metrics::spacingLarge;
    p.setFont(theme.type().title);
    p.setPen(pal.text);
    QRectF titleBox(card.left() + Metrics::sheetPadding, y, inner, 1000);
    titleBox = p.boundingRect(titleBox, Qt::TextWordWrap | Qt::AlignHCenter, title_);
    p.drawText(QRectF(card.left() + Metrics::sheetPadding, y, inner, titleBox.height()),
               Qt::TextWordWrap | Qt::AlignHCenter, title_);
    y += titleBox.height() + Metrics::spacing;
    p.setFont(theme.type().body);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(card.left() + Metrics::sheetPadding, y, inner, card.bottom() - y),
               Qt::TextWordWrap | Qt::AlignHCenter | Qt::AlignTop, body_);
}

void ForceQuitSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        cancel_->click();
        return;
    }
    QWidget::keyPressEvent(event);
}

void ForceQuitSheet::mousePressEvent(QMouseEvent*) {
    // Clicks outside the card go nowhere: the list below waits for an answer.
}

}  // namespace trotlet::ui
