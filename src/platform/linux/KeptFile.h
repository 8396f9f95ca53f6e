#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trotlet::platform {

// A /proc or /sys file read again and again: the descriptor stays open and every read is a
// pread from offset 0 into a buffer that is reused, so a tick costs one syscall and no
// allocation. procfs and sysfs regenerate the contents on each read from the start.
class KeptFile {
public:
    KeptFile() = default;
    explicit KeptFile(std::string path);
    ~KeptFile();
    KeptFile(KeptFile&& other) noexcept;
    KeptFile& operator=(KeptFile&& other) noexcept;
    KeptFile(const KeptFile&) = delete;
    KeptFile& operator=(const KeptFile&) = delete;

    // The whole file, valid until the next read; absent when it cannot be opened or read (a
    // missing file, a permission error, a process that has gone). A failed read closes the
    // descriptor so the next call tries to open the file afresh.
    std::optional<std::string_view> read();

    const std::string& path() const { return path_; }
    bool isOpen() const { return fd_ >= 0; }
    void close();

private:
    std::string path_;
    int fd_ = -1;
    std::vector<char> buffer_;
};

// One-shot read of a small file, with trailing whitespace removed; absent when unreadable.
std::optional<std::string> readTrimmed(const std::string& path);

// Joins a root directory ("/" or a captured tree) and an absolute path.
std::string underRoot(const std::string& root, std::string_view absolutePath);

}  // namespace trotlet::platform
