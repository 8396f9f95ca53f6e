#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace trotlet::platform {

// Whether the desktop asks apps to reduce motion, read through the settings portal and kept
// current through its SettingChanged signal. Three keys can answer, in this order of trust:
//   org.freedesktop.appearance  reduced-motion           (u: 1 = reduce)
//   org.gnome.desktop.interface enable-animations        (b: false = reduce)
//   org.kde.kdeglobals.KDE      AnimationDurationFactor  (d: 0 = animations off)
// Absent when no key answers. TROTLET_QA_REDUCE_MOTION=1 or =0 fixes the answer.
class ReduceMotion : public QObject {
    Q_OBJECT
public:
    struct Key {
        const char* nameSpace;
        const char* key;
    };
    static const std::array<Key, 3> kKeys;

    ReduceMotion(const QDBusConnection& sessionBus, std::optional<bool> fixed, QObject* parent = nullptr);
    // Reads the override from the environment; anything but "1" or "0" means none.
    static std::optional<bool> fixedFromEnvironment();

    std::optional<bool> reduceMotion() const;
    // Which key decided, e.g. "org.gnome.desktop.interface enable-animations"; empty if none.
    QString decidedBy() const;

    // Asks the portal again; done once at construction.
    void refresh();

    // What one key's value means, or nothing for a value of the wrong type.
    static std::optional<bool> interpret(int keyIndex, const QVariant& value);

signals:
    void changed(std::optional<bool> reduceMotion);

private slots:
    void onSettingChanged(const QDBusMessage& message);

private:
    void read(int keyIndex, bool useReadOne);
    void store(int keyIndex, std::optional<bool> value);

    QDBusConnection bus_;
    std::optional<bool> fixed_;
    std::array<std::optional<bool>, 3> values_{};
};

}  // namespace trotlet::platform
