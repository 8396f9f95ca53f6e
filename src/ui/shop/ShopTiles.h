#pragma once

#include <QAbstractButton>
#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class ShopButton;
class ThemeStore;

// The Golden Fish's half of the row under the check-in: today's catches as three fish, what
// comes next, and, while one swims, a Catch button for the keyboard.
class GoldenFishTile : public QWidget {
    Q_OBJECT
public:
    GoldenFishTile(const ThemeStore& theme, QWidget* parent = nullptr);
    void setContent(const shop::GoldenFishTileContent& content);
    const shop::GoldenFishTileContent& content() const { return content_; }
    ShopButton& catchButton() const { return *catch_; }

signals:
    void catchRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const ThemeStore& theme_;
    shop::GoldenFishTileContent content_;
    ShopButton* catch_ = nullptr;
};

// The achievements' half: how many are unlocked and what they paid; opens their page.
class AchievementsTile : public QAbstractButton {
    Q_OBJECT
public:
    AchievementsTile(const ThemeStore& theme, QWidget* parent = nullptr);
    void setSummary(const shop::AchievementsSummary& summary);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    const ThemeStore& theme_;
    shop::AchievementsSummary summary_;
    bool hovered_ = false;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
