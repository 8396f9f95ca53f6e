#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantList>

#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <vector>

namespace trotlet::platform::testing {

// A QApplication for the whole test process (menus and the tray need widgets; images and
// fonts need a GUI application). Created on first use.
void ensureApplication();

// Records the emissions of one Qt signal with their arguments.
template <typename... A>
class Spy {
public:
    using Call = std::tuple<std::decay_t<A>...>;
    template <typename O, typename C>
    Spy(O* object, void (C::*signal)(A...)) : calls_(std::make_shared<std::vector<Call>>()) {
        auto calls = calls_;
        QObject::connect(object, signal, object, [calls](A... args) { calls->emplace_back(args...); });
    }
    int count() const { return int(calls_->size()); }
    const Call& at(int i) const { return calls_->at(size_t(i)); }
    const Call& last() const { return calls_->back(); }

private:
    std::shared_ptr<std::vector<Call>> calls_;
};

// Runs the event loop until the condition holds or the time is up; returns the condition.
bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 3000);
// Runs the event loop for a while, for checking that something does NOT happen.
void spinFor(int ms);

// A private session bus: a dbus-daemon child process with a minimal configuration (no service
// activation, so nothing on this machine is started by a call that finds no owner).
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    bool isRunning() const { return !address_.isEmpty(); }
    QString address() const { return address_; }
    // A new connection with its own unique name; closed when the bus object goes away.
    QDBusConnection connect(const QString& tag);
    void disconnect(const QString& tag);

private:
    QTemporaryDir dir_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

// Blocking call that keeps the event loop running, so services in this thread can answer.
QDBusMessage call(QDBusConnection& bus, const QString& service, const QString& path,
                  const QString& interface, const QString& method, const QVariantList& args = {});
QVariant getProperty(QDBusConnection& bus, const QString& service, const QString& path,
                     const QString& interface, const QString& name);

// Records every signal matched on a connection.
class SignalRecorder : public QObject {
    Q_OBJECT
public:
    struct Signal {
        QString member;
        QVariantList arguments;
    };
    SignalRecorder(QDBusConnection bus, const QString& service, const QString& path,
                   const QString& interface);
    QList<Signal> signals_;
    int count(const QString& member) const;
    void clear() { signals_.clear(); }

public slots:
    void record(const QDBusMessage& message);
};

// The test's own StatusNotifierWatcher: it records who registered which item and, like a real
// one, announces each registration and reports a host, so Qt's own tray check finds a tray.
class FakeWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
public:
    // Claims the watcher's name on `bus`; false when that failed.
    bool start(QDBusConnection bus);
    QStringList registered;
    QStringList senders;

    bool isHostRegistered() const { return true; }
    QStringList registeredItems() const { return registered; }
    int protocolVersion() const { return 0; }

public slots:
    void RegisterStatusNotifierItem(const QString& service, const QDBusMessage& message);

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierHostRegistered();
};

}  // namespace trotlet::platform::testing
