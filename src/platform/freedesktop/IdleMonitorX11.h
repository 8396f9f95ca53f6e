#pragma once

#include <optional>

namespace trotlet::platform {

// The X screen-saver extension's idle counter on an own connection to the X server, kept
// apart so that Xlib's macros stay out of Qt code. Unavailable without a display or the
// extension.
class IdleMonitorX11 {
public:
    IdleMonitorX11();
    ~IdleMonitorX11();
    IdleMonitorX11(const IdleMonitorX11&) = delete;
    IdleMonitorX11& operator=(const IdleMonitorX11&) = delete;

    bool isAvailable() const { return display_ != nullptr; }
    // Milliseconds since the last input; nothing when the query failed.
    std::optional<unsigned long> idleMilliseconds();

private:
    void* display_ = nullptr;
    void* info_ = nullptr;
};

}  // namespace trotlet::platform
