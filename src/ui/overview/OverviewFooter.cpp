#include "ui/overview/OverviewFooter.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

#include "ui/details/ActionButton.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

constexpr int kTileColumns = 3;

}  // namespace

OverviewFooter::OverviewFooter(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("overviewFooter"));
    edit_ = new ActionButton(QStringLiteral("Edit Overview"), theme_, this);
    edit_->setObjectName(QStringLiteral("editOverview"));
    edit_->setStyle(ActionButton::Style::quiet);
    edit_->setCompact(true);
    edit_->setAccessibleDescription(QStringLiteral("Arrange, resize and hide cards (Ctrl+E)"));
    done_ = new ActionButton(QStringLiteral("Done"), theme_, this);
    done_->setObjectName(QStringLiteral("editDone"));
    done_->setStyle(ActionButton::Style::primary);
    done_->setAccessibleDescription(QStringLiteral("Leave edit mode (Escape)"));
    reset_ = new ActionButton(QStringLiteral("Reset layout"), theme_, this);
    reset_->setObjectName(QStringLiteral("resetLayout"));
    reset_->setStyle(ActionButton::Style::quiet);
    reset_->setAccessibleDescription(QStringLiteral("Every card back at its first place and size"));
    connect(edit_, &ActionButton::clicked, this, &OverviewFooter::editRequested);
    connect(done_, &ActionButton::clicked, this, &OverviewFooter::doneRequested);
    connect(reset_, &ActionButton::clicked, this, &OverviewFooter::resetRequested);
    connect(&theme_, &ThemeStore::changed, this, [this] { update(); });
    setEditing(false, {}, false);
}

void OverviewFooter::setEditing(bool editing, const std::vector<panel::TrayEntry>& tray,
                                bool canReset) {
    editing_ = editing;
    edit_->setVisible(!editing);
    done_->setVisible(editing);
    reset_->setVisible(editing && canReset);
    if (tray != tray_ || !editing) {
        for (TrayTile* tile : tiles_) tile->deleteLater();
        tiles_.clear();
        tray_ = editing ? tray : std::vector<panel::TrayEntry>{};
        for (const auto& entry : tray_) {
            auto* tile = new TrayTile(entry, theme_, this);
            connect(tile, &TrayTile::chosen, this, &OverviewFooter::showRequested);
            tile->show();
            tiles_.push_back(tile);
        }
    }
    arrange();
    update();
}

std::vector<QWidget*> OverviewFooter::focusChain() const {
    std::vector<QWidget*> chain;
    if (!editing_) return {edit_};
    for (TrayTile* tile : tiles_) chain.push_back(tile);
    if (reset_->isVisible()) chain.push_back(reset_);
    chain.push_back(done_);
    return chain;
}

int OverviewFooter::trayTop() const { return Metrics::detailRowHeight + Metrics::spacingSmall; }

void OverviewFooter::arrange() {
    const int width = Metrics::gridWidth;
    if (!editing_) {
        edit_->resize(edit_->sizeHint());
        edit_->move((width - edit_->width()) / 2, 0);
        setFixedSize(width, Metrics::compactButtonHeight);
        return;
    }
    const int gap = Metrics::gap;
    const int tileWidth = (width - (kTileColumns - 1) * gap) / kTileColumns;
    int y = trayTop();
    for (std::size_t i = 0; i < tiles_.size(); ++i) {
        const int column = int(i) % kTileColumns;
        const int row = int(i) / kTileColumns;
        tiles_[i]->setGeometry(column * (tileWidth + gap), y + row * (Metrics::trayTile + gap),
                               tileWidth, Metrics::trayTile);
    }
    const int rows = (int(tiles_.size()) + kTileColumns - 1) / kTileColumns;
    y += rows == 0 ? Metrics::detailRowHeight : rows * (Metrics::trayTile + gap) - gap;
    y += Metrics::spacingLarge;
    const int hint = int(std::ceil(QFontMetricsF(theme_.theme().type().caption).height()));
    y += hint + Metrics::spacingLarge;
    done_->resize(done_->sizeHint());
    reset_->resize(reset_->sizeHint());
    done_->move(width - done_->width(), y);
    reset_->move(0, y);
    setFixedSize(width, y + Metrics::buttonHeight);
}

