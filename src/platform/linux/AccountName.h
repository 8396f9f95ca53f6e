#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trotlet::platform {

// The user's first name for the panel's greeting, from the full-name (GECOS) field of
// <root>/etc/passwd. No NSS call is made: a user known only to a directory service has none,
// and the greeting simply leaves the name out.
std::optional<std::string> accountFirstName(unsigned uid, const std::string& root = "/");

// The first name in a GECOS field: its first comma-separated part, without leading titles
// ("Dr."), first word; "&" stands for the login name with a capital, as finger reads it. None
// for an empty field, or one that only repeats the login name in lower case (no name was set).
std::optional<std::string> firstNameFromGecos(std::string_view gecos, std::string_view login);

}  // namespace trotlet::platform
