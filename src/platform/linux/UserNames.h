#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace trotlet::platform {

// uid → user name from /etc/passwd. The file is parsed once and again only when its
// modification time or size changes; no NSS call is made, because a network directory lookup
// could block a tick. Users known only to a directory service are absent.
class UserNames {
public:
    explicit UserNames(const std::string& root = "/");

    // Checks the file's stamp (one stat) and re-reads it when it changed.
    void refresh();
    std::optional<std::string> nameOf(unsigned uid) const;

    static std::unordered_map<unsigned, std::string> parse(std::string_view passwd);

private:
    std::string path_;
    std::unordered_map<unsigned, std::string> names_;
    std::timespec stamp_{};
    long long size_ = -1;
};

}  // namespace trotlet::platform
