#pragma once

#include <optional>
#include <string>

#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// The Overview's stored layout document, as JSON text; none until the user first edits.
// Decoding and validating the document belong to the layout.
class LayoutSettings : public SettingsGroup {
public:
    explicit LayoutSettings(DefaultsStore& store);

    const std::optional<std::string>& overview() const { return overview_; }
    // No value removes the stored document (a reset to the default layout).
    void setOverview(std::optional<std::string> document);

private:
    std::optional<std::string> overview_;
};

}  // namespace trotlet::settings
