#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>
#include <utility>
#include <vector>

#include "mascot/qt/MascotRenderer.h"
#include "panel/Onboarding.h"
#include "ui/controls/Control.h"
#include "ui/settings/SettingsRowView.h"

class QStackedWidget;

namespace trotlet::settings {
class SettingsGroup;
}

namespace trotlet::ui {

class PushButton;
class SettingsBlocksView;
class ThemedLabel;

// The six gaits, each with the mascot running at the gait's own pace and what it says about
// the machine. The frames advance only while shown and while motion is allowed.
class GaitShowcaseView : public QWidget {
    Q_OBJECT
public:
    GaitShowcaseView(PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);

    void setAnimating(bool animating);
    bool isAnimating() const { return timer_.isActive(); }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void reschedule();

    PanelModel& model_;
    const ThemeStore& theme_;
    mascot::MascotRenderer renderer_;
    QTimer timer_;
    double seconds_ = 0.6;  // the clock of every row's frames
    bool wantAnimation_ = true;
};

// The wrapped welcome gift. A click, Space or Enter asks for it; once granted it shows what it
// held.
class GiftBox : public Control {
    Q_OBJECT
public:
    GiftBox(SettingsController& controller, const ThemeStore& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    QString accessibleValue() const override;
    void activate() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    SettingsController& controller_;
};

// The welcome tour over the panel: what the mascot's gaits mean, the reading beside it,
// notifications and launch at login, an optional city, and the welcome gift. Back, Continue and
// Skip move through it (Alt+Left and Alt+Right too); finishing or skipping marks it done for
// good and tells the controller, which puts the panel's tabs back.
class OnboardingView : public QWidget {
    Q_OBJECT
public:
    OnboardingView(PanelModel& model, const ThemeStore& theme, SettingsController& controller,
                   QWidget* parent = nullptr);
    ~OnboardingView() override;

    panel::OnboardingStep step() const { return step_; }
    // `byKeyboard`: the main button takes the focus with a ring.
    void showStep(panel::OnboardingStep step, bool byKeyboard = false);
    void setAnimating(bool animating);

    PushButton& primaryButton() const { return *primary_; }
    PushButton& backButton() const { return *back_; }
    PushButton& skipButton() const { return *skip_; }
    GiftBox& giftBox() const { return *gift_; }
    // The settings rows of the current step; none on the first and the last.
    SettingsBlocksView* blocks() const { return blocks_; }

    QSize sizeHint() const override;

signals:
    void stepChanged(trotlet::panel::OnboardingStep step);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void primary();
    void finish();
    void applyTexts();
    void scheduleRefresh();

    SettingsContext context_;
    panel::OnboardingStep step_ = panel::OnboardingStep::meet;
    ThemedLabel* title_ = nullptr;
    ThemedLabel* body_ = nullptr;
    QStackedWidget* content_ = nullptr;
    GaitShowcaseView* gaits_ = nullptr;
    QWidget* giftPage_ = nullptr;
    GiftBox* gift_ = nullptr;
    SettingsBlocksView* blocks_ = nullptr;
    PushButton* primary_ = nullptr;
    PushButton* back_ = nullptr;
    PushButton* skip_ = nullptr;
    bool refreshPending_ = false;
    std::vector<std::pair<settings::SettingsGroup*, int>> observers_;
};

}  // namespace trotlet::ui
