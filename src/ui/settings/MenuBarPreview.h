#pragma once

#include <QTimer>
#include <QWidget>

#include <utility>
#include <vector>

#include "mascot/qt/MascotRenderer.h"

namespace trotlet::settings {
class SettingsGroup;
}

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// The tray item as a desktop's top bar shows it: the mascot running at its live pace (or the
// still paw when it is hidden), the reading and the weather on the chosen side, beside a clock
// and a couple of neighbours. It follows the settings and the samples as they change.
class MenuBarPreview : public QWidget {
    Q_OBJECT
public:
    MenuBarPreview(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);
    ~MenuBarPreview() override;

    QSize sizeHint() const override;
    // The text the preview shows beside the mascot.
    QString text() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void reschedule();
    void refresh();

    PanelModel& model_;
    const ThemeStore& theme_;
    mascot::MascotRenderer renderer_;
    QTimer timer_;
    int frame_ = 0;
    std::vector<std::pair<settings::SettingsGroup*, int>> observers_;
};

}  // namespace trotlet::ui
