#pragma once

#include <QWidget>

#include <string>
#include <vector>

#include "panel/OverviewEditing.h"

namespace trotlet::ui {

class ActionButton;
class ThemeStore;
class TrayTile;

// Under the Overview's grid. Normally one quiet "Edit Overview" button; in edit mode the tray of
// hidden cards (each tile adds its card back), a hint, "Reset layout" when a reset is offered,
// and "Done".
class OverviewFooter : public QWidget {
    Q_OBJECT
public:
    explicit OverviewFooter(const ThemeStore& theme, QWidget* parent = nullptr);

    void setEditing(bool editing, const std::vector<panel::TrayEntry>& tray, bool canReset);
    bool editing() const { return editing_; }
    ActionButton& editButton() const { return *edit_; }
    ActionButton& doneButton() const { return *done_; }
    ActionButton& resetButton() const { return *reset_; }
    const std::vector<TrayTile*>& tiles() const { return tiles_; }
    // The widgets the keyboard reaches, in order.
    std::vector<QWidget*> focusChain() const;

signals:
    void editRequested();
    void doneRequested();
    void resetRequested();
    void showRequested(const std::string& id);

protected:
    void paintEvent(QPaintEvent* event) override;
    // Escape on the tray or the buttons leaves edit mode, as it does on a card.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void arrange();
    int trayTop() const;

    const ThemeStore& theme_;
    bool editing_ = false;
    ActionButton* edit_ = nullptr;
    ActionButton* done_ = nullptr;
    ActionButton* reset_ = nullptr;
    std::vector<panel::TrayEntry> tray_;
    std::vector<TrayTile*> tiles_;
};

// One hidden card in the tray: its symbol, title and line, with a plus. Click, Enter or Space
// add it back.
class TrayTile : public QWidget {
    Q_OBJECT
public:
    TrayTile(const panel::TrayEntry& entry, const ThemeStore& theme, QWidget* parent = nullptr);
    const panel::TrayEntry& entry() const { return entry_; }

signals:
    void chosen(const std::string& id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    panel::TrayEntry entry_;
    const ThemeStore& theme_;
    bool hovered_ = false;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
