#include "processes/ProcessQuery.h"

#include <algorithm>
#include <cctype>

namespace trotlet::processes {
namespace {

unsigned char lower(char c) {
    return static_cast<unsigned char>(std::tolower(static_cast<unsigned char>(c)));
}

// Whether `haystack` contains `needle` (already lower case), ignoring ASCII case. No copy: the
// list runs this for every process on every keystroke.
bool containsFolded(std::string_view haystack, std::string_view needle) {
    if (needle.size() > haystack.size()) return false;
    const std::size_t last = haystack.size() - needle.size();
    const unsigned char first = static_cast<unsigned char>(needle[0]);
    for (std::size_t i = 0; i <= last; ++i) {
        if (lower(haystack[i]) != first) continue;
        std::size_t k = 1;
        while (k < needle.size() && lower(haystack[i + k]) == static_cast<unsigned char>(needle[k]))
            ++k;
        if (k == needle.size()) return true;
    }
    return false;
}

bool startsWithNumber(std::int32_t pid, std::string_view digits) {
    char buffer[16];
    int n = 0;
    std::uint32_t v = static_cast<std::uint32_t>(pid);
    do {
        buffer[n++] = char('0' + v % 10);
        v /= 10;
    } while (v && n < 16);
    if (std::size_t(n) < digits.size()) return false;
    for (std::size_t i = 0; i < digits.size(); ++i)
        if (buffer[n - 1 - int(i)] != digits[i]) return false;
    return true;
}

}  // namespace

ProcessQuery::ProcessQuery(std::string_view text) {
    const auto notSpace = [](char c) { return !std::isspace(static_cast<unsigned char>(c)); };
    const auto begin = std::find_if(text.begin(), text.end(), notSpace);
    const auto end = std::find_if(text.rbegin(), text.rend(), notSpace).base();
    if (begin < end) text_.assign(begin, end);
    needle_.reserve(text_.size());
    for (char c : text_) needle_.push_back(char(lower(c)));
    if (!text_.empty() &&
        std::all_of(text_.begin(), text_.end(), [](char c) { return c >= '0' && c <= '9'; }))
        pidPrefix_ = text_;
}

bool ProcessQuery::matches(const metrics::ProcessRow& row) const {
    if (needle_.empty()) return true;
    if (!pidPrefix_.empty() && startsWithNumber(row.pid, pidPrefix_)) return true;
    if (containsFolded(row.name, needle_)) return true;
    return row.executablePath && containsFolded(*row.executablePath, needle_);
}

}  // namespace trotlet::processes
