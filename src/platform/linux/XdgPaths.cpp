#include "platform/linux/XdgPaths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace trotlet::platform {
namespace {

std::string absoluteEnv(const char* name) {
    const char* value = std::getenv(name);
    if (value && value[0] == '/') return value;
    return {};
}

}  // namespace

std::string XdgPaths::homeDir() {
    if (auto home = absoluteEnv("HOME"); !home.empty()) return home;
    if (const passwd* pw = ::getpwuid(::getuid()); pw && pw->pw_dir) return pw->pw_dir;
    return "/tmp";
}

std::string XdgPaths::configDir() {
    auto base = absoluteEnv("XDG_CONFIG_HOME");
    if (base.empty()) base = homeDir() + "/.config";
    return base + "/trotlet";
}

std::string XdgPaths::dataDir() {
    auto base = absoluteEnv("XDG_DATA_HOME");
    if (base.empty()) base = homeDir() + "/.local/share";
    return base + "/trotlet";
}

std::string XdgPaths::runtimeDir() {
    auto base = absoluteEnv("XDG_RUNTIME_DIR");
    if (base.empty()) base = "/tmp";
    return base;
}

}  // namespace trotlet::platform
