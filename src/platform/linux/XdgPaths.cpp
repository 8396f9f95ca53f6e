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

std::string XdgPaths::configHome() {
    auto base = absoluteEnv("XDG_CONFIG_HOME");
    return base.empty() ? homeDir() + "/.config" : base;
}

std::string XdgPaths::dataHome() {
    auto base = absoluteEnv("XDG_DATA_HOME");
    return base.empty() ? homeDir() + "/.local/share" : base;
}

std::string XdgPaths::configDir() { return configHome() + "/trotlet"; }

std::string XdgPaths::dataDir() { return dataHome() + "/trotlet"; }

std::string XdgPaths::runtimeDir() {
    auto base = absoluteEnv("XDG_RUNTIME_DIR");
    if (base.empty()) base = "/tmp";
    return base;
}

}  // namespace trotlet::platform
