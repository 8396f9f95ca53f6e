#include "updates/qt/UserInstall.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include "DesktopData.h"
#include "platform/linux/AtomicFile.h"
#include "platform/linux/VolumeReader.h"
#include "updates/InstallDecision.h"

namespace trotlet::updates {

namespace {

std::string parentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool isRegularFile(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

SelfCheck runSelfCheck(const std::string& program, int timeoutMs) {
    SelfCheck check;
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    // The dry run must not re-execute itself for the allocator, nor talk to a running copy.
    env.insert(QStringLiteral("TROTLET_DEFAULT_MALLOC"), QStringLiteral("1"));
    process.setProcessEnvironment(env);
    process.start(QString::fromStdString(program), {QStringLiteral("--help")});
    if (!process.waitForStarted(timeoutMs)) {
        check.problem = "the system did not start it (" + process.errorString().toStdString() + ")";
        return check;
    }
    check.started = true;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished(1000);
        check.problem = "it did not finish its dry run";
        return check;
    }
    check.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    const QString err = QString::fromLocal8Bit(process.readAllStandardError());
    static const QRegularExpression missing(
        QStringLiteral("error while loading shared libraries: ([^:]+): cannot open"));
    for (auto it = missing.globalMatch(err); it.hasNext();)
        check.missingLibraries.push_back(it.next().captured(1).toStdString());
    const QByteArray out = process.readAllStandardOutput();
    check.build = parseHelpBanner(out.left(out.indexOf('\n')).toStdString());
    if (!check.missingLibraries.empty())
        check.problem = "a library is missing: " + check.missingLibraries.front();
    else if (check.exitCode != 0)
        check.problem = "its dry run failed with status " + std::to_string(check.exitCode);
    else if (!check.build)
        check.problem = "it is not a Trotlet program";
    return check;
}

RunVerdict checkWillRun(const std::string& program, const platform::InstallPlaces& places) {
    RunVerdict v;
    v.program = program;
    v.exists = isRegularFile(program);
    if (!v.exists) {
        v.reason = "there is no program file here";
        return v;
    }
    v.executable = ::access(program.c_str(), X_OK) == 0;
    const auto mounts = platform::parseMountInfo(
        platform::readWholeFile(platform::underRoot(places.root, "/proc/self/mountinfo")).contents);
    if (const auto* mount = platform::mountHolding(mounts, platform::resolvedPath(program))) {
        v.mountPoint = mount->mountPoint;
        v.noexecMount = mount->noExec;
    }
    if (v.executable && !v.noexecMount) v.selfCheck = runSelfCheck(program);
    v.willRun = v.executable && !v.noexecMount && v.selfCheck.passed();
    if (!v.executable)
        v.reason = "it lacks the execute permission";
    else if (v.noexecMount)
        v.reason = "its mount (" + v.mountPoint + ") does not let programs run";
    else
        v.reason = v.selfCheck.problem;
    return v;
}

std::string quotedExecArgument(const std::string& path) {
    // Desktop entries: inside double quotes ", `, $ and \ take a backslash; the string value
    // escapes backslashes once more, and a literal % is written %%.
    std::string quoted = "\"";
    for (char c : path) {
        if (c == '"' || c == '`' || c == '$') quoted += "\\\\";
        if (c == '\\') quoted += "\\\\\\";
        if (c == '%') quoted += '%';
        quoted += c;
    }
    return quoted + "\"";
}

std::string launcherText(const std::string& program) {
    // The packaged entry with this copy's program path.
    std::string text(desktopEntryText);
    std::string out;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        pos = end + 1;
        if (line.rfind("Exec=", 0) == 0) {
            out += "TryExec=" + program + "\n";
            line = "Exec=" + quotedExecArgument(program);
        } else if (line.rfind("TryExec=", 0) == 0) {
            continue;
        }
        out += line + "\n";
    }
    return out;
}

bool copyFileAtomically(const std::string& source, const std::string& target, unsigned mode,
                        std::string* error) {
    const auto read = platform::readWholeFile(source);
    if (read.status != platform::ReadStatus::ok) {
        if (error) *error = "cannot read " + source;
        return false;
    }
    const std::string staged = target + ".new";
    const auto written = platform::writeAtomically(staged, read.contents);
    if (!written) {
        if (error) *error = written.error;
        return false;
    }
    if (::chmod(staged.c_str(), mode) != 0 || ::rename(staged.c_str(), target.c_str()) != 0) {
        if (error) *error = "cannot put " + target + " in place";
        ::unlink(staged.c_str());
        return false;
    }
    return true;
}

UserInstallResult installForUser(const std::string& source, const std::string& folder,
                                 const platform::InstallPlaces& places) {
    UserInstallResult r;
    std::string program = platform::resolvedPath(source);
    struct stat st {};
    if (::stat(program.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        program += "/" + std::string(programFileName);
    if (!isRegularFile(program)) {
        r.error = "no Trotlet program at " + source;
        return r;
    }
    if (!platform::ensureDirectory(folder)) {
        r.error = "cannot create " + folder;
        return r;
    }
    r.program = folder + "/" + std::string(programFileName);
    if (platform::resolvedPath(program) != platform::resolvedPath(r.program) &&
        !copyFileAtomically(program, r.program, 0755, &r.error))
        return r;

    // The archive's other files travel with the program when they are there.
    const std::string sourceFolder = parentOf(program);
    for (const char* name : {desktopFileName, metainfoFileName, readmeFileName}) {
        const std::string from = sourceFolder + "/" + name, to = folder + "/" + name;
        if (isRegularFile(from) && from != platform::resolvedPath(to) &&
            copyFileAtomically(from, to, 0644, nullptr))
            r.extraFiles.push_back(to);
    }

    if (!platform::ensureDirectory(places.applicationsDir) ||
        !platform::ensureDirectory(places.iconsDir)) {
        r.error = "cannot create the launcher and icon folders";
        return r;
    }
    r.icon = places.iconsDir + "/" + iconFileName;
    if (auto w = platform::writeAtomically(r.icon, appIconSvg); !w) {
        r.error = w.error;
        return r;
    }
    r.launcher = places.applicationsDir + "/" + desktopFileName;
    if (auto w = platform::writeAtomically(r.launcher, launcherText(r.program)); !w) {
        r.error = w.error;
        return r;
    }
    ::chmod(r.launcher.c_str(), 0644);
    ::chmod(r.icon.c_str(), 0644);
    r.ok = true;
    return r;
}

}  // namespace trotlet::updates
