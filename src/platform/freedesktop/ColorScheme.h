#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <cstdint>
#include <optional>

namespace trotlet::platform {

// The desktop's colour scheme from the settings portal (org.freedesktop.appearance
// color-scheme: 0 no preference, 1 dark, 2 light), kept current through SettingChanged.
// Absent when no portal answers.
class ColorScheme : public QObject {
    Q_OBJECT
public:
    explicit ColorScheme(const QDBusConnection& sessionBus, QObject* parent = nullptr);

    std::optional<std::uint32_t> scheme() const { return scheme_; }
    // The value a portal reply carries, unwrapped from its variants; none for another type.
    static std::optional<std::uint32_t> interpret(const QVariant& value);

signals:
    void changed(std::optional<std::uint32_t> scheme);

private slots:
    void onSettingChanged(const QDBusMessage& message);

private:
    void read(bool useReadOne);
    void store(std::optional<std::uint32_t> scheme);

    QDBusConnection bus_;
    std::optional<std::uint32_t> scheme_;
};

}  // namespace trotlet::platform
