#pragma once

#include <optional>
#include <string>

#include <QByteArray>

#include "updates/UpdatePolicy.h"
#include "updates/Version.h"

namespace trotlet::updates {

struct InstallOutcome {
    bool ok = false;
    std::optional<UpdateRefusal> refusal;
    std::string message;  // the refusal's text, or what was installed
    std::string program;  // the installed program, when ok
    std::optional<BuildId> installed;
};

// Turns a downloaded archive into the installed copy of a user-local install, or refuses it
// and leaves that copy exactly as it was. In order: size, SHA-256 and Ed25519 signature of the
// bytes; unpacking into "<folder>/.update"; a dry run of the new program, which must be the
// announced version and newer than this one; then one rename puts it in place. The old program
// stays as "trotlet.previous" until the new one has started (`finishPendingUpdate`).
class UpdateInstaller {
public:
    UpdateInstaller(std::string installFolder, std::string publicKey, BuildId current);

    InstallOutcome install(const QByteArray& archive, const UpdateOffer& offer) const;

    // Called by a copy that has started: when it is the program of an install folder that
    // still keeps the previous program, the previous one and the unpacked update go.
    static bool finishPendingUpdate(const std::string& runningProgram);

    static std::string previousName() { return "trotlet.previous"; }
    static std::string stagingName() { return ".update"; }

private:
    InstallOutcome refuse(UpdateRefusal refusal, const std::string& detail = {}) const;

    std::string folder_;
    std::string publicKey_;
    BuildId current_;
};

}  // namespace trotlet::updates
