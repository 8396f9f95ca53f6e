#pragma once

#include <QWidget>

namespace trotlet::ui {

class ThemeStore;

// A calm placeholder for a tab whose screen is still being built.
class ComingSoonView : public QWidget {
    Q_OBJECT
public:
    ComingSoonView(const QString& title, const QString& sentence, const ThemeStore& theme,
                   QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title_;
    QString sentence_;
    const ThemeStore& theme_;
};

}  // namespace trotlet::ui
