#pragma once

#include <optional>
#include <string>
#include <vector>

#include "updates/InstallDecision.h"
#include "updates/ReleaseNotes.h"
#include "updates/UpdateStatus.h"

namespace trotlet::updates {

// The one notice the panel shows under its header, if any: the offer to install for this
// user, a newer version, or What's new, in that order (the install offer is made once and the
// copy may be gone tomorrow; the notes can wait).
struct PanelNotice {
    enum class Kind { installOffer, update, whatsNew };
    Kind kind = Kind::whatsNew;
    std::string title;
    std::string detail;              // a sentence under the title
    std::vector<std::string> lines;  // notes, one bullet each
    std::string command;             // a command to run, shown as code
    std::string primaryAction;       // the main button's label; empty: none
    std::string secondaryAction;     // the quiet button's label; empty: none

    friend bool operator==(const PanelNotice&, const PanelNotice&) = default;
};

std::string_view panelNoticeKindName(PanelNotice::Kind kind);

// `installOffer` is the decision for the running copy when the offer stands; `whatsNew` the
// notes offered now (newest first); `currentVersion` names them.
std::optional<PanelNotice> panelNotice(const std::optional<InstallDecision>& installOffer,
                                       const UpdateBanner& update,
                                       const std::vector<ReleaseNote>& whatsNew,
                                       const std::string& currentVersion);

}  // namespace trotlet::updates
