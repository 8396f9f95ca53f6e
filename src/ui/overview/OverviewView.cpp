#include "ui/overview/OverviewView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QShortcut>

#include <algorithm>
#include <cmath>

#include "layout/LayoutStore.h"
#include "panel/CardFocus.h"
#include "panel/OverviewEditing.h"
#include "ui/cards/CardView.h"
#include "ui/details/ActionButton.h"
#include "ui/overview/OverviewFooter.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

QRect toRect(const layout::PointRect& r) {
    return QRect(int(std::lround(r.x)), int(std::lround(r.y)), int(std::lround(r.width)),
                 int(std::lround(r.height)));
}

std::optional<layout::MoveDirection> arrow(int key) {
    switch (key) {
        case Qt::Key_Left:
            return layout::MoveDirection::left;
        case Qt::Key_Right:
            return layout::MoveDirection::right;
        case Qt::Key_Up:
            return layout::MoveDirection::up;
        case Qt::Key_Down:
            return layout::MoveDirection::down;
        default:
            return std::nullopt;
    }
}

layout::LayoutEditSession::Key sessionKey(layout::MoveDirection d) {
    switch (d) {
        case layout::MoveDirection::left:
            return layout::LayoutEditSession::Key::left;
        case layout::MoveDirection::right:
            return layout::LayoutEditSession::Key::right;
        case layout::MoveDirection::up:
            return layout::LayoutEditSession::Key::up;
        case layout::MoveDirection::down:
            return layout::LayoutEditSession::Key::down;
    }
    return layout::LayoutEditSession::Key::down;
}

}  // namespace

OverviewView::OverviewView(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("overview"));
    setAccessibleName(QStringLiteral("Overview"));
    footer_ = new OverviewFooter(theme_, this);
    connect(footer_, &OverviewFooter::editRequested, this, [this] {
        setEditing(true,
                   footer_->editButton().hasFocus() ? Qt::TabFocusReason : Qt::MouseFocusReason);
    });
    connect(footer_, &OverviewFooter::doneRequested, this, [this] { setEditing(false); });
    connect(footer_, &OverviewFooter::resetRequested, this, [this] {
        if (session_) session_->resetLayout();
    });
    connect(footer_, &OverviewFooter::showRequested, this, [this](const std::string& id) {
        if (!session_) return;
        session_->setHidden(id, false);
        focusCard(id, Qt::OtherFocusReason);
    });
    auto* toggle = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_E), this);
    toggle->setContext(Qt::WindowShortcut);
    connect(toggle, &QShortcut::activated, this, [this] {
        if (isVisible()) setEditing(!isEditing(), Qt::ShortcutFocusReason);
    });
    rebuildCards();
    connect(&model_, &PanelModel::sampleChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::weatherChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::walletChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::layoutChanged, this, &OverviewView::rebuildCards);
}

OverviewView::~OverviewView() = default;

void OverviewView::rebuildCards() {
    if (session_) {
        // The store changed (this session's commit, a reset, or the settings' hidden list).
        if (!session_->isDragging() && !session_->isResizing()) session_->reload();
        sync(session_->layout());
        updateFooter();
        return;
    }
    sync(model_.layout().layout());
}

void OverviewView::sync(const layout::OverviewLayout& layout) {
    const auto& registry = model_.layout().registry();
    const auto available = layout::everythingAvailable();
    frames_ = layout::LayoutOps::frames(layout, available, registry);
    const auto order = layout::LayoutOps::visibleOrder(layout, available, registry);

    // Cards that left the grid go; the others are kept, so a move can glide and the focus stays.
    for (auto it = cards_.begin(); it != cards_.end();) {
        if (frames_.count(it->first)) {
            ++it;
            continue;
        }
        moves_.erase(it->first);
        // Later: the card may be the one whose key or click asked for this.
        it->second->hide();
        it->second->deleteLater();
        it = cards_.erase(it);
    }
    const bool animate = session_ && !model_.reduceMotion();
    gridHeight_ = 0;
    QWidget* previous = nullptr;
    // Reading order is the focus order, so Tab walks the cards as the eye does.
    for (const auto& id : order) {
        const auto frame = frames_.find(id);
        if (frame == frames_.end()) continue;
        const auto* entry = layout.card(id);
        CardView*& card = cards_[id];
        const bool fresh = card == nullptr;
        if (fresh) {
            card = new CardView(id, entry->size, model_, theme_, this);
            card->installEventFilter(this);
            connect(card, &CardView::activated, this, &OverviewView::cardActivated);
            card->setGeometry(toRect(frame->second));
        }
        card->setSize(entry->size);
        card->setEditing(session_ != nullptr);
        if (id != lifted_) place(card, frame->second, animate && !fresh);
        if (previous) setTabOrder(previous, card);
        previous = card;
        card->show();
        gridHeight_ = std::max(gridHeight_, int(std::lround(frame->second.maxY())));
    }
    for (QWidget* w : footer_->focusChain()) {
        if (previous) setTabOrder(previous, w);
        previous = w;
    }
    if (!lifted_.empty())
        if (CardView* card = this->card(lifted_)) card->raise();
    update();
    layOutFooter();
}

