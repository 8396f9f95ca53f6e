#pragma once

#include <QAbstractButton>

namespace trotlet::ui {

class ThemeStore;

// A rounded push button painted in the panel's palette: a plain one on the chip colour, a
// destructive one filled with the critical colour. Space and Enter press it; the focus ring
// shows for keyboard focus only.
class PillButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Kind { plain, destructive };

    PillButton(const QString& text, Kind kind, const ThemeStore& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Kind kind_;
    const ThemeStore& theme_;
    bool keyboardFocus_ = false;
    bool hovered_ = false;
};

}  // namespace trotlet::ui
