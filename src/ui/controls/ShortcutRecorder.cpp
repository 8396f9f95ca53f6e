#include "ui/controls/ShortcutRecorder.h"

#include <QKeyEvent>
#include <QPainter>

#include <cmath>

#include "panel/SettingsScreen.h"
#include "platform/freedesktop/GlobalShortcutKeys.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr qreal capPadding = 7;
constexpr qreal capGap = 4;

// X11 keysyms for Qt's keys that are not plain Latin-1 characters.
std::optional<unsigned long> keysymFor(int qtKey) {
    if (qtKey >= 0x20 && qtKey <= 0x7e) return static_cast<unsigned long>(qtKey);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return 0xffbeul + static_cast<unsigned long>(qtKey - Qt::Key_F1);
    switch (qtKey) {
        case Qt::Key_Return:
            return 0xff0d;
        case Qt::Key_Tab:
            return 0xff09;
        case Qt::Key_Backspace:
            return 0xff08;
        case Qt::Key_Home:
            return 0xff50;
        case Qt::Key_End:
            return 0xff57;
        case Qt::Key_Left:
            return 0xff51;
        case Qt::Key_Up:
            return 0xff52;
        case Qt::Key_Right:
            return 0xff53;
        case Qt::Key_Down:
            return 0xff54;
        case Qt::Key_PageUp:
            return 0xff55;
        case Qt::Key_PageDown:
            return 0xff56;
        case Qt::Key_Delete:
            return 0xffff;
        default:
            return std::nullopt;
    }
}

bool isModifierKey(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_Super_L || key == Qt::Key_Super_R ||
           key == Qt::Key_AltGr;
}

}  // namespace

ShortcutRecorder::ShortcutRecorder(const ThemeStore& theme, QWidget* parent)
    : Control(theme, parent) {
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Shortcut"));
}

std::optional<int> ShortcutRecorder::carbonKeyCode(int qtKey) {
    const auto keysym = keysymFor(qtKey);
    if (!keysym) return std::nullopt;
    return platform::GlobalShortcutKeys::carbonKeyCode(*keysym);
}

int ShortcutRecorder::carbonModifiers(Qt::KeyboardModifiers modifiers) {
    using K = platform::GlobalShortcutKeys;
    int carbon = 0;
    if (modifiers & Qt::MetaModifier) carbon |= K::command;
    if (modifiers & Qt::ShiftModifier) carbon |= K::shift;
    if (modifiers & Qt::AltModifier) carbon |= K::option;
    if (modifiers & Qt::ControlModifier) carbon |= K::control;
    return carbon;
}

void ShortcutRecorder::setShortcutText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    updateGeometry();
    update();
    announceChange();
}

QString ShortcutRecorder::accessibleValue() const {
    if (recording_) return QStringLiteral("Recording. Press the keys, or Escape to cancel");
    return text_.isEmpty() ? QStringLiteral("Not set") : text_;
}

void ShortcutRecorder::startRecording() {
    if (recording_ || !isEnabled()) return;
    recording_ = true;
    heldModifiers_ = 0;
    grabKeyboard();
    update();
    announceChange();
    emit recordingChanged(true);
}

void ShortcutRecorder::stopRecording() {
    if (!recording_) return;
    recording_ = false;
    releaseKeyboard();
    update();
    announceChange();
    emit problem({});
    emit recordingChanged(false);
}

QSize ShortcutRecorder::sizeHint() const {
    const QFontMetricsF fm(theme().type().label);
    qreal w = 0;
    if (recording_) {
        w = fm.horizontalAdvance(QString::fromStdString(panel::recordingPrompt(0))) +
            2 * capPadding;
    } else {
        const QStringList parts = text_.isEmpty() ? QStringList{QStringLiteral("Not set")}
                                                  : text_.split(QLatin1Char('+'));
        for (const QString& part : parts) w += fm.horizontalAdvance(part) + 2 * capPadding + capGap;
    }
    return QSize(int(std::ceil(std::max<qreal>(w, 132))) + 8, Metrics::controlHeight + 4);
}

