#include "ui/overview/OverviewView.h"

#include <QKeyEvent>

#include <cmath>

#include "layout/LayoutStore.h"
#include "panel/CardFocus.h"
#include "ui/cards/CardView.h"
#include "ui/panel/PanelModel.h"

namespace trotlet::ui {

OverviewView::OverviewView(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("overview"));
    setAccessibleName(QStringLiteral("Overview"));
    rebuildCards();
    connect(&model_, &PanelModel::sampleChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::weatherChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::walletChanged, this, [this] { refreshCards(); });
    connect(&model_, &PanelModel::layoutChanged, this, &OverviewView::rebuildCards);
}

void OverviewView::rebuildCards() {
    for (auto& [id, card] : cards_) delete card;
    cards_.clear();
    const auto& store = model_.layout();
    const auto layout = store.layout();
    frames_ = layout::LayoutOps::frames(layout, layout::everythingAvailable(), store.registry());
    height_ = 0;
    QWidget* previous = nullptr;
    // Reading order is the focus order, so Tab walks the cards as the eye does.
    for (const auto& id :
         layout::LayoutOps::visibleOrder(layout, layout::everythingAvailable(), store.registry())) {
        const auto frame = frames_.find(id);
        if (frame == frames_.end()) continue;
        const auto entry = std::find_if(layout.cards.begin(), layout.cards.end(),
                                        [&](const auto& c) { return c.id == id; });
        auto* card = new CardView(id, entry->size, model_, theme_, this);
        const auto& r = frame->second;
        card->setGeometry(int(std::lround(r.x)), int(std::lround(r.y)), int(std::lround(r.width)),
                          int(std::lround(r.height)));
        card->installEventFilter(this);
        connect(card, &CardView::activated, this, &OverviewView::cardActivated);
        if (previous) setTabOrder(previous, card);
        previous = card;
        card->show();
        cards_[id] = card;
        height_ = std::max(height_, int(std::lround(r.maxY())));
    }
    setFixedHeight(height_);
    updateGeometry();
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

QSize OverviewView::sizeHint() const { return QSize(352, height_); }

bool OverviewView::eventFilter(QObject* watched, QEvent* event) {
    auto* card = qobject_cast<CardView*>(watched);
    if (!card || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    // Plain arrows move the focus; Alt+arrows belong to editing the layout.
    if (key->modifiers() & ~Qt::KeypadModifier) return false;
    std::optional<layout::MoveDirection> direction;
    switch (key->key()) {
        case Qt::Key_Left:
            direction = layout::MoveDirection::left;
            break;
        case Qt::Key_Right:
            direction = layout::MoveDirection::right;
            break;
        case Qt::Key_Up:
            direction = layout::MoveDirection::up;
            break;
        case Qt::Key_Down:
            direction = layout::MoveDirection::down;
            break;
        default:
            return false;
    }
    const auto next = panel::focusNeighbour(card->cardId(), *direction, frames_);
    if (next)
        if (CardView* target = this->card(*next)) target->setFocus(Qt::OtherFocusReason);
    return true;
}

}  // namespace trotlet::ui
