#pragma once

#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class ThemeStore;

// One achievement: its symbol, title, goal, progress with its unit, reward and, once
// reached, the day it was unlocked. Focusable, so the keyboard and screen readers can walk
// the list.
class AchievementTileView : public QWidget {
    Q_OBJECT
public:
    AchievementTileView(const ThemeStore& theme, QWidget* parent = nullptr);
    void setContent(const shop::AchievementTile& content);
    const shop::AchievementTile& content() const { return content_; }
    static int tileHeight();

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QString unlockedText() const;

    const ThemeStore& theme_;
    shop::AchievementTile content_;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
