#pragma once

#include <QWidget>

#include <array>

#include "panel/SettingsScreen.h"
#include "ui/controls/Control.h"

namespace trotlet::ui {

class ThemedLabel;
struct SettingsContext;

// One section in the index: its coloured symbol, its name, a line saying how it is set, and a
// chevron. Enter, Space or a click opens it; Up and Down move between sections.
class SectionRow : public Control {
    Q_OBJECT
public:
    SectionRow(panel::SettingsSection section, const ThemeStore& theme, QWidget* parent = nullptr);

    panel::SettingsSection section() const { return section_; }
    void setSummary(const QString& summary);
    QString summary() const { return summary_; }

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    QString accessibleValue() const override { return summary_; }
    void activate() override { emit opened(section_, true); }

signals:
    // `byKeyboard`: the section's page puts a focus ring on its first control.
    void opened(trotlet::panel::SettingsSection section, bool byKeyboard);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    panel::SettingsSection section_;
    QString title_;
    QString summary_;
    bool first_ = false;
    bool last_ = false;
    friend class SettingsIndexView;
};

// The first page of Settings: the sections in three groups, then the version.
class SettingsIndexView : public QWidget {
    Q_OBJECT
public:
    SettingsIndexView(SettingsContext& context, QWidget* parent = nullptr);

    void refresh();
    SectionRow& row(panel::SettingsSection section) const { return *rows_[std::size_t(section)]; }

signals:
    void opened(trotlet::panel::SettingsSection section, bool byKeyboard);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SettingsContext& context_;
    std::array<SectionRow*, panel::SettingsSectionNames.size()> rows_{};
    ThemedLabel* footer_ = nullptr;
};

}  // namespace trotlet::ui
