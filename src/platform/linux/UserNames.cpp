#include "platform/linux/UserNames.h"

#include <sys/stat.h>

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextScan.h"

namespace trotlet::platform {

UserNames::UserNames(const std::string& root) : path_(underRoot(root, "/etc/passwd")) { refresh(); }

std::unordered_map<unsigned, std::string> UserNames::parse(std::string_view text) {
    std::unordered_map<unsigned, std::string> out;
    TextScan lines(text);
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        if (line.empty() || line.front() == '#') continue;
        // name:password:uid:gid:gecos:home:shell
        const size_t c1 = line.find(':');
        const size_t c2 = c1 == std::string_view::npos ? c1 : line.find(':', c1 + 1);
        const size_t c3 = c2 == std::string_view::npos ? c2 : line.find(':', c2 + 1);
        if (c3 == std::string_view::npos || c1 == 0) continue;
        auto uid = TextScan::parseU64(line.substr(c2 + 1, c3 - c2 - 1));
        if (!uid || *uid > 0xFFFFFFFFu) continue;
        // The first entry for a uid wins, as getpwuid does.
        out.emplace(static_cast<unsigned>(*uid), std::string(line.substr(0, c1)));
    }
    return out;
}

void UserNames::refresh() {
    struct stat st {};
    if (::stat(path_.c_str(), &st) != 0) {
        names_.clear();
        size_ = -1;
        return;
    }
    if (st.st_mtim.tv_sec == stamp_.tv_sec && st.st_mtim.tv_nsec == stamp_.tv_nsec &&
        st.st_size == size_)
        return;
    stamp_ = st.st_mtim;
    size_ = st.st_size;
    if (auto text = readTrimmed(path_)) names_ = parse(*text);
    else names_.clear();
}

std::optional<std::string> UserNames::nameOf(unsigned uid) const {
    auto it = names_.find(uid);
    if (it == names_.end()) return std::nullopt;
    return it->second;
}

}  // namespace trotlet::platform
