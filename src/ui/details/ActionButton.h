#pragma once

#include <QWidget>

#include <string>

namespace trotlet::ui {

class ThemeStore;

// A small painted push button: a label, optionally led by a symbol. `primary` fills it with the
// accent, `quiet` draws only its label (a link), the default sits on the chip colour. Enter,
// Space or a click press it; the focus ring shows for keyboard focus only.
class ActionButton : public QWidget {
    Q_OBJECT
public:
    // `back`: a screen's way back, its symbol in the accent and its label as the screen's title.
    enum class Style { chip, primary, quiet, back };

    ActionButton(const QString& text, const ThemeStore& theme, QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return text_; }
    void setSymbol(const std::string& symbol);
    void setStyle(Style style);
    // A shorter button for a line of its own under other content.
    void setCompact(bool compact);
    QSize sizeHint() const override;

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString text_;
    std::string symbol_;
    const ThemeStore& theme_;
    Style style_ = Style::chip;
    bool compact_ = false;
    bool hovered_ = false;
    bool pressed_ = false;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
