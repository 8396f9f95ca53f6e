#pragma once

#include <QWidget>

#include <cstdint>

namespace trotlet::ui {

class PillButton;
class ThemeStore;

// The question before a process is killed, over the list it belongs to: the list dims and a
// card names the process and says what forcing it costs. Cancel has the keyboard at first;
// Escape cancels.
class ForceQuitSheet : public QWidget {
    Q_OBJECT
public:
    ForceQuitSheet(const ThemeStore& theme, QWidget* parent);

    void ask(std::int32_t pid, const QString& name);
    std::int32_t pid() const { return pid_; }
    PillButton& cancelButton() const { return *cancel_; }
    PillButton& forceButton() const { return *force_; }

signals:
    void confirmed(std::int32_t pid);
    void cancelled(std::int32_t pid);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QRectF cardRect() const;
    void layoutButtons();

    const ThemeStore& theme_;
    PillButton* cancel_ = nullptr;
    PillButton* force_ = nullptr;
    std::int32_t pid_ = 0;
    QString title_;
    QString body_;
};

}  // namespace trotlet::ui
