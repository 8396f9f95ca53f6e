#pragma once

// A small /sys tree written from one input, for the readers that walk directories rather than
// parse one text. Each input line is "<class>/<device>/<attribute>=<contents>", placed under
// <root>/sys/class/ (for example "hwmon/hwmon0/temp1_input=45000"). Names are limited to
// sysfs's own characters, so a line can never reach outside the tree.

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "FuzzSupport.h"

namespace trotlet::fuzz {

class SysTree {
public:
    SysTree() : root_(folder_.path()) {}
    ~SysTree() { clear(); }
    SysTree(const SysTree&) = delete;
    SysTree& operator=(const SysTree&) = delete;

    const std::string& root() const { return root_; }

    // Rebuilds the tree from the input's lines; lines that are not "path=contents" with a
    // plain three-part path are skipped.
    void build(std::string_view text) {
        clear();
        makeDirectory("sys");
        makeDirectory("sys/class");
        for (auto line : split(text, '\n', 96)) {
            const size_t eq = line.find('=');
            if (eq == std::string_view::npos) continue;
            const auto parts = split(line.substr(0, eq), '/', 4);
            if (parts.size() != 3 || !std::all_of(parts.begin(), parts.end(), plainName)) continue;
            std::string dir("sys/class/");
            dir.append(parts[0]);
            makeDirectory(dir);
            dir.append("/").append(parts[1]);
            makeDirectory(dir);
            const std::string file = std::string(dir).append("/").append(parts[2]);
            if (std::find(files_.begin(), files_.end(), file) != files_.end()) continue;
            std::ofstream(root_ + "/" + file, std::ios::binary) << line.substr(eq + 1) << '\n';
            files_.push_back(file);
        }
    }

private:
    static bool plainName(std::string_view name) {
        if (name.empty() || name.size() > 40 || name == "." || name == "..") return false;
        return std::all_of(name.begin(), name.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                   c == '_' || c == '-' || c == '.' || c == ':';
        });
    }
    void makeDirectory(const std::string& relative) {
        if (std::find(directories_.begin(), directories_.end(), relative) != directories_.end())
            return;
        if (::mkdir((root_ + "/" + relative).c_str(), 0755) == 0) directories_.push_back(relative);
    }
    void clear() {
        for (const auto& f : files_) ::unlink((root_ + "/" + f).c_str());
        for (auto it = directories_.rbegin(); it != directories_.rend(); ++it)
            ::rmdir((root_ + "/" + *it).c_str());
        files_.clear();
        directories_.clear();
    }

    TempFolder folder_;
    std::string root_;
    std::vector<std::string> files_, directories_;
};

}  // namespace trotlet::fuzz
