#include "platform/freedesktop/IdleMonitor.h"

#include "platform/freedesktop/IdleMonitorX11.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <array>

namespace trotlet::platform {

namespace {

// Probe order: the cheapest and most exact first.
constexpr std::array<IdleMonitor::Source, 3> kProbeOrder{
    IdleMonitor::Source::x11, IdleMonitor::Source::mutter, IdleMonitor::Source::screenSaver};

}  // namespace

IdleMonitor::Options IdleMonitor::Options::fromEnvironment() {
    Options options;
    // Under Wayland an X server is only XWayland, which sees none of the input to native
    // windows, so its idle counter would claim the user is away while they type.
    options.tryX11 = !qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
                     qEnvironmentVariable("XDG_SESSION_TYPE") != QLatin1String("wayland");
    bool ok = false;
    const double fixed = qEnvironmentVariable("TROTLET_QA_IDLE_SECONDS").toDouble(&ok);
    if (ok && fixed >= 0) options.fixedSeconds = fixed;
    return options;
}

IdleMonitor::IdleMonitor(const QDBusConnection& sessionBus, Options options, QObject* parent)
    : QObject(parent), bus_(sessionBus), options_(options) {
    if (options_.fixedSeconds) {
        source_ = Source::fixed;
        seconds_ = options_.fixedSeconds;
    }
}

IdleMonitor::~IdleMonitor() = default;

QString IdleMonitor::sourceName(Source source) {
    switch (source) {
    case Source::none: return QStringLiteral("none");
    case Source::fixed: return QStringLiteral("fixed");
    case Source::x11: return QStringLiteral("x11");
    case Source::mutter: return QStringLiteral("mutter");
    case Source::screenSaver: return QStringLiteral("screenSaver");
    }
    return {};
}

void IdleMonitor::refresh() {
    if (source_ == Source::fixed || pending_) return;
    if (source_ == Source::none) {
        probeFrom(0);
    } else {
        const auto it = std::find(kProbeOrder.begin(), kProbeOrder.end(), source_);
        query(source_, int(it - kProbeOrder.begin()));
    }
}

void IdleMonitor::probeFrom(int index) {
    for (int i = index; i < int(kProbeOrder.size()); ++i) {
        const Source candidate = kProbeOrder[size_t(i)];
        if (candidate == Source::x11 && !options_.tryX11) continue;
        if (candidate != Source::x11 && !bus_.isConnected()) continue;
        query(candidate, i);
        return;
    }
    const bool changed = seconds_.has_value() || !exhausted_;
    source_ = Source::none;
    seconds_.reset();
    exhausted_ = true;
    if (changed) emit updated();
}

void IdleMonitor::query(Source source, int probeIndex) {
    if (source == Source::x11) {
        // A local round trip to the X server, answered in microseconds.
        if (!x11_) x11_ = std::make_unique<IdleMonitorX11>();
        if (auto ms = x11_->idleMilliseconds()) {
            accept(source, double(*ms) / 1000.0);
        } else {
            reject(source, probeIndex);
        }
        return;
    }
    QDBusMessage call =
        source == Source::mutter
            ? QDBusMessage::createMethodCall(QStringLiteral("org.gnome.Mutter.IdleMonitor"),
                                             QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"),
                                             QStringLiteral("org.gnome.Mutter.IdleMonitor"),
                                             QStringLiteral("GetIdletime"))
            : QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                             QStringLiteral("/org/freedesktop/ScreenSaver"),
                                             QStringLiteral("org.freedesktop.ScreenSaver"),
                                             QStringLiteral("GetSessionIdleTime"));
    pending_ = true;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 2000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, source, probeIndex](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        pending_ = false;
        const QDBusMessage reply = w->reply();
        bool ok = false;
        double seconds = 0;
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            // Mutter counts milliseconds (t); the screen saver interface whole seconds (u).
            const qulonglong value = reply.arguments().first().toULongLong(&ok);
            seconds = source == Source::mutter ? double(value) / 1000.0 : double(value);
        }
        if (ok) {
            accept(source, seconds);
        } else {
            reject(source, probeIndex);
        }
    });
}

void IdleMonitor::accept(Source source, double seconds) {
    source_ = source;
    exhausted_ = false;
    seconds_ = seconds;
    emit updated();
}

void IdleMonitor::reject(Source source, int probeIndex) {
    if (source_ == source) {
        // The source we relied on went away: report nothing now, look again next time.
        source_ = Source::none;
        seconds_.reset();
        emit updated();
        return;
    }
    probeFrom(probeIndex + 1);
}

}  // namespace trotlet::platform
