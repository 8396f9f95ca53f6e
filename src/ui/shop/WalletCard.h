#pragma once

#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class ShopButton;
class ThemeStore;

// The top of the Shop: the balance, today's earnings, the progress to the next Paw-time Fish
// and, unfolded, how Fish are earned. "History" opens the ledger.
class WalletCard : public QWidget {
    Q_OBJECT
public:
    WalletCard(const ThemeStore& theme, QWidget* parent = nullptr);

    void setContent(const shop::WalletContent& content);
    const shop::WalletContent& content() const { return content_; }
    bool isExplainerOpen() const { return open_; }
    void setExplainerOpen(bool open);
    ShopButton& historyButton() const { return *history_; }
    ShopButton& explainerButton() const { return *explain_; }

signals:
    void historyRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void relayout();
    int earnRowHeight(const shop::EarnWay& way) const;
    qreal textWidth() const;

    const ThemeStore& theme_;
    shop::WalletContent content_;
    bool open_ = false;
    ShopButton* history_ = nullptr;
    ShopButton* explain_ = nullptr;
};

}  // namespace trotlet::ui
