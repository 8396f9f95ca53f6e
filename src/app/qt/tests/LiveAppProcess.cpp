#include "LiveAppProcess.h"

#include "platform/freedesktop/tests/FreedesktopTestSupport.h"

#include <QDeadlineTimer>

namespace trotlet::app::testing {

using platform::testing::waitUntil;

VirtualDisplay::VirtualDisplay(int width, int height) {
    process_.setStandardErrorFile(QProcess::nullDevice());
    // -noreset: the app's display check connects and leaves before Qt connects for good, and
    // a server resetting after its last client has gone refuses connections for a moment.
    process_.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                    QStringLiteral("tcp"), QStringLiteral("-noreset"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("%1x%2x24").arg(width).arg(height)});
    if (!process_.waitForStarted(5000)) return;
    QDeadlineTimer deadline(10000);
    QByteArray line;
    while (!deadline.hasExpired() && !line.contains('\n') &&
           process_.state() == QProcess::Running) {
        process_.waitForReadyRead(100);
        line += process_.readAllStandardOutput();
    }
    bool ok = false;
    const int number = line.trimmed().toInt(&ok);
    if (ok) name_ = QStringLiteral(":%1").arg(number);
}

VirtualDisplay::~VirtualDisplay() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.terminate();
    if (!process_.waitForFinished(3000)) process_.kill();
    process_.waitForFinished(2000);
}

LiveAppProcess::LiveAppProcess() {
    process_.setStandardOutputFile(QProcess::nullDevice());
    QObject::connect(&process_, &QProcess::readyReadStandardError,
                     [this] { log_ += QString::fromUtf8(process_.readAllStandardError()); });
}

LiveAppProcess::~LiveAppProcess() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished(3000);
}

void LiveAppProcess::start(const QStringList& arguments, const QProcessEnvironment& environment) {
    log_.clear();
    process_.setProcessEnvironment(environment);
    process_.start(QStringLiteral(TROTLET_BINARY), arguments);
}

bool LiveAppProcess::waitForLog(const QString& text, int times, int timeoutMs) {
    waitUntil([&] { return log_.count(text) >= times || !isRunning(); }, timeoutMs);
    return log_.count(text) >= times;
}

std::optional<int> LiveAppProcess::terminate(int timeoutMs) {
    process_.terminate();
    if (!waitUntil([&] { return !isRunning(); }, timeoutMs)) return std::nullopt;
    log_ += QString::fromUtf8(process_.readAllStandardError());
    if (process_.exitStatus() != QProcess::NormalExit) return std::nullopt;
    return process_.exitCode();
}

}  // namespace trotlet::app::testing
