#pragma once

#include <QString>

#include "ui/controls/Control.h"

namespace trotlet::ui {

// The global shortcut as key caps ("Super" "Alt" "P"). A click, Space or Enter starts recording:
// the next combination pressed is judged (it needs Ctrl, Alt or Super, and a key the shortcut
// table can name) and, when accepted, reported in the stored encoding. Escape, or leaving the
// control, stops recording without a change.
class ShortcutRecorder : public Control {
    Q_OBJECT
public:
    explicit ShortcutRecorder(const ThemeStore& theme, QWidget* parent = nullptr);

    // The shortcut in words, "Super+Alt+P", as the caps show it.
    void setShortcutText(const QString& text);
    QString shortcutText() const { return text_; }
    bool isRecording() const { return recording_; }
    void startRecording();
    void stopRecording();

    // Qt's key and modifiers in the stored encoding: a Carbon key code (none for a key without
    // one) and Carbon modifier flags (Super 256, Shift 512, Alt 2048, Ctrl 4096).
    static std::optional<int> carbonKeyCode(int qtKey);
    static int carbonModifiers(Qt::KeyboardModifiers modifiers);

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    QString accessibleValue() const override;
    void activate() override { startRecording(); }

signals:
    void recorded(int keyCode, int modifiers);
    void recordingChanged(bool recording);
    // Why the combination pressed was refused; empty once recording ends or succeeds.
    void problem(const QString& message);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void record(QKeyEvent* event);

    QString text_;
    bool recording_ = false;
    int heldModifiers_ = 0;
};

}  // namespace trotlet::ui
