#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "updates/Version.h"

namespace trotlet::updates {

// One downloadable build of a release: the user-local archive for one machine architecture,
// with the SHA-256 and the Ed25519 signature (base64) of its exact bytes.
struct ReleaseDownload {
    std::string arch;  // as `uname -m` says it: "x86_64", "aarch64"
    std::string url;
    std::int64_t size = 0;
    std::string sha256;     // 64 lowercase hex digits
    std::string signature;  // base64 of 64 bytes
};

struct FeedRelease {
    BuildId id;
    std::string version;  // as written in the feed
    std::string date;     // "yyyy-MM-dd"
    std::vector<std::string> notes;
    std::string page;  // where a person can read about it and download it by hand
    std::vector<ReleaseDownload> downloads;

    const ReleaseDownload* downloadFor(std::string_view arch) const;
};

struct ReleaseFeed {
    std::vector<FeedRelease> releases;
    // Entries that were left out, with why; a feed with some bad entries still counts.
    std::vector<std::string> skipped;
};

// The feed document:
//   {"releases": [{"version": "0.2.0", "build": 412, "date": "2026-12-01",
//                  "notes": ["..."], "page": "https://...",
//                  "downloads": [{"arch": "x86_64", "url": "https://...tar.gz",
//                                 "size": 123, "sha256": "...", "signature": "..."}]}]}
// Nothing when the text is not such a document, or when it lists releases none of which
// could be read.
std::optional<ReleaseFeed> decodeReleaseFeed(std::string_view json);

// The document `decodeReleaseFeed` reads.
std::string encodeReleaseFeed(const ReleaseFeed& feed);

// Update traffic goes over HTTPS; plain HTTP is accepted for the loopback address only,
// where the self-checks run their feed server.
bool isAllowedUpdateURL(std::string_view url);

}  // namespace trotlet::updates
