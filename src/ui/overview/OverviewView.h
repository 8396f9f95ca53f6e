#pragma once

#include <QWidget>

#include <map>
#include <optional>
#include <string>

#include "layout/LayoutOps.h"

namespace trotlet::ui {

class CardView;
class PanelModel;
class ThemeStore;

// The Overview: the resolved layout packed on the six-column grid, one card per visible kind.
// Arrow keys move the focus to the neighbouring card; Enter opens it.
class OverviewView : public QWidget {
    Q_OBJECT
public:
    OverviewView(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);

    // Rebuilds the cards from the layout store (after an edit or a reset).
    void rebuildCards();
    // Asks every card to read the model again; returns how many repainted.
    int refreshCards();
    int lastRefreshRepainted() const { return lastRepainted_; }
    void highlight(const std::optional<std::string>& cardId);

    CardView* card(const std::string& id) const;
    const std::map<std::string, CardView*>& cards() const { return cards_; }
    QSize sizeHint() const override;

signals:
    void cardActivated(const std::string& id);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PanelModel& model_;
    const ThemeStore& theme_;
    std::map<std::string, CardView*> cards_;
    layout::Frames frames_;
    int height_ = 0;
    int lastRepainted_ = 0;
};

}  // namespace trotlet::ui
