#pragma once

#include <QWidget>

#include "panel/SettingsScreen.h"

namespace trotlet::ui {

class ChoiceControl;
class Control;
class PanelModel;
class PlaceSearchField;
class PushButton;
class SettingsController;
class ShortcutRecorder;
class StepSlider;
class ThemeStore;
class ThemedLabel;
class ToggleSwitch;

// What the views of Settings stand on.
struct SettingsContext {
    PanelModel& model;
    const ThemeStore& theme;
    SettingsController& controller;
};

// One row of a settings block, built from its description: the title and the line under it on
// the left, the control on the right or below. Every control writes its own key through the
// settings groups the moment it changes, and only on a real change; `show` takes a fresh
// description of the same row (new values, new words) without rebuilding the row.
class SettingsRowView : public QWidget {
    Q_OBJECT
public:
    SettingsRowView(const panel::SettingsRow& row, SettingsContext& context,
                    QWidget* parent = nullptr);

    const panel::SettingsRow& row() const { return row_; }
    void show(const panel::SettingsRow& row);
    // The control the keyboard reaches (none for a row without one).
    QWidget* focusTarget() const { return focusTarget_; }

    ToggleSwitch* toggle() const { return toggle_; }
    ChoiceControl* choice() const { return choice_; }
    StepSlider* slider() const { return slider_; }
    ShortcutRecorder* recorder() const { return recorder_; }
    PushButton* button() const { return button_; }
    PlaceSearchField* placeField() const { return placeField_; }

signals:
    // A button's action (the row's own changes are written by the row itself).
    void actionRequested(trotlet::panel::RowAction action);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void build();
    void write(const settings::SettingValue& value);
    void applyTexts();

    panel::SettingsRow row_;
    SettingsContext& context_;
    ThemedLabel* title_ = nullptr;
    ThemedLabel* detail_ = nullptr;
    ThemedLabel* value_ = nullptr;
    ThemedLabel* extra_ = nullptr;  // a slider's ends, a path, the licence text
    ThemedLabel* endLabel_ = nullptr;
    ToggleSwitch* toggle_ = nullptr;
    ChoiceControl* choice_ = nullptr;
    StepSlider* slider_ = nullptr;
    ShortcutRecorder* recorder_ = nullptr;
    PushButton* button_ = nullptr;
    PlaceSearchField* placeField_ = nullptr;
    QWidget* focusTarget_ = nullptr;
    QString recorderProblem_;
    bool recording_ = false;
    bool licenceOpen_ = false;
};

}  // namespace trotlet::ui
