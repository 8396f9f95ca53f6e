#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace trotlet::platform {

// Allocation-free scanning of /proc and /sys text. A cursor over a view; every parse returns an
// absent value on malformed input instead of guessing.
class TextScan {
public:
    explicit TextScan(std::string_view text) : text_(text) {}

    bool atEnd() const { return pos_ >= text_.size(); }
    std::string_view rest() const { return text_.substr(pos_); }

    void skipSpaces() {
        while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
    }

    // The next run of non-blank characters on this line.
    std::string_view token() {
        skipSpaces();
        const size_t start = pos_;
        while (pos_ < text_.size() && text_[pos_] != ' ' && text_[pos_] != '\t' &&
               text_[pos_] != '\n')
            ++pos_;
        return text_.substr(start, pos_ - start);
    }

    // The rest of the current line (without the newline), moving past it.
    std::string_view line() {
        const size_t start = pos_;
        const size_t nl = text_.find('\n', pos_);
        const size_t end = nl == std::string_view::npos ? text_.size() : nl;
        pos_ = nl == std::string_view::npos ? text_.size() : nl + 1;
        return text_.substr(start, end - start);
    }

    std::optional<std::uint64_t> u64() { return parseU64(token()); }
    std::optional<std::int64_t> i64() { return parseI64(token()); }
    std::optional<double> number() { return parseDouble(token()); }

    static std::optional<std::uint64_t> parseU64(std::string_view s) {
        std::uint64_t v = 0;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
        if (ec != std::errc() || p != s.data() + s.size() || s.empty()) return std::nullopt;
        return v;
    }
    static std::optional<std::int64_t> parseI64(std::string_view s) {
        std::int64_t v = 0;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
        if (ec != std::errc() || p != s.data() + s.size() || s.empty()) return std::nullopt;
        return v;
    }
    static std::optional<std::uint64_t> parseHex(std::string_view s) {
        std::uint64_t v = 0;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v, 16);
        if (ec != std::errc() || p != s.data() + s.size() || s.empty()) return std::nullopt;
        return v;
    }
    // The kernel prints no "nan" or "inf", so a file that holds one is malformed.
    static std::optional<double> parseDouble(std::string_view s) {
        double v = 0;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
        if (ec != std::errc() || p != s.data() + s.size() || s.empty() || !std::isfinite(v))
            return std::nullopt;
        return v;
    }

private:
    std::string_view text_;
    size_t pos_ = 0;
};

// Leading and trailing blanks removed.
inline std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\n')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\n' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

// "KEY=value" or "Key: value" lookup in a small text (os-release, uevent, meminfo-like files).
inline std::optional<std::string_view> valueAfter(std::string_view text, std::string_view key,
                                                  char separator) {
    TextScan scan(text);
    while (!scan.atEnd()) {
        std::string_view l = scan.line();
        if (l.size() > key.size() && l.substr(0, key.size()) == key && l[key.size()] == separator)
            return trimmed(l.substr(key.size() + 1));
    }
    return std::nullopt;
}

}  // namespace trotlet::platform
