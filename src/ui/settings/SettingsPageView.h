#pragma once

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

#include "panel/SettingsScreen.h"
#include "ui/settings/SettingsRowView.h"

class QVBoxLayout;

namespace trotlet::ui {

class PushButton;

// Rows grouped on one rounded surface, with hairlines between them.
class SettingsBlockView : public QWidget {
    Q_OBJECT
public:
    SettingsBlockView(const ThemeStore& theme, QWidget* parent = nullptr);
    void addRow(SettingsRowView* row);
    const std::vector<SettingsRowView*>& rows() const { return rows_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const ThemeStore& theme_;
    QVBoxLayout* layout_;
    std::vector<SettingsRowView*> rows_;
};

// Blocks of rows from a source of descriptions, with their headings and footnotes. `refresh`
// asks the source again: when the same rows still apply, each row shows its new values in place;
// when rows come or go (a threshold under a switch just turned on) the blocks are built again
// and the keyboard focus stays on the row that had it.
class SettingsBlocksView : public QWidget {
    Q_OBJECT
public:
    using Source = std::function<std::vector<panel::SettingsBlock>()>;

    SettingsBlocksView(Source source, SettingsContext& context, QWidget* parent = nullptr);

    void refresh();
    // Every row, in order; the one with an id.
    std::vector<SettingsRowView*> rows() const;
    SettingsRowView* row(const std::string& id) const;
    // How many times the blocks were built (once at first, again when rows come or go).
    int builds() const { return builds_; }

signals:
    void actionRequested(trotlet::panel::RowAction action);

private:
    void build(const std::vector<panel::SettingsBlock>& blocks);
    static std::string shapeOf(const std::vector<panel::SettingsBlock>& blocks);

    Source source_;
    SettingsContext& context_;
    QWidget* body_ = nullptr;
    std::vector<SettingsBlockView*> blocks_;
    std::vector<class ThemedLabel*> footers_;
    std::string shape_;
    int builds_ = 0;
};

// One section of Settings: a back button, the section's title and its blocks.
class SettingsPageView : public QWidget {
    Q_OBJECT
public:
    SettingsPageView(panel::SettingsSection section, SettingsContext& context,
                     QWidget* parent = nullptr);

    panel::SettingsSection section() const { return section_; }
    void refresh() { blocks_->refresh(); }
    std::vector<SettingsRowView*> rows() const { return blocks_->rows(); }
    SettingsRowView* row(const std::string& id) const { return blocks_->row(id); }
    int builds() const { return blocks_->builds(); }
    PushButton& backButton() const { return *back_; }

signals:
    void backRequested();
    void actionRequested(trotlet::panel::RowAction action);

private:
    panel::SettingsSection section_;
    SettingsBlocksView* blocks_ = nullptr;
    PushButton* back_ = nullptr;
};

}  // namespace trotlet::ui
