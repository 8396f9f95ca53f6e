#include "updates/InstallDecision.h"

namespace trotlet::updates {

std::string_view installRuleName(InstallRule rule) {
    switch (rule) {
        case InstallRule::missing:
            return "missing";
        case InstallRule::notAProgram:
            return "notAProgram";
        case InstallRule::installFolder:
            return "installFolder";
        case InstallRule::package:
            return "package";
        case InstallRule::systemWide:
            return "systemWide";
        case InstallRule::buildTree:
            return "buildTree";
        case InstallRule::noexecMount:
            return "noexecMount";
        case InstallRule::removableMedia:
            return "removableMedia";
        case InstallRule::download:
            return "download";
        case InstallRule::temporary:
            return "temporary";
        case InstallRule::elsewhere:
            return "elsewhere";
    }
    return "missing";
}

InstallDecision decideInstall(const InstallPathFacts& f, const std::string& installFolder) {
    InstallDecision d;
    auto decide = [&d](InstallRule rule, bool offer, std::string reason) {
        d.rule = rule;
        d.shouldOffer = offer;
        d.reason = std::move(reason);
        return d;
    };
    if (!f.exists) return decide(InstallRule::missing, false, "There is nothing at this path.");
    if (!f.isProgram)
        return decide(InstallRule::notAProgram, false, "This path holds no Trotlet program.");
    d.applicable = true;
    d.target = installFolder + "/" + std::string(programFileName);

    if (f.inInstallFolder)
        return decide(InstallRule::installFolder, false,
                      "Already installed for this user in " + installFolder + ".");
    if (f.underUsr)
        return decide(InstallRule::package, false,
                      "Installed from a package; the package manager keeps it up to date.");
    if (!f.systemPrefix.empty())
        return decide(InstallRule::systemWide, false,
                      "Installed for every user of this computer under " + f.systemPrefix + ".");
    if (!f.buildTreeRoot.empty())
        return decide(InstallRule::buildTree, false,
                      "Runs from a build tree (" + f.buildTreeRoot + ").");
    if (f.onNoexecMount)
        return decide(InstallRule::noexecMount, true,
                      "Sits on a mount that does not let programs run (" + f.mountPoint +
                          "); an installed copy will run.");
    if (f.onRemovableMedia)
        return decide(InstallRule::removableMedia, true,
                      "Runs from a removable medium (" + f.mountPoint +
                          "); install it to keep it when the medium is gone.");
    if (f.inDownloads)
        return decide(InstallRule::download, true,
                      "Runs from the download folder; install it to find it in the app menu.");
    if (!f.temporaryFolder.empty())
        return decide(InstallRule::temporary, true,
                      "Runs from a temporary folder (" + f.temporaryFolder +
                          ") that may be emptied; install it to keep it.");
    return decide(InstallRule::elsewhere, false,
                  "Runs from a folder of the user's choosing; it stays there.");
}

}  // namespace trotlet::updates