void OverviewView::layOutFooter() {
    // Out of edit mode the footer is one small button, kept close so the default Overview
    // still fits the panel without scrolling.
    const int top = gridHeight_ + (session_ ? Metrics::sectionGap : Metrics::gap);
    footer_->move(0, top);
    footer_->show();
    const int height = top + footer_->height();
    if (height == this->height() && minimumHeight() == height) return;
    setFixedHeight(height);
    updateGeometry();
    emit heightChanged();
}

void OverviewView::place(CardView* card, const layout::PointRect& frame, bool animate) {
    const QRect target = toRect(frame);
    auto& move = moves_[card->cardId()];
    if (move && move->endValue().toRect() == target) return;
    if (move) move->stop();
    if (!animate || card->geometry() == target) {
        card->setGeometry(target);
        return;
    }
    move = new QPropertyAnimation(card, "geometry", card);
    move->setDuration(Metrics::moveMs);
    move->setEasingCurve(QEasingCurve::OutCubic);
    move->setStartValue(card->geometry());
    move->setEndValue(target);
    move->start(QAbstractAnimation::DeleteWhenStopped);
}

int OverviewView::refreshCards() {
    int repainted = 0;
    for (auto& [id, card] : cards_) repainted += card->refresh() ? 1 : 0;
    lastRepainted_ = repainted;
    return repainted;
}

void OverviewView::highlight(const std::optional<std::string>& cardId) {
    for (auto& [id, card] : cards_) card->setHighlighted(cardId && *cardId == id);
}

CardView* OverviewView::card(const std::string& id) const {
    const auto it = cards_.find(id);
    return it == cards_.end() ? nullptr : it->second;
}

QSize OverviewView::sizeHint() const { return QSize(Metrics::gridWidth, height()); }

void OverviewView::setEditing(bool editing, Qt::FocusReason reason) {
    if (editing == isEditing()) return;
    if (editing) {
        session_ = std::make_unique<layout::LayoutEditSession>(model_.layout(),
                                                               layout::everythingAvailable());
    } else {
        session_.reset();
        lifted_.clear();
        pressedHide_.clear();
    }
    rebuildCards();
    updateFooter();
    if (editing && isKeyboardFocus(reason) && !cards_.empty()) {
        const auto order = layout::LayoutOps::visibleOrder(
            session_->layout(), layout::everythingAvailable(), model_.layout().registry());
        if (!order.empty()) focusCard(order.front(), reason);
    } else if (!editing && footer_->isAncestorOf(focusWidget())) {
        footer_->editButton().setFocus(reason);
    }
    emit editingChanged(editing);
}

void OverviewView::updateFooter() {
    const auto& store = model_.layout();
    const auto layout = session_ ? session_->layout() : store.layout();
    footer_->setEditing(session_ != nullptr, panel::hiddenTray(layout, store.registry()),
                        store.canReset());
    layOutFooter();
    QWidget* previous = nullptr;
    for (const auto& id :
         layout::LayoutOps::visibleOrder(layout, layout::everythingAvailable(), store.registry()))
        if (CardView* c = card(id)) previous = c;
    for (QWidget* w : footer_->focusChain()) {
        if (previous) setTabOrder(previous, w);
        previous = w;
    }
    for (auto& [id, c] : cards_) {
        const auto* kind = store.registry().kind(id);
        c->setAccessibleDescription(
            session_ && kind ? QString::fromStdString(panel::editDescription(*kind, c->cardSize()))
                             : QString::fromStdString(c->content().accessibleValue));
    }
}

void OverviewView::paintEvent(QPaintEvent*) {
    // Where the carried card will land: a dashed slot under it.
    const auto slot = frames_.find(lifted_);
    if (lifted_.empty() || slot == frames_.end()) return;
    const Palette& pal = theme_.theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(pal.textTertiary, 1.2, Qt::DashLine));
    p.setBrush(pal.chip);
    p.drawRoundedRect(QRectF(toRect(slot->second)).adjusted(1.5, 1.5, -1.5, -1.5),
                      Metrics::cardRadius, Metrics::cardRadius);
}

void OverviewView::focusCard(const std::string& id, Qt::FocusReason reason) {
    if (CardView* c = card(id)) c->setFocus(reason);
}

bool OverviewView::eventFilter(QObject* watched, QEvent* event) {
    auto* card = qobject_cast<CardView*>(watched);
    if (!card) return QWidget::eventFilter(watched, event);
    if (session_) {
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseMove:
            case QEvent::MouseButtonRelease:
                return editPointer(card, event);
            case QEvent::MouseButtonDblClick:
                return true;
            case QEvent::FocusIn:
                session_->select(card->cardId());
                return false;
            case QEvent::KeyPress:
                return editKey(card, static_cast<QKeyEvent*>(event));
            default:
                return false;
        }
    }
    if (event->type() == QEvent::KeyPress) return browseKey(card, static_cast<QKeyEvent*>(event));
    return false;
}

