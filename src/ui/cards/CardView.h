#pragma once

#include <QWidget>

#include "layout/CardSize.h"
#include "panel/CardContent.h"

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// One Overview card: paints what `describeCard` says for its kind and size. It repaints only
// when its content or its chart's data changed. Enter, Space or a click opens its detail.
class CardView : public QWidget {
    Q_OBJECT
public:
    CardView(const std::string& id, layout::CardSize size, const PanelModel& model,
             const ThemeStore& theme, QWidget* parent = nullptr);

    const std::string& cardId() const { return id_; }
    layout::CardSize cardSize() const { return size_; }
    const panel::CardContent& content() const { return content_; }
    void setHighlighted(bool highlighted);

    // Reads the model again; repaints only on a change. Returns whether it repainted.
    bool refresh();
    int repaintCount() const { return repaints_; }
    // Edit mode: the card shows its hide button and resize grip, and a click or Enter no
    // longer opens it. A lifted card (being dragged) floats above the others.
    void setEditing(bool editing);
    // A new size (edit mode resized it): the content is described again for it.
    void setSize(layout::CardSize size);
    bool editing() const { return editing_; }
    void setLifted(bool lifted);
    QRectF hideButtonRect() const;
    QRectF gripRect() const;

    // Whether it has the focus and got it from the keyboard (its ring shows).
    bool showsFocusRing() const { return hasFocus() && keyboardFocus_; }

signals:
    void activated(const std::string& id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void paintReadings(QPainter& p, const struct CardPaintContext& ctx);
    std::size_t chartVersion() const;

    std::string id_;
    layout::CardSize size_;
    const PanelModel& model_;
    const ThemeStore& theme_;
    panel::CardContent content_;
    std::size_t chartVersion_ = 0;
    bool hovered_ = false;
    bool highlighted_ = false;
    int repaints_ = 0;
    bool keyboardFocus_ = false;
    bool editing_ = false;
    bool lifted_ = false;
};

}  // namespace trotlet::ui
