#include "ui/settings/SettingsView.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "layout/LayoutStore.h"
#include "settings/AppSettings.h"
#include "ui/controls/PushButton.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsIndexView.h"
#include "ui/settings/SettingsPageView.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

SettingsView::SettingsView(PanelModel& model, const ThemeStore& theme,
                           SettingsController& controller, QWidget* parent)
    : QWidget(parent), context_{model, theme, controller} {
    setObjectName(QStringLiteral("settings"));
    setAccessibleName(QStringLiteral("Settings"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    stack_ = new QStackedWidget(this);
    column->addWidget(stack_);

    index_ = new SettingsIndexView(context_);
    connect(index_, &SettingsIndexView::opened, this, &SettingsView::openSection);
    indexScroll_ = makeScroll(index_);
    pageScroll_ = makeScroll(nullptr);
    stack_->addWidget(indexScroll_);
    stack_->addWidget(pageScroll_);

    auto& s = model.settings();
    for (settings::SettingsGroup* group : std::initializer_list<settings::SettingsGroup*>{
             &s.general(), &s.monitoring(), &s.menuBar(), &s.mascot(), &s.notifications(),
             &s.weather(), &s.layout()})
        observers_.emplace_back(group,
                                group->observe([this](const std::string&) { scheduleRefresh(); }));
    layoutObserver_ = model.layout().observe([this] { scheduleRefresh(); });
    connect(&controller, &SettingsController::factsChanged, this, &SettingsView::scheduleRefresh);
    connect(&model, &PanelModel::mascotChanged, this, &SettingsView::scheduleRefresh);
}

SettingsView::~SettingsView() {
    for (const auto& [group, id] : observers_) group->unobserve(id);
    context_.model.layout().unobserve(layoutObserver_);
}

QScrollArea* SettingsView::makeScroll(QWidget* content) {
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->viewport()->setAutoFillBackground(false);
    if (content) {
        content->setAutoFillBackground(false);
        scroll->setWidget(content);
    }
    new ScrollIndicator(*scroll, context_.theme);
    return scroll;
}

QSize SettingsView::sizeHint() const { return QSize(Metrics::panelWidth, Metrics::maxPanelHeight); }

std::optional<panel::SettingsSection> SettingsView::section() const {
    if (stack_->currentWidget() != pageScroll_ || !page_) return std::nullopt;
    return page_->section();
}

void SettingsView::openSection(panel::SettingsSection section, bool byKeyboard) {
    auto* page = new SettingsPageView(section, context_);
    page->setAutoFillBackground(false);
    connect(page, &SettingsPageView::backRequested, this,
            [this, page] { showIndex(page->backButton().showsFocusRing()); });
    connect(page, &SettingsPageView::actionRequested, &context_.controller,
            &SettingsController::actionRequested);
    delete pageScroll_->takeWidget();
    pageScroll_->setWidget(page);
    page_ = page;
    stack_->setCurrentWidget(pageScroll_);
    // The keyboard lands on the first control, or on Back when the page has none.
    const auto rows = page->rows();
    QWidget* first = &page->backButton();
    for (SettingsRowView* row : rows)
        if (row->focusTarget()) {
            first = row->focusTarget();
            break;
        }
    first->setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

void SettingsView::showIndex(bool byKeyboard) {
    const auto from = section();
    stack_->setCurrentWidget(indexScroll_);
    delete pageScroll_->takeWidget();
    page_ = nullptr;
    index_->refresh();
    if (from) index_->row(*from).setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

void SettingsView::scheduleRefresh() {
    if (refreshPending_) return;
    refreshPending_ = true;
    // Deferred: the change may come from a control of the page, which a rebuild would delete
    // while it is still handling the click.
    QTimer::singleShot(0, this, &SettingsView::refreshNow);
}

void SettingsView::refreshNow() {
    refreshPending_ = false;
    index_->refresh();
    if (page_) page_->refresh();
}

void SettingsView::keyPressEvent(QKeyEvent* event) {
    const auto mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool back = (event->key() == Qt::Key_Escape && mods == Qt::NoModifier) ||
                      (event->key() == Qt::Key_Left && mods == Qt::AltModifier);
    if (back && page_) {
        showIndex(true);
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace trotlet::ui
