#include "ui/settings/SettingsIndexView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include "ui/controls/ThemedLabel.h"
#include "ui/panel/PanelModel.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsRowView.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int sectionRowHeight = 52;

// The groups of the index.
constexpr std::array<std::array<int, 3>, 3> groups = {{{0, 1, 2}, {3, 4, 5}, {6, -1, -1}}};

}  // namespace

SectionRow::SectionRow(panel::SettingsSection section, const ThemeStore& theme, QWidget* parent)
    : Control(theme, parent), section_(section) {
    const auto look = panel::sectionLook(section);
    title_ = QString::fromStdString(look.title);
    setAccessibleName(title_);
    setObjectName(QString::fromStdString(
        "section-" + std::string(panel::SettingsSectionNames[std::size_t(section)])));
    setFixedHeight(sectionRowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

QSize SectionRow::sizeHint() const { return QSize(Metrics::gridWidth, sectionRowHeight); }

void SectionRow::setSummary(const QString& summary) {
    if (summary == summary_) return;
    summary_ = summary;
    setAccessibleDescription(summary);
    update();
}

void SectionRow::paintEvent(QPaintEvent*) {
    const Theme& t = theme();
    const Palette& pal = t.palette();
    const auto look = panel::sectionLook(section_);
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (hovered()) {
        // The block's rounded corners hold for the first and last row's highlight too.
        QPainterPath shape;
        const QRectF r = QRectF(rect()).adjusted(1, first_ ? 1 : 0, -1, last_ ? -1 : 0);
        const qreal radius = Metrics::cardRadius - 1;
        shape.addRoundedRect(r, radius, radius);
        if (!first_) shape.addRect(r.adjusted(0, 0, 0, -r.height() / 2));
        if (!last_) shape.addRect(r.adjusted(0, r.height() / 2, 0, 0));
        p.fillPath(shape.simplified(), pal.surfaceHover);
    }
    const qreal tile = Metrics::sectionIcon;
    const QRectF icon(Metrics::rowPadding, (height() - tile) / 2, tile, tile);
    p.setPen(Qt::NoPen);
    p.setBrush(pal.named(look.color));
    p.drawRoundedRect(icon, 7, 7);
    Icons::paint(p, icon.adjusted(6, 6, -6, -6), look.symbol, pal.onAccent);

    const qreal left = icon.right() + Metrics::spacingLarge;
    const qreal right = width() - Metrics::rowPadding - 14 - Metrics::spacing;
    p.setFont(t.type().body);
    p.setPen(pal.text);
    p.drawText(QRectF(left, 7, right - left, height() / 2.0 - 6), Qt::AlignLeft | Qt::AlignBottom,
               title_);
    p.setFont(t.type().caption);
    p.setPen(pal.textSecondary);
    const QFontMetricsF fm(t.type().caption);
    p.drawText(QRectF(left, height() / 2.0 + 1, right - left, height() / 2.0 - 6),
               Qt::AlignLeft | Qt::AlignTop, fm.elidedText(summary_, Qt::ElideRight, right - left));
    Icons::paint(p, QRectF(width() - Metrics::rowPadding - 12, height() / 2.0 - 6, 12, 12),
                 "chevron.right", pal.textTertiary);
    paintFocusRing(p, QRectF(rect()).adjusted(4, 4, -4, -4), Metrics::cardRadius - 4);
}

void SectionRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit opened(section_, false);
}

void SectionRow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Right:
            activate();
            return;
        case Qt::Key_Down:
        case Qt::Key_Up: {
            const int next = int(section_) + (event->key() == Qt::Key_Down ? 1 : -1);
            if (next < 0 || next >= int(panel::SettingsSectionNames.size())) return;
            if (auto* index = qobject_cast<SettingsIndexView*>(parentWidget()->parentWidget()))
                index->row(panel::SettingsSection(next)).setFocus(Qt::TabFocusReason);
            return;
        }
        default:
            Control::keyPressEvent(event);
    }
}

SettingsIndexView::SettingsIndexView(SettingsContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    setObjectName(QStringLiteral("settings-index"));
    setAccessibleName(QStringLiteral("Settings"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, Metrics::margin);
    column->setSpacing(Metrics::blockGap);
    for (const auto& group : groups) {
        auto* block = new QWidget(this);
        block->setObjectName(QStringLiteral("sectionBlock"));
        auto* rows = new QVBoxLayout(block);
        rows->setContentsMargins(0, 0, 0, 0);
        rows->setSpacing(0);
        std::vector<SectionRow*> members;
        for (int i : group) {
            if (i < 0) continue;
            auto* row = new SectionRow(panel::SettingsSection(i), context_.theme, block);
            connect(row, &SectionRow::opened, this, &SettingsIndexView::opened);
            rows->addWidget(row);
            rows_[std::size_t(i)] = row;
            members.push_back(row);
        }
        members.front()->first_ = true;
        members.back()->last_ = true;
        column->addWidget(block);
    }
    footer_ = new ThemedLabel({}, ThemedLabel::Role::footnote, context_.theme, this);
    footer_->setAlignment(Qt::AlignCenter);
    column->addWidget(footer_);
    column->addStretch(1);
    connect(&context_.theme, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
    refresh();
}

void SettingsIndexView::refresh() {
    const auto facts = context_.controller.facts(context_.model);
    for (std::size_t i = 0; i < rows_.size(); ++i)
        rows_[i]->setSummary(QString::fromStdString(
            panel::sectionSummary(panel::SettingsSection(i), context_.model.settings(), facts)));
    footer_->setText(QStringLiteral("Trotlet %1 · Made with care for Linux desktops")
                         .arg(QString::fromStdString(facts.version)));
}

void SettingsIndexView::paintEvent(QPaintEvent*) {
    // The groups' surfaces and the hairlines between their rows.
    const Palette& pal = context_.theme.theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    for (QWidget* block : findChildren<QWidget*>(QStringLiteral("sectionBlock"))) {
        const QRectF r = QRectF(block->geometry()).adjusted(0.5, 0.5, -0.5, -0.5);
        p.setPen(QPen(pal.border, 1));
        p.setBrush(pal.surface);
        p.drawRoundedRect(r, Metrics::cardRadius, Metrics::cardRadius);
        const auto rows = block->findChildren<SectionRow*>();
        p.setPen(QPen(pal.separator, 1));
        for (SectionRow* row : rows) {
            if (row->last_) continue;
            const qreal y = block->y() + row->geometry().bottom() + 0.5;
            const qreal left =
                block->x() + Metrics::rowPadding + Metrics::sectionIcon + Metrics::spacingLarge;
            p.drawLine(QPointF(left, y), QPointF(block->x() + block->width() - 1, y));
        }
    }
}

}  // namespace trotlet::ui
