#include "updates/Version.h"

#include <charconv>

namespace trotlet::updates {

std::optional<Version> Version::parse(std::string_view text) {
    Version v;
    size_t start = 0;
    while (true) {
        const size_t dot = text.find('.', start);
        const std::string_view piece = text.substr(
            start, dot == std::string_view::npos ? std::string_view::npos : dot - start);
        // Digits only: no sign, no blanks, no suffix such as "-rc1".
        if (piece.empty() || piece.size() > 9) return std::nullopt;
        std::uint32_t number = 0;
        auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), number);
        if (error != std::errc() || end != piece.data() + piece.size()) return std::nullopt;
        v.parts.push_back(number);
        if (v.parts.size() > 4) return std::nullopt;
        if (dot == std::string_view::npos) break;
        start = dot + 1;
    }
    return v;
}

std::string Version::text() const {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i) out += '.';
        out += std::to_string(parts[i]);
    }
    return out;
}

std::strong_ordering operator<=>(const Version& a, const Version& b) {
    const size_t n = std::max(a.parts.size(), b.parts.size());
    for (size_t i = 0; i < n; ++i) {
        const std::uint32_t x = i < a.parts.size() ? a.parts[i] : 0;
        const std::uint32_t y = i < b.parts.size() ? b.parts[i] : 0;
        if (x != y) return x <=> y;
    }
    return std::strong_ordering::equal;
}

std::optional<BuildId> parseHelpBanner(std::string_view line) {
    constexpr std::string_view prefix = "Trotlet ";
    if (line.substr(0, prefix.size()) != prefix) return std::nullopt;
    line.remove_prefix(prefix.size());
    const size_t open = line.find(" (");
    const size_t close = line.find("):");
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    auto version = Version::parse(line.substr(0, open));
    const std::string_view buildText = line.substr(open + 2, close - open - 2);
    std::int64_t build = 0;
    auto [end, error] =
        std::from_chars(buildText.data(), buildText.data() + buildText.size(), build);
    if (!version || error != std::errc() || end != buildText.data() + buildText.size())
        return std::nullopt;
    return BuildId{*version, build};
}

}  // namespace trotlet::updates
