#include "app/qt/SingleInstance.h"

#include <unistd.h>

#include <cstdlib>

#include <QLocalServer>
#include <QLocalSocket>

#include "platform/linux/XdgPaths.h"

namespace trotlet::app {

namespace {

constexpr QByteArrayView openPanelRequest = "open-panel\n";
constexpr int connectTimeoutMs = 1000;

}  // namespace

QString SingleInstance::socketPath() {
    return QString::fromStdString(platform::XdgPaths::runtimeDir()) +
           QStringLiteral("/trotlet-%1.socket").arg(::getuid());
}

bool SingleInstance::multipleAllowed() { return std::getenv("TROTLET_ALLOW_MULTIPLE") != nullptr; }

bool SingleInstance::askRunningCopyToOpenPanel() {
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(connectTimeoutMs)) return false;
    socket.write(openPanelRequest.data(), openPanelRequest.size());
    if (!socket.waitForBytesWritten(connectTimeoutMs)) return false;
    socket.disconnectFromServer();
    return true;
}

SingleInstance::SingleInstance(std::function<void()> onOpenPanel, QObject* parent)
    : QObject(parent), onOpenPanel_(std::move(onOpenPanel)) {
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    // Nobody answered on the socket, so whatever file is there was left by a copy that died.
    QLocalServer::removeServer(socketPath());
    if (!server_->listen(socketPath())) return;
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* client = server_->nextPendingConnection()) {
            connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
            auto handle = [this, client] {
                while (client->canReadLine()) {
                    if (client->readLine() == openPanelRequest.toByteArray() && onOpenPanel_)
                        onOpenPanel_();
                }
            };
            connect(client, &QLocalSocket::readyRead, this, handle);
            handle();
        }
    });
}

bool SingleInstance::isListening() const { return server_ && server_->isListening(); }

}  // namespace trotlet::app
