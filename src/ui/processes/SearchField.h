#pragma once

#include <QWidget>

class QLineEdit;

namespace trotlet::ui {

class ThemeStore;

// A rounded search field: a magnifier, the text and a clear button once there is text. Escape
// clears the text first and only then goes on to the panel; Down and Enter hand the keyboard to
// what the field searches (`leaveDownward`).
class SearchField : public QWidget {
    Q_OBJECT
public:
    explicit SearchField(const ThemeStore& theme, QWidget* parent = nullptr);

    QLineEdit& edit() const { return *edit_; }
    QString text() const;
    void setText(const QString& text);
    void setPlaceholder(const QString& text);
    // A quiet note at the end of the field ("17 of 312").
    void setNote(const QString& note);

    QSize sizeHint() const override;

signals:
    void textChanged(const QString& text);
    void leaveDownward();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void applyTheme();
    QRectF clearButtonRect() const;
    void placeEdit();

    const ThemeStore& theme_;
    QLineEdit* edit_ = nullptr;
    QString note_;
};

}  // namespace trotlet::ui
