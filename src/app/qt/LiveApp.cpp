#include "app/qt/LiveApp.h"

#include <csignal>
#include <cstdio>

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include "app/qt/AppModel.h"
#include "app/qt/DebugLog.h"
#include "app/qt/PanelHost.h"
#include "app/qt/SignalRelay.h"
#include "panel/Onboarding.h"
#include "panel/PanelPlacement.h"
#include "platform/freedesktop/TrayItem.h"
#include "settings/qt/SessionSettings.h"
#include "ui/panel/PanelWindow.h"
#include "updates/qt/UpdatesRuntime.h"

namespace trotlet::app {

namespace {

panel::PanelRect toRect(const QRect& r) {
    return panel::PanelRect{r.x(), r.y(), r.width(), r.height()};
}

const char* anchorWords(panel::PanelAnchor anchor) {
    switch (anchor) {
        case panel::PanelAnchor::belowPoint:
            return "below the click";
        case panel::PanelAnchor::abovePoint:
            return "above the click";
        case panel::PanelAnchor::topRightCorner:
            return "top right corner";
    }
    return "";
}

}  // namespace

LiveApp::LiveApp(const cli::LaunchOptions& options, const std::vector<std::string>& args)
    : options_(options), settings_(settings::makeSessionSettings(options, args)) {
    // A detail screen lives on top of the Overview, so asking for one shows that tab.
    tab_ = options_.detail ? panel::PanelTab::overview
                           : options_.tab.value_or(panel::PanelTab::overview);
    detail_ = options_.detail;

    signals_ = new SignalRelay(this);
    connect(signals_, &SignalRelay::panelToggleRequested, this,
            [this] { togglePanel(QStringLiteral("SIGUSR1")); });
    connect(signals_, &SignalRelay::quitRequested, this, [this](int number) {
        quit(QString::fromLatin1(number == SIGINT ? "SIGINT" : "SIGTERM"));
    });

    buildTray();
    // After the tray: a copy that an update relaunched counts as started once it is there.
    updates_ = new updates::UpdatesRuntime(
        options_, settings_->store(), [](const std::string& line) { debugLog(line); }, this);
    connect(updates_, &updates::UpdatesRuntime::relaunched, this,
            [this] { quit(QStringLiteral("relaunched as the new copy")); });
    panel_->setUpdates(updates_);
    debugLog(settings_->store().isEphemeral() ? "live app started (in-memory settings)"
                                              : "live app started");
    if (options_.openPanel)
        QTimer::singleShot(600, this, [this] { openPanel(QStringLiteral("--open-panel")); });
    else if (panel::opensOnStart(settings_->general()))
        // A first run opens on the welcome tour once the tray item has had a moment to appear.
        QTimer::singleShot(1500, this, [this] { openPanel(QStringLiteral("first run")); });
}

LiveApp::~LiveApp() {
    // The panel, the model and the updates use the settings, which are a member and would go
    // first.
    delete panel_;
    panel_ = nullptr;
    delete updates_;
    updates_ = nullptr;
    delete model_;
    model_ = nullptr;
}

void LiveApp::buildTray() {
    menu_ = std::make_unique<QMenu>();
    QAction* panelAction = menu_->addAction(QStringLiteral("Open Trotlet"));
    connect(panelAction, &QAction::triggered, this,
            [this] { togglePanel(QStringLiteral("menu")); });
    QAction* settingsAction = menu_->addAction(QStringLiteral("Settings…"));
    connect(settingsAction, &QAction::triggered, this,
            [this] { showPanelTab(panel::PanelTab::settings, QStringLiteral("menu: Settings…")); });
    menu_->addSeparator();
    QAction* quitAction = menu_->addAction(QStringLiteral("Quit Trotlet"));
    connect(quitAction, &QAction::triggered, this, [this] { quit(QStringLiteral("menu")); });
    connect(menu_.get(), &QMenu::aboutToShow, this, [this, panelAction] {
        panelAction->setText(isPanelOpen() ? QStringLiteral("Close Trotlet")
                                           : QStringLiteral("Open Trotlet"));
    });

    model_ = new AppModel(options_, *settings_, menu_.get(), this);
    panel_ = new PanelHost(*model_, *settings_, options_, this);
    connect(panel_, &PanelHost::closeRequested, this, &LiveApp::closePanel);
    connect(panel_, &PanelHost::quitRequested, this, &LiveApp::quit);
    connect(model_, &AppModel::trayActivated, this, [this](QPoint point) {
        // The global shortcut reports a null point: it was no click.
        if (!point.isNull()) pendingClick_ = point;
        togglePanel(QStringLiteral("tray click"));
        pendingClick_.reset();
    });
    // Hosts send the token just before Activate; it is spent by the window that click raises.
    connect(&model_->tray(), &platform::TrayItem::activationTokenProvided, this,
            [this](const QString& token) { pendingToken_ = token; });
}

void LiveApp::logRoute() const {
    std::string line = "panel tab: " + std::string(panel::PanelTabNames[std::size_t(tab_)]);
    if (detail_)
        line += ", detail: " + std::string(panel::MetricDetailNames[std::size_t(*detail_)]);
    debugLog(line);
}

bool LiveApp::isPanelOpen() const { return panel_ && panel_->isOpen(); }

void LiveApp::togglePanel(const QString& reason) {
    openClock_.start();
    if (isPanelOpen())
        closePanel(reason);
    else
        openPanel(reason);
}

void LiveApp::showPanelTab(panel::PanelTab tab, const QString& reason) {
    tab_ = tab;
    detail_.reset();
    if (isPanelOpen()) {
        panel_->showTab(tab_);
        logRoute();
        panel_->window().raise();
        panel_->window().activateWindow();
    } else {
        openClock_.start();
        openPanel(reason);
    }
}

// X11 window managers honour the position, so the panel hangs under the tray icon. Wayland
// compositors place top-level windows themselves, output included (sway opens the panel on
// the focused output whatever screen Qt was given): only a layer-shell surface could be
// anchored to the top edge, and Qt 6.4 offers none. The chosen screen still sets the scale
// the panel first renders at.
void LiveApp::placePanel() {
    const QList<QScreen*> screens = QGuiApplication::screens();
    panel::PanelPlacementRequest request;
    request.session = panel::sessionTypeForPlatform(QGuiApplication::platformName().toStdString());
    for (QScreen* screen : screens)
        request.screens.push_back(panel::PanelScreen{toRect(screen->geometry()),
                                                     toRect(screen->availableGeometry()),
                                                     screen == QGuiApplication::primaryScreen()});
    if (pendingClick_) request.click = panel::PanelPoint{pendingClick_->x(), pendingClick_->y()};
    if (lastTrayClick_)
        request.lastTrayClick = panel::PanelPoint{lastTrayClick_->x(), lastTrayClick_->y()};
    const QPoint cursor = QCursor::pos();
    request.cursor = panel::PanelPoint{cursor.x(), cursor.y()};
    ui::PanelWindow& window = panel_->window();
    request.panel = panel::PanelSize{window.width(), window.preferredHeight()};

    const panel::PanelPlacement placement = panel::placePanel(request);
    if (placement.anchor != panel::PanelAnchor::topRightCorner && pendingClick_)
        lastTrayClick_ = pendingClick_;
    if (placement.screen && window.screen() != screens[int(*placement.screen)])
        window.setScreen(screens[int(*placement.screen)]);
    const panel::PanelRect& f = placement.frame;
    // The window has a fixed size (tiling compositors, sway among them, float such a window
    // instead of tiling it); a screen shorter than the content makes the Overview scroll.
    window.setFixedSize(f.width, f.height);
    window.move(f.x, f.y);
    if (debugLogEnabled()) {
        char click[48] = "no click";
        if (pendingClick_)
            std::snprintf(click, sizeof click, "click at %d,%d", pendingClick_->x(),
                          pendingClick_->y());
        else if (placement.anchor != panel::PanelAnchor::topRightCorner && lastTrayClick_)
            std::snprintf(click, sizeof click, "last tray click at %d,%d", lastTrayClick_->x(),
                          lastTrayClick_->y());
        char line[200];
        std::snprintf(line, sizeof line, "panel placed on screen %d at %d,%d size %dx%d (%s; %s%s)",
                      placement.screen ? int(*placement.screen) : -1, f.x, f.y, f.width, f.height,
                      anchorWords(placement.anchor), click,
                      placement.positionHonoured ? "" : "; the compositor decides the position");
        debugLog(line);
    }
}

void LiveApp::openPanel(const QString& reason) {
    if (isPanelOpen()) return;
    placePanel();
    const bool wayland =
        panel::sessionTypeForPlatform(QGuiApplication::platformName().toStdString()) ==
        panel::SessionType::wayland;
    const QByteArray token = pendingToken_.toUtf8();
    pendingToken_.clear();
    // Qt's Wayland plugin presents XDG_ACTIVATION_TOKEN with the window's activation request,
    // the same way Qt's own tray item hands a host's token over. Without a token the
    // compositor may show the panel unfocused, or only flag it.
    const bool useToken = wayland && !token.isEmpty();
    if (useToken) qputenv("XDG_ACTIVATION_TOKEN", token);
    if (!openClock_.isValid()) openClock_.start();
    if (detail_)
        panel_->showDetail(*detail_);
    else
        panel_->showTab(tab_);
    panel_->show(openClock_);
    openClock_.invalidate();
    if (model_) model_->setPanelOpen(true);
    panel_->window().raise();
    panel_->window().activateWindow();
    if (useToken) qunsetenv("XDG_ACTIVATION_TOKEN");
    debugLog(("panel opened (" + reason + ")").toStdString());
    logRoute();
    if (wayland)
        debugLog(useToken ? "panel activation token: presented" : "panel activation token: none");
}

void LiveApp::closePanel(const QString& reason) {
    if (!isPanelOpen()) return;
    // The tab the user left is where the panel opens next time.
    tab_ = panel_->window().currentTab();
    detail_.reset();
    panel_->hide();
    pendingToken_.clear();
    if (model_) model_->setPanelOpen(false);
    debugLog(("panel closed (" + reason + ")").toStdString());
}

void LiveApp::quit(const QString& reason) {
    debugLog(("quitting (" + reason + ")").toStdString());
    QCoreApplication::quit();
}

}  // namespace trotlet::app
