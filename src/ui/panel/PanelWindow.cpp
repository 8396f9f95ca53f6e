#include "ui/panel/PanelWindow.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

#include "panel/PanelTabs.h"
#include "sky/qt/SkyBackdrop.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/NoticeBanner.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/panel/TabBar.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int tabGap = 10;      // between the header and the tabs
constexpr int contentGap = 12;  // between the tabs and the screen

}  // namespace

PanelWindow::PanelWindow(PanelModel& model, ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("panel"));
    setWindowTitle(QStringLiteral("Trotlet"));
    setAccessibleName(QStringLiteral("Trotlet"));
    setFixedWidth(Metrics::panelWidth);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, Metrics::margin);
    column->setSpacing(0);
    header_ = new PanelHeader(model_, theme_, this);
    new sky::SkyBackdrop(*header_, model_, theme_);  // owned by the header
    column->addWidget(header_);
    column->addSpacing(tabGap);
    // The notice (install for this user, a newer version, What's new) sits above the tabs, on
    // every tab; hidden, it takes no room.
    notice_ = new NoticeBanner(model_, theme_, this);
    auto* noticeRow = new QHBoxLayout;
    noticeRow->addWidget(notice_);
    column->addLayout(noticeRow);
    // A hidden row still keeps its margins, so the gap under the notice comes and goes with it.
    auto placeNotice = [this, noticeRow] {
        noticeRow->setContentsMargins(Metrics::margin, 0, Metrics::margin,
                                      model_.notice() ? tabGap : 0);
        fitToContent();
    };

    tabs_ = new TabBar(theme_, this);
    auto* tabRow = new QHBoxLayout;
    tabRow->setContentsMargins(Metrics::margin, 0, Metrics::margin, 0);
    tabRow->addWidget(tabs_);
    column->addLayout(tabRow);
    column->addSpacing(contentGap);

    stack_ = new QStackedWidget(this);
    column->addWidget(stack_, 1);

    // The Overview scrolls inside the panel once it outgrows the height limit.
    scroll_ = new QScrollArea(this);
    scroll_->setObjectName(QStringLiteral("overviewScroll"));
    scroll_->setFrameShape(QFrame::NoFrame);
    // No scroll bar eating into the grid: the wheel, the keyboard and a slim indicator do.
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(false);
    scroll_->viewport()->setAutoFillBackground(false);
    overview_ = new OverviewView(model_, theme_);
    auto* holder = new QWidget;
    holder->setAutoFillBackground(false);
    auto* holderLayout = new QHBoxLayout(holder);
    holderLayout->setContentsMargins(Metrics::margin, 0, Metrics::margin, 0);
    holderLayout->addWidget(overview_);
    holder->setFixedWidth(Metrics::panelWidth);
    holder->setFixedHeight(overview_->height());
    scroll_->setWidget(holder);
    screens_[0] = scroll_;
    stack_->addWidget(scroll_);
    // The other tabs get their screens from whoever builds the panel; until then (or for
    // good, in a harness that shows only the Overview) a tab shows the bare panel.
    for (std::size_t i = 1; i < screens_.size(); ++i) {
        screens_[i] = new QWidget;
        stack_->addWidget(screens_[i]);
    }

    connect(tabs_, &TabBar::tabChosen, this, &PanelWindow::showTab);
    connect(&model_, &PanelModel::noticeChanged, this, placeNotice);
    connect(overview_, &OverviewView::cardActivated, this, &PanelWindow::cardActivated);
    connect(overview_, &OverviewView::heightChanged, this, [this, holder] {
        holder->setFixedHeight(overview_->height());
        if (stack_->currentWidget() == scroll_) fitToContent();
    });
    indicator_ = new ScrollIndicator(*scroll_, theme_);
    connect(&theme_, &ThemeStore::changed, this, &PanelWindow::applyTheme);
    applyTheme();
    setFocusPolicy(Qt::StrongFocus);
    setTabOrder(header_, &notice_->primaryButton());
    setTabOrder(&notice_->primaryButton(), &notice_->secondaryButton());
    setTabOrder(&notice_->secondaryButton(), tabs_);
    placeNotice();
}

void PanelWindow::applyTheme() {
    // Views read the theme at paint time; the palette covers what Qt itself fills (the scroll
    // area's viewport).
    const Palette& pal = theme_.theme().palette();
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, pal.window);
    palette.setColor(QPalette::Base, pal.window);
    palette.setColor(QPalette::WindowText, pal.text);
    palette.setColor(QPalette::Text, pal.text);
    setPalette(palette);
    update();
    for (QWidget* child : findChildren<QWidget*>()) child->update();
}

panel::PanelTab PanelWindow::currentTab() const { return tabs_->current(); }

