#include "ui/processes/SearchField.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {
constexpr int iconBox = 14;
}

SearchField::SearchField(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setFixedHeight(Metrics::fieldHeight);
    setCursor(Qt::IBeamCursor);
    edit_ = new QLineEdit(this);
    edit_->setObjectName(QStringLiteral("processSearch"));
    edit_->setFrame(false);
    edit_->setAttribute(Qt::WA_MacShowFocusRect, false);
    edit_->setAccessibleName(QStringLiteral("Search processes"));
    edit_->setAccessibleDescription(QStringLiteral("By name, path or PID"));
    edit_->installEventFilter(this);
    setFocusProxy(edit_);
    connect(edit_, &QLineEdit::textChanged, this, [this](const QString& text) {
        update();
        emit textChanged(text);
    });
    connect(&theme_, &ThemeStore::changed, this, &SearchField::applyTheme);
    applyTheme();
}

QString SearchField::text() const { return edit_->text(); }
void SearchField::setText(const QString& text) { edit_->setText(text); }
void SearchField::setPlaceholder(const QString& text) { edit_->setPlaceholderText(text); }

QSize SearchField::sizeHint() const { return QSize(Metrics::gridWidth, Metrics::fieldHeight); }

void SearchField::applyTheme() {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPalette palette = edit_->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, pal.text);
    palette.setColor(QPalette::PlaceholderText, pal.textTertiary);
    palette.setColor(QPalette::Highlight, pal.accent);
    palette.setColor(QPalette::HighlightedText, pal.onAccent);
    edit_->setPalette(palette);
    edit_->setFont(theme.type().body);
    update();
}

QRectF SearchField::clearButtonRect() const {
    const qreal side = height();
    return QRectF(width() - side, 0, side, side);
}

void SearchField::setNote(const QString& note) {
    if (note == note_) return;
    note_ = note;
    placeEdit();
    update();
}

void SearchField::placeEdit() {
    const int left = Metrics::spacingLarge + iconBox + Metrics::spacing - 2;
    const int note = note_.isEmpty()
                         ? 0
                         : QFontMetrics(theme_.theme().type().caption).horizontalAdvance(note_) +
                               Metrics::spacing;
    edit_->setGeometry(left, 0, width() - left - height() - note, height());
}

void SearchField::resizeEvent(QResizeEvent*) { placeEdit(); }

void SearchField::paintEvent(QPaintEvent*) {
    const Palette& pal = theme_.theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(frame, Metrics::fieldRadius, Metrics::fieldRadius);
    if (edit_->hasFocus()) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(frame, Metrics::fieldRadius, Metrics::fieldRadius);
    }
    const qreal y = (height() - iconBox) / 2.0;
    Icons::paint(p, QRectF(Metrics::spacingLarge, y, iconBox, iconBox), "magnifyingglass",
                 pal.textTertiary);
    if (!note_.isEmpty()) {
        p.setFont(theme_.theme().type().caption);
        p.setPen(pal.textTertiary);
        p.drawText(QRectF(0, 0, clearButtonRect().left(), height()),
                   Qt::AlignRight | Qt::AlignVCenter, note_);
    }
    if (!edit_->text().isEmpty()) {
        const QRectF clear = clearButtonRect();
        Icons::paint(p, QRectF(clear.center().x() - iconBox / 2.0, y, iconBox, iconBox),
                     "xmark.circle.fill", pal.textTertiary);
    }
}

void SearchField::mousePressEvent(QMouseEvent* event) {
    if (!edit_->text().isEmpty() && clearButtonRect().contains(event->position())) edit_->clear();
    edit_->setFocus(Qt::MouseFocusReason);
}

bool SearchField::eventFilter(QObject* watched, QEvent* event) {
    if (watched == edit_ && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Escape && !edit_->text().isEmpty()) {
            edit_->clear();
            return true;
        }
        if (key->key() == Qt::Key_Down || key->key() == Qt::Key_Return ||
            key->key() == Qt::Key_Enter) {
            emit leaveDownward();
            return true;
        }
    }
    if (watched == edit_ && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut))
        update();
    return QWidget::eventFilter(watched, event);
}

}  // namespace trotlet::ui
