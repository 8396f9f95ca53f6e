#include "mascot/ProcessDisplayName.h"

#include <algorithm>
#include <cctype>

namespace trotlet::mascot {
namespace {

std::string baseName(const std::string& path) {
    std::string s = path;
    while (!s.empty() && s.back() == '/') s.pop_back();
    const auto slash = s.rfind('/');
    return slash == std::string::npos ? s : s.substr(slash + 1);
}

std::string withoutSuffix(std::string s, const char* suffix) {
    const std::string tail(suffix);
    if (s.size() > tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0)
        s.resize(s.size() - tail.size());
    return s;
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

bool sameProgram(const std::string& processName, const std::string& file) {
    const std::string a = lower(processName), b = lower(file);
    if (a.empty() || b.empty()) return true;
    return a == b || (a.size() >= 15 && b.compare(0, a.size(), a) == 0);
}

}  // namespace

ProcessDisplayName ProcessDisplayName::of(const metrics::ProcessRow& row) {
    ProcessDisplayName out{row.name, std::nullopt};
    std::string app;
    if (row.bundlePath && !row.bundlePath->empty()) {
        app = baseName(*row.bundlePath);
        for (const char* suffix : {".desktop", ".AppImage", ".appimage", ".app"})
            app = withoutSuffix(app, suffix);
        // A reverse-DNS id (org.mozilla.firefox) names the app by its last part.
        if (const auto dot = app.rfind('.'); dot != std::string::npos && dot + 1 < app.size())
            app = app.substr(dot + 1);
    } else if (row.executablePath && !row.executablePath->empty()) {
        app = baseName(*row.executablePath);
    }
    if (!app.empty() && !sameProgram(row.name, app)) out.app = app;
    return out;
}

}  // namespace trotlet::mascot
