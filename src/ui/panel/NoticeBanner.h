#pragma once

#include <QAbstractButton>
#include <QWidget>

#include <vector>

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// One of the notice's buttons: an accent pill for the main action, plain text for the quiet
// one. Enter and Space press it.
class NoticeButton : public QAbstractButton {
    Q_OBJECT
public:
    NoticeButton(bool primary, const ThemeStore& theme, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    bool primary_;
    const ThemeStore& theme_;
    bool keyboardFocus_ = false;
};

// The quiet card under the panel's header for the model's notice (install for this user, a
// newer version, What's new): a symbol, a title, a sentence, the notes as bullets, a command
// to copy, and its buttons. Hidden when there is no notice; its height follows the text.
class NoticeBanner : public QWidget {
    Q_OBJECT
public:
    NoticeBanner(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

    NoticeButton& primaryButton() const { return *primary_; }
    NoticeButton& secondaryButton() const { return *secondary_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Layout {
        QRectF card, icon, title, detail, command;
        std::vector<QRectF> lines;
        QRectF buttons;
        int height = 0;
    };
    Layout layoutFor(int width) const;
    void refresh();
    void placeButtons();

    PanelModel& model_;
    const ThemeStore& theme_;
    NoticeButton* primary_ = nullptr;
    NoticeButton* secondary_ = nullptr;
};

}  // namespace trotlet::ui
