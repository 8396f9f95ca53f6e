#pragma once

#include <QPointer>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "layout/LayoutEditSession.h"
#include "layout/LayoutOps.h"

class QPropertyAnimation;

namespace trotlet::ui {

class CardView;
class OverviewFooter;
class PanelModel;
class ThemeStore;

// The Overview: the resolved layout packed on the six-column grid, one card per visible kind,
// and a footer. Arrow keys move the focus to the neighbouring card; Enter opens it.
//
// Edit mode (the footer's button, Ctrl+E; Escape or Done leave it) feeds pointer and key events
// to a LayoutEditSession: a card dragged by the pointer floats under it while the others make
// room, its corner grip resizes it, its minus hides it; Alt+arrows move the focused card, plus
// and minus resize it, Delete hides it. Every change is committed through the layout store and
// the cards glide to their new places (not under reduce motion). The footer holds the tray of
// hidden cards and "Reset layout" when a reset is offered.
class OverviewView : public QWidget {
    Q_OBJECT
public:
    OverviewView(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);
    ~OverviewView() override;

    // Brings the cards in line with the layout store (after an edit or a reset), or with the
    // edit session's preview while a gesture lasts.
    void rebuildCards();
    // Asks every card to read the model again; returns how many repainted.
    int refreshCards();
    int lastRefreshRepainted() const { return lastRepainted_; }
    void highlight(const std::optional<std::string>& cardId);

    CardView* card(const std::string& id) const;
    const std::map<std::string, CardView*>& cards() const { return cards_; }
    const layout::Frames& frames() const { return frames_; }
    OverviewFooter& footer() const { return *footer_; }
    QSize sizeHint() const override;

    bool isEditing() const { return session_ != nullptr; }
    void setEditing(bool editing, Qt::FocusReason reason = Qt::OtherFocusReason);
    layout::LayoutEditSession* editSession() const { return session_.get(); }

signals:
    void cardActivated(const std::string& id);
    void editingChanged(bool editing);
    // The Overview's height changed (cards moved, the footer grew): its holder follows.
    void heightChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void sync(const layout::OverviewLayout& layout);
    void place(CardView* card, const layout::PointRect& frame, bool animate);
    bool browseKey(CardView* card, QKeyEvent* key);
    bool editKey(CardView* card, QKeyEvent* key);
    bool editPointer(CardView* card, QEvent* event);
    void focusCard(const std::string& id, Qt::FocusReason reason);
    void updateFooter();
    void layOutFooter();

    PanelModel& model_;
    const ThemeStore& theme_;
    std::map<std::string, CardView*> cards_;
    std::map<std::string, QPointer<QPropertyAnimation>> moves_;
    layout::Frames frames_;
    OverviewFooter* footer_ = nullptr;
    int gridHeight_ = 0;
    int lastRepainted_ = 0;

    std::unique_ptr<layout::LayoutEditSession> session_;
    std::string lifted_;       // the card the pointer carries
    QPointF grabOffset_;       // where the pointer holds it
    std::string pressedHide_;  // a press on a card's minus, hidden on release
};

}  // namespace trotlet::ui
