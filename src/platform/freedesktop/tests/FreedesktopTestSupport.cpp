#include "FreedesktopTestSupport.h"

#include <QApplication>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

namespace trotlet::platform::testing {

void ensureApplication() {
    if (QCoreApplication::instance()) return;
    // These tests never need a display; without one Qt would abort looking for X.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    static int argc = 1;
    static char name[] = "freedesktop_tests";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMs) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > timeoutMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(1);
    }
    return true;
}

void spinFor(int ms) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

PrivateBus::PrivateBus() {
    if (!dir_.isValid()) return;
    const QString config = dir_.filePath(QStringLiteral("bus.conf"));
    QFile file(config);
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write(QStringLiteral(
                   "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
                   " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                   "<busconfig><type>session</type><listen>unix:dir=%1</listen>"
                   "<auth>EXTERNAL</auth><policy context=\"default\">"
                   "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                   "<allow own=\"*\"/></policy></busconfig>\n")
                   .arg(dir_.path())
                   .toUtf8());
    file.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + config, QStringLiteral("--print-address"),
                   QStringLiteral("--nofork")});
    if (!daemon_.waitForStarted(5000)) return;
    QDeadlineTimer deadline(5000);
    QByteArray line;
    while (!deadline.hasExpired() && !line.contains('\n')) {
        daemon_.waitForReadyRead(100);
        line += daemon_.readAllStandardOutput();
    }
    address_ = QString::fromUtf8(line).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& name : std::as_const(names_)) QDBusConnection::disconnectFromBus(name);
    if (daemon_.state() != QProcess::NotRunning) {
        daemon_.terminate();
        if (!daemon_.waitForFinished(2000)) daemon_.kill();
        daemon_.waitForFinished(2000);
    }
}

QDBusConnection PrivateBus::connect(const QString& tag) {
    static int counter = 0;
    const QString name = QStringLiteral("test-%1-%2").arg(tag).arg(++counter);
    names_.append(name);
    return QDBusConnection::connectToBus(address_, name);
}

void PrivateBus::disconnect(const QString& tag) {
    for (qsizetype i = names_.size() - 1; i >= 0; --i) {
        if (names_[i].startsWith(QStringLiteral("test-%1-").arg(tag))) {
            QDBusConnection::disconnectFromBus(names_[i]);
            names_.removeAt(i);
        }
    }
}

QDBusMessage call(QDBusConnection& bus, const QString& service, const QString& path,
                  const QString& interface, const QString& method, const QVariantList& args) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(args);
    return bus.call(message, QDBus::BlockWithGui, 5000);
}

QVariant getProperty(QDBusConnection& bus, const QString& service, const QString& path,
                     const QString& interface, const QString& name) {
    const QDBusMessage reply = call(bus, service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

SignalRecorder::SignalRecorder(QDBusConnection bus, const QString& service, const QString& path,
                               const QString& interface) {
    const bool ok = bus.connect(service, path, interface, QString(), this, SLOT(record(QDBusMessage)));
    EXPECT_TRUE(ok) << "could not listen to " << interface.toStdString();
}

void SignalRecorder::record(const QDBusMessage& message) {
    signals_.append(Signal{message.member(), message.arguments()});
}

int SignalRecorder::count(const QString& member) const {
    int n = 0;
    for (const Signal& s : signals_) n += s.member == member ? 1 : 0;
    return n;
}

bool FakeWatcher::start(QDBusConnection bus) {
    return bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                  QDBusConnection::ExportAllProperties) &&
           bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

void FakeWatcher::RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message) {
    registered.append(service);
    senders.append(message.service());
    emit StatusNotifierItemRegistered(service);
}

}  // namespace trotlet::platform::testing
