#pragma once

#include <QWidget>

#include "shop/ShopScreenContent.h"

namespace trotlet::ui {

class ShopButton;
class ThemeStore;

// The daily check-in: the streak, today's state with its words, the week's seven days, the
// Collect button and the streak saver. Right after a collect it carries a note of what
// happened, until the panel closes.
class CheckInCardView : public QWidget {
    Q_OBJECT
public:
    CheckInCardView(const ThemeStore& theme, QWidget* parent = nullptr);

    void setContent(const shop::CheckInContent& content);
    const shop::CheckInContent& content() const { return content_; }
    void setNote(const shop::CheckInNote& note);
    const shop::CheckInNote& note() const { return note_; }
    ShopButton& collectButton() const { return *collect_; }

signals:
    void collectRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Layout {
        qreal title = 0, detail = 0, note = 0, week = 0, button = 0, saver = 0, height = 0;
    };
    Layout layout() const;
    void relayout();
    qreal innerWidth() const;

    const ThemeStore& theme_;
    shop::CheckInContent content_;
    shop::CheckInNote note_;
    ShopButton* collect_ = nullptr;
};

}  // namespace trotlet::ui
