#include "app/qt/LiveApp.h"

#include <algorithm>
#include <csignal>

#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include "app/qt/DebugLog.h"
#include "app/qt/SessionSettings.h"
#include "app/qt/SignalRelay.h"

namespace trotlet::app {

namespace {

// A plain round critter head, drawn so the tray has something to show before the real
// animated status item exists.
QIcon placeholderIcon() {
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xE8, 0x8A, 0x3C));
    QPainterPath ears;
    ears.addPolygon(QPolygonF({QPointF(10, 28), QPointF(16, 4), QPointF(30, 18)}));
    ears.addPolygon(QPolygonF({QPointF(54, 28), QPointF(48, 4), QPointF(34, 18)}));
    painter.drawPath(ears);
    painter.drawEllipse(QRectF(8, 14, 48, 44));
    painter.setBrush(QColor(0x2B, 0x2B, 0x2B));
    painter.drawEllipse(QRectF(21, 30, 6, 7));
    painter.drawEllipse(QRectF(37, 30, 6, 7));
    painter.drawEllipse(QRectF(29, 42, 6, 4));
    return QIcon(pixmap);
}

}  // namespace

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

LiveApp::~LiveApp() = default;

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

    tray_ = new QSystemTrayIcon(placeholderIcon(), this);
    tray_->setToolTip(QStringLiteral("Trotlet"));
    tray_->setContextMenu(menu_.get());
    connect(tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason why) {
        if (why == QSystemTrayIcon::Trigger) togglePanel(QStringLiteral("tray click"));
    });
    tray_->show();
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
    // Below the tray item when the desktop tells where it is, else the screen's top right.
    const QRect anchor = tray_ ? tray_->geometry() : QRect();
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        QPoint topLeft = anchor.isValid() ? QPoint(anchor.center().x() - panel_->width() / 2, anchor.bottom() + 4)
                                          : QPoint(area.right() - panel_->width() - 8, area.top() + 8);
        topLeft.setX(std::clamp(topLeft.x(), area.left(), std::max(area.left(), area.right() - panel_->width())));
        topLeft.setY(std::clamp(topLeft.y(), area.top(), std::max(area.top(), area.bottom() - panel_->height())));
        panel_->move(topLeft);
    }
    panel_->show();
    panel_->raise();
    panel_->activateWindow();
    debugLog(("panel opened (" + reason + ")").toStdString());
}

void LiveApp::closePanel(const QString& reason) {
    if (!isPanelOpen()) return;
    panel_->hide();
    debugLog(("panel closed (" + reason + ")").toStdString());
}

void LiveApp::quit(const QString& reason) {
    debugLog(("quitting (" + reason + ")").toStdString());
    if (tray_) tray_->hide();
    QCoreApplication::quit();
}

}  // namespace trotlet::app