void PanelWindow::showTab(panel::PanelTab tab) {
    if (detail_ && tab != panel::PanelTab::overview) popDetail();
    if (auto make = std::exchange(makers_[std::size_t(tab)], nullptr)) setTabScreen(tab, make());
    tabs_->setCurrent(tab);
    stack_->setCurrentWidget(screens_[std::size_t(tab)]);
    fitToContent();
    emit tabChanged(tab);
}

void PanelWindow::setTabScreen(panel::PanelTab tab, QWidget* screen) {
    makers_[std::size_t(tab)] = nullptr;
    QWidget*& slot = screens_[std::size_t(tab)];
    const bool current = stack_->currentWidget() == slot;
    stack_->removeWidget(slot);
    delete slot;
    slot = screen;
    stack_->insertWidget(int(tab), screen);
    if (current) stack_->setCurrentWidget(screen);
    fitToContent();
}

void PanelWindow::setTabScreen(panel::PanelTab tab, std::function<QWidget*()> makeOnFirstShow) {
    if (currentTab() == tab) {
        setTabScreen(tab, makeOnFirstShow());
        return;
    }
    makers_[std::size_t(tab)] = std::move(makeOnFirstShow);
}

void PanelWindow::setCover(QWidget* cover) {
    if (cover == cover_) return;
    if (cover_) {
        layout()->removeWidget(cover_);
        cover_->deleteLater();
    }
    cover_ = cover;
    tabs_->setVisible(!cover_);
    stack_->setVisible(!cover_);
    // The gaps around the tab bar go with it.
    int gap = 0;
    for (int i = 0; i < layout()->count(); ++i)
        if (QSpacerItem* spacer = layout()->itemAt(i)->spacerItem()) {
            const int height = cover_ ? 0 : gap++ == 0 ? tabGap : contentGap;
            spacer->changeSize(0, height, QSizePolicy::Minimum, QSizePolicy::Fixed);
        }
    layout()->invalidate();
    if (cover_) {
        static_cast<QVBoxLayout*>(layout())->addWidget(cover_, 1);
        cover_->show();
    }
    fitToContent();
}

void PanelWindow::pushDetail(QWidget* view) {
    popDetail();
    detail_ = view;
    stack_->addWidget(view);
    stack_->setCurrentWidget(view);
    view->setFocus(Qt::OtherFocusReason);
    fitToContent();
}

bool PanelWindow::popDetail() {
    if (!detail_) return false;
    // The Overview's scroll area was only hidden, so it keeps its position.
    stack_->setCurrentWidget(scroll_);
    stack_->removeWidget(detail_);
    detail_->deleteLater();
    detail_ = nullptr;
    fitToContent();
    return true;
}

int PanelWindow::preferredHeight() const {
    const QWidget* screen = cover_ ? cover_ : stack_->currentWidget();
    int content =
        screen == scroll_ ? overview_->height() : std::max(screen->sizeHint().height(), 260);
    const int notice = model_.notice() ? notice_->heightForWidth(Metrics::gridWidth) + tabGap : 0;
    const int chrome = cover_ ? Metrics::headerHeight + notice + Metrics::margin
                              : Metrics::headerHeight + tabGap + notice + Metrics::tabBarHeight +
                                    contentGap + Metrics::margin;
    return std::min(chrome + content, Metrics::maxPanelHeight);
}

void PanelWindow::fitToContent() { setFixedHeight(preferredHeight()); }

void PanelWindow::keyPressEvent(QKeyEvent* event) {
    const auto mods = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Escape ||
        (mods == Qt::AltModifier && event->key() == Qt::Key_Left)) {
        if (popDetail()) return;
        if (event->key() == Qt::Key_Escape) emit closeRequested();
        return;
    }
    if (mods == Qt::ControlModifier && event->key() >= Qt::Key_1 && event->key() <= Qt::Key_9 &&
        !cover_) {
        if (const auto tab = panel::tabForNumber(event->key() - Qt::Key_0)) showTab(*tab);
        return;
    }
    QWidget::keyPressEvent(event);
}

bool PanelWindow::event(QEvent* event) {
    // Ctrl+Tab would otherwise move the focus: it steps through the tabs instead.
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        const bool ctrl = key->modifiers() & Qt::ControlModifier;
        if (ctrl && !cover_ && (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)) {
            if (event->type() == QEvent::KeyPress)
                showTab(panel::steppedTab(currentTab(), key->key() == Qt::Key_Backtab ? -1 : 1));
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void PanelWindow::paintEvent(QPaintEvent*) {
    const Palette& pal = theme_.theme().palette();
    QPainter p(this);
    p.fillRect(rect(), pal.window);
    p.setPen(QPen(pal.border, 1));
    p.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace trotlet::ui
