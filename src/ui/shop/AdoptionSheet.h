#pragma once

#include <QTimer>
#include <QWidget>

#include <string>

namespace trotlet::ui {

class MascotPreviews;
class ShopButton;
class ThemeStore;

// "Welcome home": shown over the Shop after a mascot was bought or earned, with the newcomer
// celebrating, and the choice to put it in the menu bar now or later.
class AdoptionSheet : public QWidget {
    Q_OBJECT
public:
    AdoptionSheet(MascotPreviews& previews, const ThemeStore& theme, QWidget* parent);

    void present(const std::string& mascotId, bool earned, bool equipped);
    const std::string& mascotId() const { return id_; }
    ShopButton& equipButton() const { return *equip_; }
    ShopButton& laterButton() const { return *later_; }

signals:
    void equipRequested(const std::string& id);
    void closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QRectF cardRect() const;
    QRectF previewRect() const;
    void placeButtons();
    void close();

    MascotPreviews& previews_;
    const ThemeStore& theme_;
    std::string id_;
    QString title_;
    QString body_;
    ShopButton* equip_ = nullptr;
    ShopButton* later_ = nullptr;
    QTimer frames_;
    int frame_ = 0;
};

}  // namespace trotlet::ui
