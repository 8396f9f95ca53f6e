#pragma once

#include <QObject>

class QSocketNotifier;

namespace trotlet::app {

// Turns SIGINT, SIGTERM and SIGUSR1 into Qt signals on the main thread. The handlers only
// write the signal's number into a socket pair (the one thing safe to do there); the event
// loop reads it and emits. One instance per process.
class SignalRelay : public QObject {
    Q_OBJECT
public:
    explicit SignalRelay(QObject* parent = nullptr);
    ~SignalRelay() override;
    bool isInstalled() const { return installed_; }

signals:
    void quitRequested(int signalNumber);
    void panelToggleRequested();

private:
    void drain();

    QSocketNotifier* notifier_ = nullptr;
    bool installed_ = false;
};

}  // namespace trotlet::app