bool OverviewView::browseKey(CardView* card, QKeyEvent* key) {
    // Plain arrows move the focus; Alt+arrows belong to editing the layout.
    if (key->modifiers() & ~Qt::KeypadModifier) return false;
    const auto direction = arrow(key->key());
    if (!direction) return false;
    const auto next = panel::focusNeighbour(card->cardId(), *direction, frames_);
    if (next) focusCard(*next, Qt::OtherFocusReason);
    return true;
}

bool OverviewView::editKey(CardView* card, QKeyEvent* key) {
    const std::string id = card->cardId();
    const auto mods = key->modifiers() & ~Qt::KeypadModifier;
    const auto direction = arrow(key->key());
    const auto& registry = model_.layout().registry();
    if (key->key() == Qt::Key_Escape) {
        // Escape first drops a gesture under way, then leaves edit mode.
        if (!session_->isDragging() && !session_->isResizing()) {
            setEditing(false, Qt::OtherFocusReason);
            return true;
        }
        session_->keyPressed(layout::LayoutEditSession::Key::escape, false);
        lifted_.clear();
        card->setLifted(false);
        sync(session_->layout());
        return true;
    }
    if (direction && mods == Qt::AltModifier) {
        session_->select(id);
        session_->keyPressed(sessionKey(*direction), true);
        return true;
    }
    if (direction && mods == Qt::NoModifier) return browseKey(card, key);
    if (key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace) {
        // The focus moves on to the card that takes this one's place in reading order.
        auto order = layout::LayoutOps::visibleOrder(session_->layout(),
                                                     layout::everythingAvailable(), registry);
        const auto at = std::find(order.begin(), order.end(), id);
        std::optional<std::string> next;
        if (at != order.end() && at + 1 != order.end())
            next = *(at + 1);
        else if (at != order.begin() && at != order.end())
            next = *(at - 1);
        session_->setHidden(id, true);
        if (next)
            focusCard(*next, Qt::OtherFocusReason);
        else
            footer_->doneButton().setFocus(Qt::OtherFocusReason);
        return true;
    }
    const bool grow = key->key() == Qt::Key_Plus || key->key() == Qt::Key_Equal;
    const bool shrink = key->key() == Qt::Key_Minus;
    if (grow || shrink) {
        if (const auto* kind = registry.kind(id))
            if (const auto size = panel::steppedSize(*kind, card->cardSize(), grow ? 1 : -1))
                session_->setSize(id, *size);
        return true;
    }
    // Enter and Space do not open a card while it is being arranged.
    return key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter ||
           key->key() == Qt::Key_Space;
}

bool OverviewView::editPointer(CardView* card, QEvent* event) {
    auto* mouse = static_cast<QMouseEvent*>(event);
    const QPointF local = mouse->position();
    const QPointF at = card->mapTo(this, local.toPoint()) + (local - local.toPoint());
    const std::string id = card->cardId();
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            if (mouse->button() != Qt::LeftButton) return true;
            card->setFocus(Qt::MouseFocusReason);
            if (card->hideButtonRect().contains(local)) {
                pressedHide_ = id;
                return true;
            }
            session_->pointerPressed(at.x(), at.y());
            grabOffset_ = local;
            return true;
        case QEvent::MouseMove: {
            if (!(mouse->buttons() & Qt::LeftButton) || !pressedHide_.empty()) return true;
            session_->pointerMoved(at.x(), at.y());
            if (session_->isDragging()) {
                if (lifted_ != id) {
                    lifted_ = id;
                    if (auto& move = moves_[id]) move->stop();
                    card->setLifted(true);
                    card->raise();
                }
                const QPointF topLeft = at - grabOffset_;
                card->move(
                    int(std::lround(std::clamp<qreal>(topLeft.x(), 0, width() - card->width()))),
                    int(std::lround(std::max<qreal>(topLeft.y(), 0))));
            }
            if (session_->isDragging() || session_->isResizing()) sync(session_->layout());
            return true;
        }
        case QEvent::MouseButtonRelease: {
            if (mouse->button() != Qt::LeftButton) return true;
            if (!pressedHide_.empty()) {
                const bool hide = pressedHide_ == id && card->hideButtonRect().contains(local);
                pressedHide_.clear();
                if (hide) session_->setHidden(id, true);
                return true;
            }
            lifted_.clear();
            card->setLifted(false);
            session_->pointerReleased(at.x(), at.y());
            // Whether it committed or went back where it was, the cards settle on the layout.
            sync(session_->layout());
            updateFooter();
            return true;
        }
        default:
            return false;
    }
}

}  // namespace trotlet::ui
