#include "platform/linux/KeptFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace trotlet::platform {

KeptFile::KeptFile(std::string path) : path_(std::move(path)) {}

KeptFile::~KeptFile() { close(); }

KeptFile::KeptFile(KeptFile&& other) noexcept
    : path_(std::move(other.path_)), fd_(std::exchange(other.fd_, -1)),
      buffer_(std::move(other.buffer_)) {}

KeptFile& KeptFile::operator=(KeptFile&& other) noexcept {
    if (this != &other) {
        close();
        path_ = std::move(other.path_);
        fd_ = std::exchange(other.fd_, -1);
        buffer_ = std::move(other.buffer_);
    }
    return *this;
}

void KeptFile::close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

std::optional<std::string_view> KeptFile::read() {
    if (fd_ < 0) {
        fd_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd_ < 0) return std::nullopt;
    }
    if (buffer_.empty()) buffer_.resize(4096);
    size_t used = 0;
    for (;;) {
        const ssize_t n = ::pread(fd_, buffer_.data() + used, buffer_.size() - used,
                                  static_cast<off_t>(used));
        if (n < 0) {
            if (errno == EINTR) continue;
            close();
            return std::nullopt;
        }
        used += static_cast<size_t>(n);
        // procfs and sysfs fill the whole request unless the file ends first, so a short
        // read is the end and costs no second syscall.
        if (used < buffer_.size()) break;
        buffer_.resize(buffer_.size() * 2);
    }
    return std::string_view(buffer_.data(), used);
}

std::optional<std::string> readTrimmed(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    std::string out;
    char buf[4096];
    for (;;) {
        const ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR) continue;
            ::close(fd);
            return std::nullopt;
        }
        if (n == 0) break;
        out.append(buf, static_cast<size_t>(n));
        if (out.size() > (1u << 20)) break;  // a value file is never this large
    }
    ::close(fd);
    while (!out.empty() && (out.back() == '\n' || out.back() == ' ' || out.back() == '\t' ||
                            out.back() == '\r' || out.back() == '\0'))
        out.pop_back();
    return out;
}

std::string underRoot(const std::string& root, std::string_view absolutePath) {
    if (root.empty() || root == "/") return std::string(absolutePath);
    std::string out = root;
    if (out.back() == '/') out.pop_back();
    if (!absolutePath.empty() && absolutePath.front() != '/') out += '/';
    out += absolutePath;
    return out;
}

}  // namespace trotlet::platform
