#include "updates/PanelNotice.h"

namespace trotlet::updates {

std::string_view panelNoticeKindName(PanelNotice::Kind kind) {
    switch (kind) {
        case PanelNotice::Kind::installOffer:
            return "installOffer";
        case PanelNotice::Kind::update:
            return "update";
        case PanelNotice::Kind::whatsNew:
            return "whatsNew";
    }
    return "whatsNew";
}

std::optional<PanelNotice> panelNotice(const std::optional<InstallDecision>& installOffer,
                                       const UpdateBanner& update,
                                       const std::vector<ReleaseNote>& whatsNew,
                                       const std::string& currentVersion) {
    PanelNotice n;
    if (installOffer && installOffer->shouldOffer) {
        n.kind = PanelNotice::Kind::installOffer;
        n.title = "Install Trotlet for you?";
        std::string folder = installOffer->target;
        if (const auto slash = folder.rfind('/'); slash != std::string::npos) folder.resize(slash);
        // The rule's reason up to its advice: the notice gives its own.
        std::string reason = installOffer->reason.substr(0, installOffer->reason.find(';'));
        if (!reason.empty() && reason.back() == '.') reason.pop_back();
        n.detail = reason + ". It goes to " + folder + ", with a launcher in the app menu.";
        n.primaryAction = "Install";
        n.secondaryAction = "Not now";
        return n;
    }
    if (update.visible) {
        n.kind = PanelNotice::Kind::update;
        n.title = update.title;
        n.detail = update.detail;
        n.lines = update.notes;
        n.command = update.command;
        n.primaryAction = update.actionLabel;
        n.secondaryAction = update.action == UpdateBanner::Action::none ? "" : "Later";
        return n;
    }
    if (!whatsNew.empty()) {
        n.kind = PanelNotice::Kind::whatsNew;
        n.title = "What's new in Trotlet " + currentVersion;
        // Notes of several releases name the release each line belongs to.
        const bool several = whatsNew.size() > 1;
        for (const auto& note : whatsNew)
            for (const auto& line : note.lines)
                n.lines.push_back(several ? note.version + ": " + line : line);
        n.primaryAction = "Got it";
        return n;
    }
    return std::nullopt;
}

}  // namespace trotlet::updates
