#include "platform/linux/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace trotlet::platform {
namespace {

std::string errnoText(const char* what, const std::string& path) {
    return std::string(what) + " " + path + ": " + std::strerror(errno);
}

std::string directoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

}  // namespace

WriteResult writeAtomically(const std::string& path, std::string_view contents) {
    const std::string temp = path + ".tmp";
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) return {false, errnoText("cannot create", temp)};

    const char* data = contents.data();
    size_t left = contents.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            WriteResult failure{false, errnoText("cannot write", temp)};
            ::close(fd);
            ::unlink(temp.c_str());
            return failure;
        }
        data += n;
        left -= static_cast<size_t>(n);
    }
    // Without the fsync a power cut after the rename can leave an empty file on ext4.
    if (::fsync(fd) != 0) {
        WriteResult failure{false, errnoText("cannot flush", temp)};
        ::close(fd);
        ::unlink(temp.c_str());
        return failure;
    }
    if (::close(fd) != 0) {
        WriteResult failure{false, errnoText("cannot close", temp)};
        ::unlink(temp.c_str());
        return failure;
    }
    if (::rename(temp.c_str(), path.c_str()) != 0) {
        WriteResult failure{false, errnoText("cannot replace", path)};
        ::unlink(temp.c_str());
        return failure;
    }
    // Make the rename itself durable.
    const int dir = ::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return {};
}

ReadResult readWholeFile(const std::string& path) {
    ReadResult result;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        result.status = errno == ENOENT ? ReadStatus::missing : ReadStatus::unreadable;
        if (result.status == ReadStatus::unreadable) result.error = errnoText("cannot open", path);
        return result;
    }
    char buffer[16384];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0) {
            if (errno == EINTR) continue;
            result.status = ReadStatus::unreadable;
            result.error = errnoText("cannot read", path);
            result.contents.clear();
            ::close(fd);
            return result;
        }
        if (n == 0) break;
        result.contents.append(buffer, static_cast<size_t>(n));
    }
    ::close(fd);
    result.status = ReadStatus::ok;
    return result;
}

bool ensureDirectory(const std::string& path) {
    if (path.empty()) return false;
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
    const std::string parent = directoryOf(path);
    if (parent != path && parent != "." && parent != "/" && !ensureDirectory(parent)) return false;
    return ::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST;
}

std::string stampedSiblingName(const std::string& path, std::string_view tag, std::string_view stamp) {
    const auto slash = path.rfind('/');
    const size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const auto dot = path.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot > nameStart;
    const std::string stem = path.substr(0, hasExtension ? dot : path.size());
    const std::string extension = hasExtension ? path.substr(dot) : std::string();
    std::string name = stem;
    if (!tag.empty()) name.append(".").append(tag).append("-");
    else name.append(".");
    name.append(stamp).append(extension);
    return name;
}

std::optional<std::string> keepAside(const std::string& path, std::string_view tag,
                                     std::string_view stamp) {
    const std::string base = stampedSiblingName(path, tag, stamp);
    std::string target = base;
    struct stat st {};
    for (int n = 1; ::lstat(target.c_str(), &st) == 0; ++n) {
        const auto dot = base.rfind('.');
        target = base.substr(0, dot) + "-" + std::to_string(n) + base.substr(dot);
    }
    if (::rename(path.c_str(), target.c_str()) != 0) return std::nullopt;
    return target;
}

std::string localStamp(long long unixSeconds) {
    const std::time_t t = static_cast<std::time_t>(unixSeconds);
    std::tm tm {};
    ::localtime_r(&t, &tm);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &tm);
    return text;
}

}  // namespace trotlet::platform
