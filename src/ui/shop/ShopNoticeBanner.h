#pragma once

#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class ShopButton;
class ThemeStore;

// A notice at the top of the Shop: what happened to the shop file or the clock, and a close
// button ("shop.notice.dismiss") that dismisses it for good.
class ShopNoticeBanner : public QWidget {
    Q_OBJECT
public:
    ShopNoticeBanner(const shop::ShopBanner& banner, const ThemeStore& theme,
                     QWidget* parent = nullptr);
    const shop::ShopBanner& banner() const { return banner_; }
    ShopButton& dismissButton() const { return *dismiss_; }

signals:
    void dismissed(trotlet::shop::ShopNotice::Kind kind);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRectF textBox() const;
    int heightFor(int width) const;

    shop::ShopBanner banner_;
    const ThemeStore& theme_;
    ShopButton* dismiss_ = nullptr;
};

}  // namespace trotlet::ui
