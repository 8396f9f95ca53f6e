#include "app/qt/LiveApp.h"

#include <algorithm>
#include <csignal>

#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include "app/qt/AppModel.h"
#include "app/qt/DebugLog.h"
#include "app/qt/SessionSettings.h"
#include "app/qt/SignalRelay.h"

namespace trotlet::app {

LiveApp::LiveApp(const LaunchOptions& options, const std::vector<std::string>& args)
    : options_(options), settings_(makeSessionSettings(options, args)) {
    signals_ = new SignalRelay(this);
    connect(signals_, &SignalRelay::panelToggleRequested, this,
            [this] { togglePanel(QStringLiteral("SIGUSR1")); });
    connect(signals_, &SignalRelay::quitRequested, this, [this](int number) {
        quit(QString::fromLatin1(number == SIGINT ? "SIGINT" : "SIGTERM"));
    });

    buildPanel();
    buildTray();
    debugLog(settings_->store().isEphemeral() ? "live app started (in-memory settings)"
                                              : "live app started");
    if (options_.openPanel)
        QTimer::singleShot(600, this, [this] { openPanel(QStringLiteral("--open-panel")); });
}

LiveApp::~LiveApp() {
    // The model observes the settings, which are a member and would go first.
    delete model_;
    model_ = nullptr;
}

void LiveApp::buildTray() {
    menu_ = std::make_unique<QMenu>();
    QAction* panelAction = menu_->addAction(QStringLiteral("Open Trotlet"));
    connect(panelAction, &QAction::triggered, this,
            [this] { togglePanel(QStringLiteral("menu")); });
    menu_->addSeparator();
    QAction* quitAction = menu_->addAction(QStringLiteral("Quit Trotlet"));
    connect(quitAction, &QAction::triggered, this, [this] { quit(QStringLiteral("menu")); });
    connect(menu_.get(), &QMenu::aboutToShow, this, [this, panelAction] {
        panelAction->setText(isPanelOpen() ? QStringLiteral("Close Trotlet")
                                           : QStringLiteral("Open Trotlet"));
    });

    model_ = new AppModel(options_, *settings_, menu_.get(), this);
    connect(model_, &AppModel::trayActivated, this, [this](QPoint point) {
        lastClick_ = point;
        togglePanel(QStringLiteral("tray click"));
    });
}

void LiveApp::buildPanel() {
    panel_ = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    panel_->setWindowTitle(QStringLiteral("Trotlet"));
    panel_->resize(360, 240);
    auto* layout = new QVBoxLayout(panel_.get());
    auto* title = new QLabel(QStringLiteral("Trotlet"), panel_.get());
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    title->setFont(font);
    layout->addWidget(title);
    layout->addWidget(new QLabel(QStringLiteral("A menu bar system monitor with a running mascot."),
                                 panel_.get()));
    layout->addStretch();
}

bool LiveApp::isPanelOpen() const { return panel_ && panel_->isVisible(); }

void LiveApp::togglePanel(const QString& reason) {
    if (isPanelOpen())
        closePanel(reason);
    else
        openPanel(reason);
}

void LiveApp::openPanel(const QString& reason) {
    if (isPanelOpen()) return;
    // Below the point the tray host reported for the click, else the screen's top right.
    const QRect anchor = lastClick_.isNull() ? QRect() : QRect(lastClick_, QSize(1, 1));
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        QPoint topLeft = anchor.isValid() ? QPoint(anchor.center().x() - panel_->width() / 2, anchor.bottom() + 4)
                                          : QPoint(area.right() - panel_->width() - 8, area.top() + 8);
        topLeft.setX(std::clamp(topLeft.x(), area.left(), std::max(area.left(), area.right() - panel_->width())));
        topLeft.setY(std::clamp(topLeft.y(), area.top(), std::max(area.top(), area.bottom() - panel_->height())));
        panel_->move(topLeft);
    }
    panel_->show();
    if (model_) model_->setPanelOpen(true);
    panel_->raise();
    panel_->activateWindow();
    debugLog(("panel opened (" + reason + ")").toStdString());
}

void LiveApp::closePanel(const QString& reason) {
    if (!isPanelOpen()) return;
    panel_->hide();
    if (model_) model_->setPanelOpen(false);
    debugLog(("panel closed (" + reason + ")").toStdString());
}

void LiveApp::quit(const QString& reason) {
    debugLog(("quitting (" + reason + ")").toStdString());
    QCoreApplication::quit();
}

}  // namespace trotlet::app
