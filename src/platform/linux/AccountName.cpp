#include "platform/linux/AccountName.h"

#include <vector>

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextScan.h"

namespace trotlet::platform {

std::optional<std::string> firstNameFromGecos(std::string_view gecos, std::string_view login) {
    const std::string_view full = gecos.substr(0, gecos.find(','));
    std::string expanded;
    for (char c : full) {
        if (c != '&') {
            expanded += c;
            continue;
        }
        std::string name(login);
        if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') name[0] = char(name[0] - 'a' + 'A');
        expanded += name;
    }
    std::vector<std::string> words;
    std::string word;
    for (char c : expanded + ' ') {
        if (c == ' ' || c == '\t') {
            if (!word.empty()) words.push_back(std::move(word));
            word.clear();
        } else {
            word += c;
        }
    }
    std::size_t first = 0;
    while (first + 1 < words.size() && words[first].back() == '.') ++first;
    if (words.empty()) return std::nullopt;
    const std::string& name = words[first];
    if (name == login && words.size() == 1) return std::nullopt;
    return name;
}

std::optional<std::string> accountFirstName(unsigned uid, const std::string& root) {
    const auto text = readTrimmed(underRoot(root, "/etc/passwd"));
    if (!text) return std::nullopt;
    TextScan lines(*text);
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        if (line.empty() || line.front() == '#') continue;
        // name:password:uid:gid:gecos:home:shell
        std::string_view fields[5];
        std::size_t start = 0;
        bool complete = true;
        for (auto& field : fields) {
            const std::size_t end = line.find(':', start);
            if (end == std::string_view::npos) {
                complete = false;
                break;
            }
            field = line.substr(start, end - start);
            start = end + 1;
        }
        if (!complete) continue;
        const auto id = TextScan::parseU64(fields[2]);
        // The first entry for a uid wins, as getpwuid does.
        if (id && *id == uid) return firstNameFromGecos(fields[4], fields[0]);
    }
    return std::nullopt;
}

}  // namespace trotlet::platform
