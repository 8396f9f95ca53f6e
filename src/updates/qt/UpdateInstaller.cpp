#include "updates/qt/UpdateInstaller.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include <QProcess>

#include "platform/linux/AtomicFile.h"
#include "platform/linux/InstallPlaces.h"
#include "updates/InstallDecision.h"
#include "updates/qt/DownloadCrypto.h"
#include "updates/qt/UserInstall.h"

namespace fs = std::filesystem;

namespace trotlet::updates {

namespace {

// The program inside an unpacked archive: at its top or in its one top folder.
std::string findProgram(const fs::path& unpacked) {
    std::error_code ec;
    const fs::path direct = unpacked / std::string(programFileName);
    if (fs::is_regular_file(direct, ec)) return direct.string();
    for (const auto& entry : fs::directory_iterator(unpacked, ec)) {
        const fs::path inside = entry.path() / std::string(programFileName);
        if (entry.is_directory(ec) && fs::is_regular_file(inside, ec)) return inside.string();
    }
    return {};
}

bool unpack(const std::string& archive, const std::string& into, std::string* problem) {
    QProcess tar;
    // GNU tar drops leading slashes and refuses ".." members by itself; the owner stays us.
    tar.start(QStringLiteral("tar"), {QStringLiteral("-xzf"), QString::fromStdString(archive),
                                      QStringLiteral("--no-same-owner"), QStringLiteral("-C"),
                                      QString::fromStdString(into)});
    if (!tar.waitForStarted(5000) || !tar.waitForFinished(60000)) {
        *problem = "tar did not run";
        tar.kill();
        return false;
    }
    if (tar.exitStatus() != QProcess::NormalExit || tar.exitCode() != 0) {
        *problem = QString::fromLocal8Bit(tar.readAllStandardError()).trimmed().toStdString();
        return false;
    }
    return true;
}

}  // namespace

UpdateInstaller::UpdateInstaller(std::string installFolder, std::string publicKey, BuildId current)
    : folder_(std::move(installFolder)),
      publicKey_(std::move(publicKey)),
      current_(std::move(current)) {}

InstallOutcome UpdateInstaller::refuse(UpdateRefusal refusal, const std::string& detail) const {
    std::error_code ec;
    fs::remove_all(fs::path(folder_) / stagingName(), ec);
    InstallOutcome out;
    out.refusal = refusal;
    out.message = refusalText(refusal, detail);
    return out;
}

InstallOutcome UpdateInstaller::install(const QByteArray& archive, const UpdateOffer& offer) const {
    if (!offer.download) return refuse(UpdateRefusal::noDownload);
    const ReleaseDownload& d = *offer.download;
    const auto size = static_cast<std::int64_t>(archive.size());
    if (size < d.size)
        return refuse(UpdateRefusal::incompleteDownload,
                      std::to_string(size) + " of " + std::to_string(d.size) + " bytes");
    if (size > d.size)
        return refuse(UpdateRefusal::wrongSize,
                      std::to_string(size) + " bytes, " + std::to_string(d.size) + " announced");
    const std::string_view bytes(archive.constData(), static_cast<size_t>(archive.size()));
    if (crypto::sha256Hex(bytes) != d.sha256) return refuse(UpdateRefusal::wrongHash);
    if (!crypto::verifyEd25519(publicKey_, bytes, d.signature))
        return refuse(UpdateRefusal::badSignature);
    if (!(offer.release.id > current_))
        return refuse(UpdateRefusal::downgrade, offer.release.version + " is not newer");

    const fs::path staging = fs::path(folder_) / stagingName();
    std::error_code ec;
    fs::remove_all(staging, ec);
    if (!fs::create_directories(staging / "unpacked", ec))
        return refuse(UpdateRefusal::cannotWrite, ec.message());
    const std::string archivePath = (staging / "download.tar.gz").string();
    if (auto w = platform::writeAtomically(archivePath, bytes); !w)
        return refuse(UpdateRefusal::cannotWrite, w.error);
    std::string problem;
    if (!unpack(archivePath, (staging / "unpacked").string(), &problem))
        return refuse(UpdateRefusal::unreadableArchive, problem);
    const std::string fresh = findProgram(staging / "unpacked");
    if (fresh.empty()) return refuse(UpdateRefusal::unreadableArchive, "no program inside");

    const SelfCheck check = runSelfCheck(fresh);
    if (!check.passed()) return refuse(UpdateRefusal::doesNotRun, check.problem);
    if (!(check.build->version == offer.release.id.version))
        return refuse(UpdateRefusal::unexpectedBuild, check.build->version.text());
    if (!(*check.build > current_))
        return refuse(UpdateRefusal::downgrade, check.build->version.text() + " is not newer");

    // Keep the running program under its second name, then move the new one over the first:
    // at every moment "trotlet" is a whole program, the old or the new.
    const std::string program = folder_ + "/" + std::string(programFileName);
    const std::string previous = folder_ + "/" + previousName();
    ::unlink(previous.c_str());
    if (::access(program.c_str(), F_OK) == 0 && ::link(program.c_str(), previous.c_str()) != 0 &&
        !copyFileAtomically(program, previous, 0755, &problem))
        return refuse(UpdateRefusal::cannotWrite, "cannot keep the running copy");
    ::chmod(fresh.c_str(), 0755);
    if (::rename(fresh.c_str(), program.c_str()) != 0) {
        ::unlink(previous.c_str());
        return refuse(UpdateRefusal::cannotWrite, "cannot put the new program in place");
    }
    const std::string unpackedFolder = fs::path(fresh).parent_path().string();
    for (const char* name : {desktopFileName, metainfoFileName, readmeFileName, iconFileName}) {
        const std::string from = unpackedFolder + "/" + name;
        if (fs::is_regular_file(from, ec))
            copyFileAtomically(from, folder_ + "/" + name, 0644, nullptr);
    }
    fs::remove(archivePath, ec);

    InstallOutcome out;
    out.ok = true;
    out.program = program;
    out.installed = check.build;
    out.message = "Installed Trotlet " + check.build->version.text() + ".";
    return out;
}

bool UpdateInstaller::finishPendingUpdate(const std::string& runningProgram) {
    const fs::path program = platform::resolvedPath(runningProgram);
    if (program.filename() != std::string(programFileName)) return false;
    const fs::path folder = program.parent_path();
    std::error_code ec;
    if (!fs::remove(folder / previousName(), ec)) return false;
    fs::remove_all(folder / stagingName(), ec);
    return true;
}

}  // namespace trotlet::updates
