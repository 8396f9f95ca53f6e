#pragma once

#include <optional>
#include <string>

#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// The chosen place and where the weather shows. The place is kept in the weather location's
// own encoding; the weather layer decodes it and treats an undecodable string as no place.
class WeatherSettings : public SettingsGroup {
public:
    explicit WeatherSettings(DefaultsStore& store);

    const std::optional<std::string>& encodedLocation() const { return encodedLocation_; }
    bool showInHeader() const { return showInHeader_; }
    bool showInMenuBar() const { return showInMenuBar_; }

    // No value forgets the place (the key is removed).
    void setEncodedLocation(std::optional<std::string> encoded);
    void setShowInHeader(bool value);
    void setShowInMenuBar(bool value);

private:
    std::optional<std::string> encodedLocation_;
    bool showInHeader_;
    bool showInMenuBar_;
};

}  // namespace trotlet::settings
