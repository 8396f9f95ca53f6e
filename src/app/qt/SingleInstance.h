#pragma once

#include <functional>

#include <QObject>
#include <QString>

class QLocalServer;

namespace trotlet::app {

// One live app per user. A second copy asks the running one to open its panel and exits;
// TROTLET_ALLOW_MULTIPLE lets copies run side by side (QA, two builds at once).
class SingleInstance : public QObject {
    Q_OBJECT
public:
    // The socket both copies meet at, in the user's runtime folder.
    static QString socketPath();
    static bool multipleAllowed();

    // True when a running copy took the request to open its panel.
    static bool askRunningCopyToOpenPanel();

    // Listens for later copies; `onOpenPanel` runs on the main thread for each request.
    // A stale socket left by a crashed copy is replaced.
    explicit SingleInstance(std::function<void()> onOpenPanel, QObject* parent = nullptr);
    bool isListening() const;

private:
    QLocalServer* server_ = nullptr;
    std::function<void()> onOpenPanel_;
};

}  // namespace trotlet::app
