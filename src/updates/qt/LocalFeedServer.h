#pragma once

#include <map>
#include <string>
#include <vector>

#include <QByteArray>
#include <QTcpServer>

namespace trotlet::updates {

// A small HTTP/1.1 server on 127.0.0.1 that plays a release server for the update
// self-check and tests: each path answers with a scripted response, including the ways a
// real server fails (an error status, no answer, a body cut short).
class LocalFeedServer : public QObject {
    Q_OBJECT
public:
    struct Response {
        enum class Kind { normal, hang, truncate };
        Kind kind = Kind::normal;
        int status = 200;
        QByteArray body;
    };

    explicit LocalFeedServer(QObject* parent = nullptr);
    bool isListening() const { return server_.isListening(); }
    std::string url(const std::string& path) const;

    void route(const std::string& path, Response response) { routes_[path] = std::move(response); }
    void clear() {
        routes_.clear();
        requested_.clear();
    }
    // The paths asked for, in order.
    const std::vector<std::string>& requested() const { return requested_; }

private:
    void answer(QTcpSocket* socket, const std::string& path);

    QTcpServer server_;
    std::map<std::string, Response> routes_;
    std::vector<std::string> requested_;
};

}  // namespace trotlet::updates
