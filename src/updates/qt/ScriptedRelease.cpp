#include "updates/qt/ScriptedRelease.h"

#include <filesystem>
#include <system_error>

#include <QProcess>

#include "platform/linux/AtomicFile.h"
#include "updates/qt/DownloadCrypto.h"
#include "updates/qt/UserInstall.h"

namespace fs = std::filesystem;

namespace trotlet::updates {

std::string scriptedProgram(const BuildId& build) {
    return "#!/bin/sh\n"
           "echo 'Trotlet " +
           build.version.text() + " (" + std::to_string(build.build) +
           "): a menu bar system monitor with a running mascot.'\n";
}

std::optional<ScriptedRelease> makeScriptedRelease(const std::string& workDir, const BuildId& build,
                                                   const std::string& arch, const std::string& url,
                                                   const std::string& privateKey,
                                                   std::string* error) {
    std::string ignored;
    if (!error) error = &ignored;
    const std::string name = "trotlet-" + build.version.text() + "-linux-" + arch;
    const fs::path folder = fs::path(workDir) / name;
    std::error_code ec;
    fs::remove_all(folder, ec);
    fs::create_directories(folder, ec);
    const std::string program = (folder / "trotlet").string();
    if (!platform::writeAtomically(program, scriptedProgram(build)) ||
        !platform::writeAtomically((folder / readmeFileName).string(), "# Trotlet\n")) {
        *error = "cannot write " + folder.string();
        return std::nullopt;
    }
    fs::permissions(program,
                    fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                        fs::perms::others_read | fs::perms::others_exec,
                    ec);
    const std::string archivePath = (fs::path(workDir) / (name + ".tar.gz")).string();
    QProcess tar;
    tar.start(QStringLiteral("tar"),
              {QStringLiteral("-czf"), QString::fromStdString(archivePath), QStringLiteral("-C"),
               QString::fromStdString(workDir), QString::fromStdString(name)});
    if (!tar.waitForFinished(30000) || tar.exitCode() != 0) {
        *error = "tar failed: " + QString::fromLocal8Bit(tar.readAllStandardError()).toStdString();
        return std::nullopt;
    }
    const auto read = platform::readWholeFile(archivePath);
    const auto signature = crypto::signEd25519(privateKey, read.contents);
    if (read.status != platform::ReadStatus::ok || !signature) {
        *error = "cannot read or sign " + archivePath;
        return std::nullopt;
    }
    ScriptedRelease out;
    out.archive = QByteArray::fromStdString(read.contents);
    out.release.id = build;
    out.release.version = build.version.text();
    out.release.date = "2026-12-01";
    out.release.notes = {"Faster and calmer."};
    out.release.downloads.push_back(ReleaseDownload{arch, url,
                                                    static_cast<std::int64_t>(read.contents.size()),
                                                    crypto::sha256Hex(read.contents), *signature});
    return out;
}

}  // namespace trotlet::updates
