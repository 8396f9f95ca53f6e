#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QByteArray>

#include "updates/ReleaseFeed.h"

namespace trotlet::updates {

// Stand-in releases for the update self-check and tests: a tar.gz shaped like the real
// archive ("trotlet-<version>-linux-<arch>/trotlet" and its files) whose program is a small
// script that answers `--help` with the given build's banner, signed with a key of the
// caller's.
struct ScriptedRelease {
    QByteArray archive;
    FeedRelease release;  // one download, for `arch` at `url`
};

// `workDir` is a scratch folder. Nothing on failure (`error` says why).
std::optional<ScriptedRelease> makeScriptedRelease(const std::string& workDir, const BuildId& build,
                                                   const std::string& arch, const std::string& url,
                                                   const std::string& privateKey,
                                                   std::string* error);

// The program inside such an archive, on its own.
std::string scriptedProgram(const BuildId& build);

}  // namespace trotlet::updates