void OverviewFooter::paintEvent(QPaintEvent*) {
    if (!editing_) return;
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(theme.type().label);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(0, 0, width(), Metrics::detailRowHeight), Qt::AlignLeft | Qt::AlignVCenter,
               QStringLiteral("Hidden cards"));
    p.setFont(theme.type().caption);
    if (tiles_.empty()) {
        p.setPen(pal.textTertiary);
        p.drawText(QRectF(0, trayTop(), width(), Metrics::detailRowHeight),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   QStringLiteral("Every card is on the Overview. A card's minus hides it."));
    }
    const qreal hintTop = done_->y() - Metrics::spacingLarge -
                          std::ceil(QFontMetricsF(theme.type().caption).height());
    p.setPen(pal.textTertiary);
    p.drawText(QRectF(0, hintTop, width(), QFontMetricsF(theme.type().caption).height()),
               Qt::AlignHCenter | Qt::AlignVCenter, qs(panel::editHint()));
}

void OverviewFooter::keyPressEvent(QKeyEvent* event) {
    if (editing_ && event->key() == Qt::Key_Escape) {
        emit doneRequested();
        return;
    }
    QWidget::keyPressEvent(event);
}

TrayTile::TrayTile(const panel::TrayEntry& entry, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), entry_(entry), theme_(theme) {
    setObjectName(QStringLiteral("tray-") + qs(entry.id));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(qs(entry.accessibleName));
    setAccessibleDescription(qs(entry.caption));
}

void TrayTile::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const TypeScale& type = theme.type();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPen dashed(pal.textTertiary, 1, Qt::DashLine);
    p.setPen(dashed);
    p.setBrush(hovered_ ? pal.surfaceHover : pal.window);
    p.drawRoundedRect(frame, Metrics::controlRadius, Metrics::controlRadius);
    const QRectF box =
        frame.adjusted(Metrics::spacing, Metrics::spacing, -Metrics::spacing, -Metrics::spacing);
    const qreal icon = Metrics::iconSize;
    Icons::paint(p, QRectF(box.left(), box.top(), icon, icon), entry_.symbol,
                 pal.named(entry_.color));
    Icons::paint(p, QRectF(box.right() - icon - 1, box.top(), icon + 1, icon + 1),
                 "plus.circle.fill", pal.accent);
    p.setFont(type.label);
    p.setPen(pal.text);
    const qreal titleLeft = box.left() + icon + Metrics::spacingSmall;
    p.drawText(QRectF(titleLeft, box.top() - 1, box.right() - icon - titleLeft, icon + 2),
               Qt::AlignLeft | Qt::AlignVCenter,
               QFontMetricsF(type.label)
                   .elidedText(qs(entry_.title), Qt::ElideRight, box.right() - icon - titleLeft));
    p.setFont(type.caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(box.left(), box.top() + icon + Metrics::spacingSmall, box.width(),
                      box.height() - icon - Metrics::spacingSmall),
               Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, qs(entry_.caption));
    if (hasFocus() && keyboardFocus_) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(frame.adjusted(1, 1, -1, -1), Metrics::controlRadius - 1,
                          Metrics::controlRadius - 1);
    }
}

void TrayTile::mouseReleaseEvent(QMouseEvent* event) {
    if (rect().contains(event->position().toPoint())) emit chosen(entry_.id);
}

void TrayTile::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Space) {
        emit chosen(entry_.id);
        return;
    }
    QWidget::keyPressEvent(event);
}

void TrayTile::enterEvent(QEnterEvent*) {
    hovered_ = true;
    update();
}

void TrayTile::leaveEvent(QEvent*) {
    hovered_ = false;
    update();
}

void TrayTile::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}

void TrayTile::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
