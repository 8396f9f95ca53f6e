#include "updates/qt/LocalFeedServer.h"

#include <memory>

#include <QHostAddress>
#include <QTcpSocket>

namespace trotlet::updates {

LocalFeedServer::LocalFeedServer(QObject* parent) : QObject(parent) {
    server_.listen(QHostAddress::LocalHost, 0);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            auto head = std::make_shared<QByteArray>();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket, head] {
                *head += socket->readAll();
                const int end = head->indexOf("\r\n\r\n");
                if (end < 0) return;
                const QList<QByteArray> first = head->left(head->indexOf("\r\n")).split(' ');
                head->clear();
                answer(socket, first.size() >= 2 ? first[1].toStdString() : std::string("/"));
            });
        }
    });
}

std::string LocalFeedServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
}

void LocalFeedServer::answer(QTcpSocket* socket, const std::string& path) {
    requested_.push_back(path);
    auto it = routes_.find(path);
    Response r =
        it != routes_.end() ? it->second : Response{Response::Kind::normal, 404, "not found"};
    if (r.kind == Response::Kind::hang) return;
    // A cut-short body promises twice what it sends, then closes.
    const qsizetype promised =
        r.kind == Response::Kind::truncate ? r.body.size() * 2 : r.body.size();
    QByteArray out = "HTTP/1.1 " + QByteArray::number(r.status) +
                     (r.status < 300 ? " OK" : " Error") +
                     "\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
                     QByteArray::number(promised) + "\r\nConnection: close\r\n\r\n" + r.body;
    socket->write(out);
    socket->disconnectFromHost();
}

}  // namespace trotlet::updates
