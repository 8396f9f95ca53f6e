#pragma once

// A tiny HTTP/1.1 server on 127.0.0.1 for the client tests: it records each request and
// answers from a handler, including the faults a real network produces (no answer, a
// dropped connection, a body cut short, a trickle that never ends).

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHostAddress>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

namespace trotlet::weather::testing {

inline void ensureApp() {
    static int argc = 1;
    static char arg0[] = "weather_tests";
    static char* argv[] = {arg0, nullptr};
    if (!QCoreApplication::instance()) new QCoreApplication(argc, argv);
}

inline bool spinUntil(const std::function<bool()>& done, int timeoutMs = 5000) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

inline void spinFor(int ms) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

struct HttpRequest {
    std::string method;
    std::string target;  // path and query, as sent
    std::map<std::string, std::string> headers;  // names lowercased

    std::string path() const { return target.substr(0, target.find('?')); }
    std::string query(const std::string& key) const {
        QUrlQuery q(QUrl(QString::fromStdString("http://x" + target)));
        return q.queryItemValue(QString::fromStdString(key), QUrl::FullyDecoded).toStdString();
    }
};

struct HttpResponse {
    enum class Kind {
        normal,
        hang,      // read the request, never answer
        drop,      // read the request, close the connection
        truncate,  // promise `body.size() * 2` bytes, send the body, close
        trickle,   // send headers and one byte every 50 ms, forever
    };
    Kind kind = Kind::normal;
    int status = 200;
    std::string body;
    int delayMs = 0;
};

class LocalHttpServer {
public:
    using Handler = std::function<HttpResponse(const HttpRequest&)>;

    explicit LocalHttpServer(Handler handler) : handler_(std::move(handler)) {
        ensureApp();
        server_.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = server_.nextPendingConnection()) accept(socket);
        });
    }

    quint16 port() const { return server_.serverPort(); }
    std::string base(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port()) + path;
    }
    const std::vector<HttpRequest>& requests() const { return requests_; }

private:
    void accept(QTcpSocket* socket) {
        auto buffer = std::make_shared<std::string>();
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, buffer] {
            *buffer += socket->readAll().toStdString();
            auto end = buffer->find("\r\n\r\n");
            if (end == std::string::npos) return;
            HttpRequest request = parse(buffer->substr(0, end));
            buffer->erase(0, end + 4);
            requests_.push_back(request);
            respond(socket, handler_(request));
        });
    }

    static HttpRequest parse(const std::string& head) {
        HttpRequest r;
        size_t lineEnd = head.find("\r\n");
        std::string first = head.substr(0, lineEnd);
        size_t s1 = first.find(' '), s2 = first.rfind(' ');
        r.method = first.substr(0, s1);
        r.target = first.substr(s1 + 1, s2 - s1 - 1);
        size_t pos = lineEnd == std::string::npos ? head.size() : lineEnd + 2;
        while (pos < head.size()) {
            size_t e = head.find("\r\n", pos);
            if (e == std::string::npos) e = head.size();
            std::string line = head.substr(pos, e - pos);
            size_t colon = line.find(':');
            if (colon != std::string::npos) {
                std::string name = line.substr(0, colon);
                for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
                std::string value = line.substr(colon + 1);
                value.erase(0, value.find_first_not_of(' '));
                r.headers[name] = value;
            }
            pos = e + 2;
        }
        return r;
    }

    static std::string head(int status, size_t length) {
        return "HTTP/1.1 " + std::to_string(status) + " " + (status == 200 ? "OK" : "Error") +
               "\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " + std::to_string(length) +
               "\r\nConnection: close\r\n\r\n";
    }

    void respond(QTcpSocket* socket, HttpResponse response) {
        QPointer<QTcpSocket> guard(socket);
        auto send = [guard, response] {
            if (!guard) return;
            switch (response.kind) {
                case HttpResponse::Kind::hang: return;
                case HttpResponse::Kind::drop: guard->abort(); return;
                case HttpResponse::Kind::truncate:
                    guard->write(QByteArray::fromStdString(head(response.status, response.body.size() * 2) + response.body));
                    guard->flush();
                    guard->disconnectFromHost();
                    return;
                case HttpResponse::Kind::trickle: {
                    guard->write(QByteArray::fromStdString(head(response.status, 1 << 20)));
                    auto* timer = new QTimer(guard.data());
                    QObject::connect(timer, &QTimer::timeout, guard.data(), [guard] {
                        if (guard) guard->write(" ");
                    });
                    timer->start(50);
                    return;
                }
                case HttpResponse::Kind::normal:
                    guard->write(QByteArray::fromStdString(head(response.status, response.body.size()) + response.body));
                    guard->disconnectFromHost();
                    return;
            }
        };
        if (response.delayMs > 0)
            QTimer::singleShot(response.delayMs, socket, send);
        else
            send();
    }

    Handler handler_;
    QTcpServer server_;
    std::vector<HttpRequest> requests_;
};

}  // namespace trotlet::weather::testing
