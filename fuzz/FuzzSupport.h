#pragma once

// Shared pieces of the fuzz targets: a check that stops the run (assert is compiled out in
// this build), and the splitting of one input into several pieces.

#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#define FUZZ_CHECK(condition)                                                             \
    do {                                                                                  \
        if (!(condition)) {                                                               \
            std::fprintf(stderr, "fuzz check failed: %s (%s:%d)\n", #condition, __FILE__, \
                         __LINE__);                                                       \
            std::abort();                                                                 \
        }                                                                                 \
    } while (0)

namespace trotlet::fuzz {

inline std::string_view bytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The pieces of `text` between separators; an input without one is a single piece.
inline std::vector<std::string_view> split(std::string_view text, char separator,
                                           std::size_t maxPieces = 4096) {
    std::vector<std::string_view> out;
    while (out.size() + 1 < maxPieces) {
        const std::size_t at = text.find(separator);
        if (at == std::string_view::npos) break;
        out.push_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    out.push_back(text);
    return out;
}

// The input before and after the first NUL byte: two readings of one file, taken a tick apart.
inline std::pair<std::string_view, std::string_view> twoReadings(std::string_view text) {
    const std::size_t at = text.find('\0');
    if (at == std::string_view::npos) return {text, text};
    return {text.substr(0, at), text.substr(at + 1)};
}

// A private directory for a target's files, on tmpfs where there is one, removed at exit (it
// must be empty by then).
class TempFolder {
public:
    TempFolder() {
        path_ = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        path_ += "/trotlet-fuzz-XXXXXX";
        FUZZ_CHECK(::mkdtemp(path_.data()) != nullptr);
    }
    ~TempFolder() { ::rmdir(path_.c_str()); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace trotlet::fuzz
