#include "ui/settings/SettingsPageView.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/controls/Control.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ThemedLabel.h"
#include "ui/panel/PanelModel.h"
#include "ui/settings/SettingsController.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

SettingsBlockView::SettingsBlockView(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    layout_ = new QVBoxLayout(this);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
}

void SettingsBlockView::addRow(SettingsRowView* row) {
    rows_.push_back(row);
    layout_->addWidget(row);
}

void SettingsBlockView::paintEvent(QPaintEvent*) {
    const Palette& pal = theme_.theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cardRadius,
                      Metrics::cardRadius);
    p.setPen(QPen(pal.separator, 1));
    for (std::size_t i = 0; i + 1 < rows_.size(); ++i) {
        const qreal y = rows_[i]->geometry().bottom() + 0.5;
        p.drawLine(QPointF(Metrics::rowPadding, y), QPointF(width() - Metrics::rowPadding, y));
    }
}

SettingsPageView::SettingsPageView(panel::SettingsSection section, SettingsContext& context,
                                   QWidget* parent)
    : QWidget(parent), section_(section) {
    const auto look = panel::sectionLook(section);
    setObjectName(QString::fromStdString(
        "settings-" + std::string(panel::SettingsSectionNames[std::size_t(section)])));
    setAccessibleName(QString::fromStdString(look.title));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, Metrics::margin);
    column->setSpacing(Metrics::spacingLarge);

    auto* header = new QHBoxLayout;
    back_ =
        new PushButton(QStringLiteral("Settings"), PushButton::Style::quiet, context.theme, this);
    back_->setIcon("chevron.left");
    back_->setAccessibleName(QStringLiteral("Back to Settings"));
    connect(back_, &PushButton::clicked, this, &SettingsPageView::backRequested);
    auto* title = new ThemedLabel(QString::fromStdString(look.title), ThemedLabel::Role::pageTitle,
                                  context.theme, this);
    title->setAlignment(Qt::AlignCenter);
    header->addWidget(back_);
    header->addWidget(title, 1);
    // Balances the back button so the title sits in the middle.
    header->addSpacing(back_->sizeHint().width());
    column->addLayout(header);

    blocks_ = new SettingsBlocksView(
        [section, &context] {
            return panel::settingsBlocks(section, context.model.settings(),
                                         context.controller.facts(context.model));
        },
        context, this);
    connect(blocks_, &SettingsBlocksView::actionRequested, this,
            &SettingsPageView::actionRequested);
    column->addWidget(blocks_);
    column->addStretch(1);
}

SettingsBlocksView::SettingsBlocksView(Source source, SettingsContext& context, QWidget* parent)
    : QWidget(parent), source_(std::move(source)), context_(context) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    // Blocks keep their natural height; extra room goes below them.
    column->addStretch(1);
    refresh();
}

std::string SettingsBlocksView::shapeOf(const std::vector<panel::SettingsBlock>& blocks) {
    std::string shape;
    for (const auto& block : blocks) {
        shape += "[" + block.title + "|" + (block.footer.empty() ? "" : "f");
        for (const auto& row : block.rows) shape += row.id + ";";
        shape += "]";
    }
    return shape;
}

void SettingsBlocksView::refresh() {
    const auto blocks = source_();
    const std::string shape = shapeOf(blocks);
    if (shape != shape_ || !body_) {
        build(blocks);
        shape_ = shape;
        return;
    }
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        const auto& rows = blocks_[b]->rows();
        for (std::size_t r = 0; r < rows.size(); ++r) rows[r]->show(blocks[b].rows[r]);
        if (footers_[b]) footers_[b]->setText(QString::fromStdString(blocks[b].footer));
    }
}

void SettingsBlocksView::build(const std::vector<panel::SettingsBlock>& blocks) {
    // Keep the focus on the same row, and keep its ring only if the keyboard put it there.
    std::string focusedRow;
    bool keyboard = false;
    for (SettingsRowView* row : rows()) {
        QWidget* target = row->focusTarget();
        if (target && target->hasFocus()) {
            focusedRow = row->row().id;
            if (auto* control = qobject_cast<Control*>(target))
                keyboard = control->showsFocusRing();
        }
    }
    ++builds_;
    delete body_;
    blocks_.clear();
    footers_.clear();
    body_ = new QWidget(this);
    auto* column = new QVBoxLayout(body_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        const auto& block = blocks[b];
        if (b > 0) column->addSpacing(Metrics::blockGap);
        if (!block.title.empty()) {
            auto* heading = new ThemedLabel(QString::fromStdString(block.title),
                                            ThemedLabel::Role::heading, context_.theme, body_);
            heading->setContentsMargins(Metrics::rowPadding, 0, 0, Metrics::spacingSmall + 2);
            column->addWidget(heading);
        }
        auto* view = new SettingsBlockView(context_.theme, body_);
        for (const auto& row : block.rows) {
            auto* rowView = new SettingsRowView(row, context_, view);
            connect(rowView, &SettingsRowView::actionRequested, this,
                    &SettingsBlocksView::actionRequested);
            view->addRow(rowView);
        }
        column->addWidget(view);
        blocks_.push_back(view);
        ThemedLabel* footer = nullptr;
        if (!block.footer.empty()) {
            footer = new ThemedLabel(QString::fromStdString(block.footer),
                                     ThemedLabel::Role::footnote, context_.theme, body_);
            footer->setContentsMargins(Metrics::rowPadding, Metrics::spacing - 2,
                                       Metrics::rowPadding, 0);
            column->addWidget(footer);
        }
        footers_.push_back(footer);
    }
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, body_);
    body_->show();
    if (!focusedRow.empty())
        if (SettingsRowView* again = row(focusedRow); again && again->focusTarget())
            again->focusTarget()->setFocus(keyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

std::vector<SettingsRowView*> SettingsBlocksView::rows() const {
    std::vector<SettingsRowView*> all;
    for (const SettingsBlockView* block : blocks_)
        all.insert(all.end(), block->rows().begin(), block->rows().end());
    return all;
}

SettingsRowView* SettingsBlocksView::row(const std::string& id) const {
    for (SettingsRowView* r : rows())
        if (r->row().id == id) return r;
    return nullptr;
}

}  // namespace trotlet::ui
