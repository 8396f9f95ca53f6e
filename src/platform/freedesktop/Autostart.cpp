#include "platform/freedesktop/Autostart.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace trotlet::platform {

namespace {

std::string configHome() {
    const char* base = std::getenv("XDG_CONFIG_HOME");
    // Relative values are to be ignored, as the base directory rules require.
    if (base && base[0] == '/') return base;
    const char* home = std::getenv("HOME");
    return std::string(home && home[0] == '/' ? home : "/tmp") + "/.config";
}

bool needsQuoting(const std::string& s) {
    static const char reserved[] = " \t\n\"'\\><~|&;$*?#()`";
    if (s.empty()) return true;
    for (char c : s) {
        if (std::strchr(reserved, c)) return true;
    }
    return false;
}

}  // namespace

std::string Autostart::directory() { return configHome() + "/autostart"; }
std::string Autostart::entryPath() { return directory() + "/trotlet.desktop"; }

std::optional<std::string> Autostart::execArgument(const std::string& path) {
    // Two layers: the Exec rules quote an argument and escape ", `, $ and \ inside quotes;
    // then the desktop file's string rules write every \ as \\. A % would start a field
    // code, so it is doubled.
    std::string arg;
    for (char c : path) {
        if (c == '\n' || c == '\r' || c == '\0') return std::nullopt;
        if (c == '%') {
            arg += "%%";
            continue;
        }
        arg += c;
    }
    if (needsQuoting(path)) {
        std::string quoted = "\"";
        for (char c : arg) {
            if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
            quoted += c;
        }
        quoted += '"';
        arg = quoted;
    }
    std::string escaped;
    for (char c : arg) {
        if (c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::optional<std::string> Autostart::programOf(const std::string& entry) {
    std::istringstream in(entry);
    std::string line;
    bool inMainGroup = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.front() == '[') {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup || line.rfind("Exec=", 0) != 0) continue;
        // Undo the string escapes first, then the Exec quoting, up to the first argument.
        std::string value;
        const std::string raw = line.substr(5);
        for (size_t i = 0; i < raw.size(); ++i) {
            if (raw[i] == '\\' && i + 1 < raw.size()) {
                const char n = raw[++i];
                value += n == 's' ? ' ' : n == 't' ? '\t' : n == 'n' ? '\n' : n == 'r' ? '\r' : n;
            } else {
                value += raw[i];
            }
        }
        std::string program;
        size_t i = 0;
        if (!value.empty() && value[0] == '"') {
            for (i = 1; i < value.size() && value[i] != '"'; ++i) {
                if (value[i] == '\\' && i + 1 < value.size()) ++i;
                program += value[i];
            }
            if (i >= value.size()) return std::nullopt;  // unterminated quote
        } else {
            for (; i < value.size() && value[i] != ' '; ++i) program += value[i];
        }
        std::string unpercent;
        for (size_t k = 0; k < program.size(); ++k) {
            unpercent += program[k];
            if (program[k] == '%' && k + 1 < program.size() && program[k + 1] == '%') ++k;
        }
        return unpercent;
    }
    return std::nullopt;
}

std::optional<std::string> Autostart::desktopEntry(const std::string& executable) {
    auto exec = execArgument(executable);
    if (!exec) return std::nullopt;
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Trotlet\n"
           "Comment=A menu bar system monitor with a running mascot\n"
           "Exec=" + *exec + "\n"
           "Icon=io.github.trotlet.Trotlet\n"
           "Terminal=false\n"
           "Categories=System;Monitor;\n"
           "X-GNOME-Autostart-enabled=true\n";
}

WriteResult Autostart::setEnabled(bool enabled, const std::string& executable) {
    const std::string path = entryPath();
    if (!enabled) {
        if (std::remove(path.c_str()) != 0 && errno != ENOENT) {
            return WriteResult{false, "Could not remove " + path + ": " + std::strerror(errno)};
        }
        return {};
    }
    auto entry = desktopEntry(executable);
    if (!entry) return WriteResult{false, "The program path cannot be written into a desktop entry: " + executable};
    if (!ensureDirectory(directory())) {
        return WriteResult{false, "Could not create " + directory() + ": " + std::strerror(errno)};
    }
    return writeAtomically(path, *entry);
}

bool Autostart::isEnabled() {
    const ReadResult file = readWholeFile(entryPath());
    if (file.status != ReadStatus::ok) return false;
    std::istringstream in(file.contents);
    std::string line;
    while (std::getline(in, line)) {
        if (line == "Hidden=true") return false;
    }
    return programOf(file.contents).has_value();
}

}  // namespace trotlet::platform
