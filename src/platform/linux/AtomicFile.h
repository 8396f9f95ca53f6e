#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trotlet::platform {

// Whole-file reads and crash-safe writes for the app's small JSON files.
//
// `writeAtomically` writes "<path>.tmp", flushes it to disk and renames it over the file,
// so a crash or a full disk leaves either the old file or the new one, never a torn one.
// Failures are returned as a message, never thrown.
struct WriteResult {
    bool ok = true;
    std::string error;  // human-readable, empty when ok
    explicit operator bool() const { return ok; }
};

WriteResult writeAtomically(const std::string& path, std::string_view contents);

enum class ReadStatus { ok, missing, unreadable };

struct ReadResult {
    ReadStatus status = ReadStatus::missing;
    std::string contents;
    std::string error;  // for unreadable: the reason (errno text)
};

ReadResult readWholeFile(const std::string& path);

// Creates the directory and its parents with mode 0700 when missing.
bool ensureDirectory(const std::string& path);

// "<dir>/<stem>.<yyyyMMdd-HHmmss><ext>" for a file kept aside, e.g. "shop.corrupt-20261122-043000.json".
// The stamp is given by the caller (local time), so the name is testable.
std::string stampedSiblingName(const std::string& path, std::string_view tag, std::string_view stamp);

// Renames `path` to its stamped sibling; when that name is taken, appends "-1", "-2", ...
// Returns the new path, or nothing when the rename failed.
std::optional<std::string> keepAside(const std::string& path, std::string_view tag,
                                     std::string_view stamp);

// "yyyyMMdd-HHmmss" for a Unix time in the local time zone.
std::string localStamp(long long unixSeconds);

}  // namespace trotlet::platform
