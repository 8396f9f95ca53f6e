#include "updates/ReleaseFeed.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace trotlet::updates {

namespace {

bool isLowerHex(std::string_view s, size_t length) {
    return s.size() == length && std::all_of(s.begin(), s.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

// 64 bytes encode as 88 base64 characters ending in "==".
bool isSignatureText(std::string_view s) {
    if (s.size() != 88 || s.substr(86) != "==") return false;
    return std::all_of(s.begin(), s.end() - 2, [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '+' || c == '/';
    });
}

std::string text(const nlohmann::json& j, const char* key) {
    auto it = j.find(key);
    return it != j.end() && it->is_string() ? it->get<std::string>() : std::string();
}

std::optional<std::int64_t> whole(const nlohmann::json& j, const char* key) {
    auto it = j.find(key);
    if (it == j.end() || !it->is_number_integer()) return std::nullopt;
    return it->get<std::int64_t>();
}

std::optional<ReleaseDownload> decodeDownload(const nlohmann::json& j) {
    if (!j.is_object()) return std::nullopt;
    ReleaseDownload d;
    d.arch = text(j, "arch");
    d.url = text(j, "url");
    d.sha256 = text(j, "sha256");
    d.signature = text(j, "signature");
    const auto size = whole(j, "size");
    if (d.arch.empty() || !isAllowedUpdateURL(d.url) || !size || *size <= 0 ||
        !isLowerHex(d.sha256, 64) || !isSignatureText(d.signature))
        return std::nullopt;
    d.size = *size;
    return d;
}

}  // namespace

const ReleaseDownload* FeedRelease::downloadFor(std::string_view arch) const {
    for (const auto& d : downloads)
        if (d.arch == arch) return &d;
    return nullptr;
}

std::optional<ReleaseFeed> decodeReleaseFeed(std::string_view json) {
    const auto doc = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
    if (!doc.is_object() || !doc.contains("releases") || !doc["releases"].is_array())
        return std::nullopt;
    ReleaseFeed feed;
    for (const auto& entry : doc["releases"]) {
        if (!entry.is_object()) {
            feed.skipped.push_back("an entry that is not an object");
            continue;
        }
        FeedRelease r;
        r.version = text(entry, "version");
        const auto version = Version::parse(r.version);
        const auto build = whole(entry, "build");
        if (!version || !build || *build < 0) {
            feed.skipped.push_back("\"" + r.version + "\": no version and build number");
            continue;
        }
        r.id = BuildId{*version, *build};
        r.date = text(entry, "date");
        r.page = text(entry, "page");
        if (!r.page.empty() && !isAllowedUpdateURL(r.page)) r.page.clear();
        if (auto it = entry.find("notes"); it != entry.end() && it->is_array())
            for (const auto& line : *it)
                if (line.is_string()) r.notes.push_back(line.get<std::string>());
        if (auto it = entry.find("downloads"); it != entry.end() && it->is_array()) {
            for (const auto& d : *it) {
                if (auto download = decodeDownload(d))
                    r.downloads.push_back(std::move(*download));
                else
                    feed.skipped.push_back(r.version +
                                           ": a download without a secure address, "
                                           "size, SHA-256 or signature");
            }
        }
        feed.releases.push_back(std::move(r));
    }
    if (feed.releases.empty() && !doc["releases"].empty()) return std::nullopt;
    return feed;
}

std::string encodeReleaseFeed(const ReleaseFeed& feed) {
    nlohmann::ordered_json releases = nlohmann::ordered_json::array();
    for (const auto& r : feed.releases) {
        nlohmann::ordered_json j;
        j["version"] = r.version;
        j["build"] = r.id.build;
        j["date"] = r.date;
        j["notes"] = r.notes;
        if (!r.page.empty()) j["page"] = r.page;
        j["downloads"] = nlohmann::ordered_json::array();
        for (const auto& d : r.downloads)
            j["downloads"].push_back({{"arch", d.arch},
                                      {"url", d.url},
                                      {"size", d.size},
                                      {"sha256", d.sha256},
                                      {"signature", d.signature}});
        releases.push_back(std::move(j));
    }
    return nlohmann::ordered_json{{"releases", releases}}.dump(2);
}

bool isAllowedUpdateURL(std::string_view url) {
    auto startsWith = [&](std::string_view prefix) {
        return url.size() > prefix.size() && url.substr(0, prefix.size()) == prefix;
    };
    if (startsWith("https://")) return url.find_first_of(" \t\r\n") == std::string_view::npos;
    for (std::string_view loopback : {"http://127.0.0.1:", "http://127.0.0.1/",
                                      "http://localhost:", "http://localhost/", "http://[::1]:"})
        if (startsWith(loopback)) return true;
    return false;
}

}  // namespace trotlet::updates