bool ShortcutRecorder::event(QEvent* event) {
    // While recording every key belongs to the recorder: Tab must not move the focus, and the
    // panel's own shortcuts must not fire.
    if (recording_ && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    if (recording_ && event->type() == QEvent::KeyPress) {
        keyPressEvent(static_cast<QKeyEvent*>(event));
        return true;
    }
    return Control::event(event);
}

void ShortcutRecorder::record(QKeyEvent* event) {
    const int modifiers = carbonModifiers(event->modifiers());
    const auto key = carbonKeyCode(event->key());
    const panel::ShortcutVerdict verdict = panel::judgeShortcut(key.has_value(), modifiers);
    if (!verdict.accepted) {
        emit problem(QString::fromStdString(verdict.message));
        return;
    }
    stopRecording();
    emit recorded(*key, modifiers);
}

void ShortcutRecorder::keyPressEvent(QKeyEvent* event) {
    if (!recording_) {
        if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
            event->key() == Qt::Key_Enter) {
            startRecording();
            return;
        }
        Control::keyPressEvent(event);
        return;
    }
    event->accept();
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        stopRecording();
        return;
    }
    if (isModifierKey(event->key())) {
        heldModifiers_ = carbonModifiers(event->modifiers());
        update();
        return;
    }
    record(event);
}

void ShortcutRecorder::keyReleaseEvent(QKeyEvent* event) {
    if (!recording_) return Control::keyReleaseEvent(event);
    // A released modifier may still be listed in its own release event.
    int released = 0;
    switch (event->key()) {
        case Qt::Key_Shift:
            released = platform::GlobalShortcutKeys::shift;
            break;
        case Qt::Key_Control:
            released = platform::GlobalShortcutKeys::control;
            break;
        case Qt::Key_Alt:
            released = platform::GlobalShortcutKeys::option;
            break;
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
            released = platform::GlobalShortcutKeys::command;
            break;
        default:
            break;
    }
    heldModifiers_ = carbonModifiers(event->modifiers()) & ~released;
    update();
}

void ShortcutRecorder::focusOutEvent(QFocusEvent* event) {
    stopRecording();
    Control::focusOutEvent(event);
}

void ShortcutRecorder::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (recording_)
        stopRecording();
    else
        startRecording();
}

void ShortcutRecorder::paintEvent(QPaintEvent*) {
    const Theme& t = theme();
    const Palette& pal = t.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) p.setOpacity(0.45);
    const QRectF face = QRectF(rect()).adjusted(2, 2, -2, -2);
    const qreal r = 8;
    p.setFont(t.type().label);
    const QFontMetricsF fm(t.type().label);
    if (recording_) {
        p.setPen(QPen(pal.accent, 1.5));
        p.setBrush(pal.surface);
        p.drawRoundedRect(face.adjusted(0.75, 0.75, -0.75, -0.75), r, r);
        p.setPen(pal.accent);
        p.drawText(face, Qt::AlignCenter,
                   QString::fromStdString(panel::recordingPrompt(heldModifiers_)));
        return;
    }
    // One cap per key, right-aligned like the other controls of a row.
    const QStringList parts =
        text_.isEmpty() ? QStringList{QStringLiteral("Not set")} : text_.split(QLatin1Char('+'));
    qreal total = -capGap;
    for (const QString& part : parts) total += fm.horizontalAdvance(part) + 2 * capPadding + capGap;
    qreal x = face.right() - total;
    for (const QString& part : parts) {
        const qreal w = fm.horizontalAdvance(part) + 2 * capPadding;
        const QRectF cap(x, face.top() + 1, w, face.height() - 2);
        p.setPen(QPen(pal.border, 1));
        p.setBrush(hovered() ? pal.surfaceHover : pal.surface);
        p.drawRoundedRect(cap.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
        // A cap's lower lip.
        p.setPen(QPen(pal.border, 1.5));
        p.drawLine(QPointF(cap.left() + 4, cap.bottom() - 0.75),
                   QPointF(cap.right() - 4, cap.bottom() - 0.75));
        p.setPen(text_.isEmpty() ? pal.textSecondary : pal.text);
        p.drawText(cap, Qt::AlignCenter, part);
        x += w + capGap;
    }
    paintFocusRing(p, QRectF(face.right() - total, face.top() + 1, total, face.height() - 2), 6);
}

}  // namespace trotlet::ui
