#pragma once

#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class MascotPreviews;
class ShopButton;
class ThemeStore;

// One mascot of the catalog: its moving preview, name, species, tagline, rarity and price, and
// what can be done with it now (Buy, Equip, Try on). Buy asks first, in the card itself.
class MascotCardView : public QWidget {
    Q_OBJECT
public:
    MascotCardView(MascotPreviews& previews, const ThemeStore& theme, QWidget* parent = nullptr);

    void setContent(const shop::CatalogCard& content);
    const shop::CatalogCard& content() const { return content_; }
    bool isConfirming() const { return confirming_; }
    void setConfirming(bool confirming);
    ShopButton& primaryButton() const { return *primary_; }
    ShopButton& secondaryButton() const { return *secondary_; }
    QRect previewRect() const;

signals:
    void buyRequested(const std::string& id);
    void equipRequested(const std::string& id);
    void tryOnRequested(const std::string& id);
    void tryOnStopped();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Layout {
        qreal tagline = 0, highlight = 0, meter = 0, question = 0, buttons = 0, height = 0;
    };
    Layout layout() const;
    void relayout();
    void primaryClicked();
    void secondaryClicked();
    qreal textWidth() const;

    MascotPreviews& previews_;
    const ThemeStore& theme_;
    shop::CatalogCard content_;
    bool confirming_ = false;
    ShopButton* primary_ = nullptr;
    ShopButton* secondary_ = nullptr;
};

}  // namespace trotlet::ui
