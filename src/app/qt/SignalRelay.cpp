#include "app/qt/SignalRelay.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include <QSocketNotifier>

namespace trotlet::app {

namespace {

int pipeEnds[2] = {-1, -1};
constexpr int relayedSignals[] = {SIGINT, SIGTERM, SIGUSR1};

void onSignal(int number) {
    const int savedErrno = errno;
    const unsigned char byte = static_cast<unsigned char>(number);
    // A full socket means a burst of the same request; losing one is harmless.
    [[maybe_unused]] ssize_t written = ::write(pipeEnds[0], &byte, 1);
    errno = savedErrno;
}

}  // namespace

SignalRelay::SignalRelay(QObject* parent) : QObject(parent) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pipeEnds) != 0) return;
    notifier_ = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &SignalRelay::drain);

    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int number : relayedSignals) ::sigaction(number, &action, nullptr);
    installed_ = true;
}

SignalRelay::~SignalRelay() {
    if (!installed_) return;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    for (int number : relayedSignals) ::sigaction(number, &action, nullptr);
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds[0] = pipeEnds[1] = -1;
}

void SignalRelay::drain() {
    unsigned char bytes[64];
    ssize_t count;
    while ((count = ::read(pipeEnds[1], bytes, sizeof bytes)) > 0) {
        for (ssize_t i = 0; i < count; ++i) {
            if (bytes[i] == SIGUSR1)
                emit panelToggleRequested();
            else
                emit quitRequested(bytes[i]);
        }
    }
}

}  // namespace trotlet::app
