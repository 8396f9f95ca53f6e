#include "updates/qt/Relaunch.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>

#include <QProcess>
#include <QProcessEnvironment>

#include "platform/linux/InstallPlaces.h"

namespace trotlet::updates {

bool relaunchDetached(const std::string& program) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TROTLET_RELAUNCH_AFTER"), QString::number(::getpid()));
    // The allocator switch of the new copy starts afresh.
    env.remove(QStringLiteral("TROTLET_MALLOC_REEXEC"));
    process.setProcessEnvironment(env);
    process.setProgram(QString::fromStdString(program));
    return process.startDetached();
}

void waitForPreviousCopy(int timeoutMs) {
    const char* text = std::getenv("TROTLET_RELAUNCH_AFTER");
    if (!text || !*text) return;
    char* end = nullptr;
    const long pid = std::strtol(text, &end, 10);
    ::unsetenv("TROTLET_RELAUNCH_AFTER");
    if (*end != '\0' || pid <= 1) return;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (std::chrono::steady_clock::now() < deadline) {
        if (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

std::string runningProgram() { return platform::resolvedPath("/proc/self/exe"); }

}  // namespace trotlet::updates
