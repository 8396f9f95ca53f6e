#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trotlet::updates {

// A release number such as "0.2.1": one to four whole numbers joined by dots. Missing parts
// count as zero, so "1.2" and "1.2.0" are the same release.
struct Version {
    std::vector<std::uint32_t> parts;

    static std::optional<Version> parse(std::string_view text);
    std::string text() const;
    friend std::strong_ordering operator<=>(const Version& a, const Version& b);
    friend bool operator==(const Version& a, const Version& b) { return (a <=> b) == 0; }
};

// A version with its build number: the build orders two builds of the same version.
struct BuildId {
    Version version;
    std::int64_t build = 0;

    friend std::strong_ordering operator<=>(const BuildId& a, const BuildId& b) {
        if (auto c = a.version <=> b.version; c != 0) return c;
        return a.build <=> b.build;
    }
    friend bool operator==(const BuildId& a, const BuildId& b) { return (a <=> b) == 0; }
};

// The first line of `trotlet --help`: "Trotlet <version> (<build>): ...". It is how a copy on
// disk says which build it is without being started as an app.
std::optional<BuildId> parseHelpBanner(std::string_view firstLine);

}  // namespace trotlet::updates
