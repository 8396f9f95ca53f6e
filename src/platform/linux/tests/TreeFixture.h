#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

// A private copy of a captured /proc and /sys tree from tests/data. `advance()` moves every
// counter file to its second reading by overwriting "<file>" with "<file>.next" in place (the
// same inode, as procfs keeps it, so readers with open descriptors see the change).
class CapturedTree {
public:
    explicit CapturedTree(const std::string& name) {
        namespace fs = std::filesystem;
        std::random_device rd;
        root_ = fs::temp_directory_path() / ("trotlet-tree-" + name + "-" + std::to_string(rd()));
        fs::copy(fs::path(TROTLET_SOURCE_DIR) / "src/platform/linux/tests/data" / name, root_,
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
    ~CapturedTree() {
        std::error_code ec;
        std::filesystem::remove_all(root_, ec);
    }
    CapturedTree(const CapturedTree&) = delete;
    CapturedTree& operator=(const CapturedTree&) = delete;

    std::string root() const { return root_.string(); }
    std::string path(const std::string& relative) const { return (root_ / relative).string(); }

    void advance() {
        namespace fs = std::filesystem;
        for (const auto& entry : fs::recursive_directory_iterator(root_)) {
            if (!entry.is_regular_file() || entry.path().extension() != ".next") continue;
            std::ifstream in(entry.path(), std::ios::binary);
            std::stringstream text;
            text << in.rdbuf();
            auto target = entry.path();
            target.replace_extension();
            std::fstream out(target, std::ios::in | std::ios::out | std::ios::binary);
            if (!out) out.open(target, std::ios::out | std::ios::binary);
            // Overwrite in place, then cut the file to the new length.
            out << text.str();
            out.close();
            fs::resize_file(target, text.str().size());
        }
    }

    void write(const std::string& relative, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(path(relative)).parent_path());
        std::ofstream(path(relative), std::ios::binary | std::ios::trunc) << contents;
    }

private:
    std::filesystem::path root_;
};
