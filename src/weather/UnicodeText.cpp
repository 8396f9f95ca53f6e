#include "weather/UnicodeText.h"

namespace trotlet::weather::unicode {

std::vector<char32_t> decode(std::string_view s) {
    std::vector<char32_t> out;
    out.reserve(s.size());
    size_t i = 0;
    while (i < s.size()) {
        unsigned char b = static_cast<unsigned char>(s[i]);
        int extra = 0;
        char32_t c = 0;
        char32_t min = 0;
        if (b < 0x80) {
            out.push_back(b);
            ++i;
            continue;
        } else if ((b & 0xE0) == 0xC0) {
            extra = 1, c = b & 0x1F, min = 0x80;
        } else if ((b & 0xF0) == 0xE0) {
            extra = 2, c = b & 0x0F, min = 0x800;
        } else if ((b & 0xF8) == 0xF0) {
            extra = 3, c = b & 0x07, min = 0x10000;
        } else {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        if (i + static_cast<size_t>(extra) >= s.size()) {
            // The sequence runs past the end of the text.
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            unsigned char n = static_cast<unsigned char>(s[i + k]);
            if ((n & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            c = (c << 6) | (n & 0x3F);
        }
        if (!ok || c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        out.push_back(c);
        i += static_cast<size_t>(extra) + 1;
    }
    return out;
}

void append(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::string encode(const std::vector<char32_t>& scalars) {
    std::string out;
    for (char32_t c : scalars) append(out, c);
    return out;
}

bool isWhitespace(char32_t c) {
    return c == ' ' || (c >= 0x09 && c <= 0x0D) || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

bool isCombiningMark(char32_t c) {
    return (c >= 0x0300 && c <= 0x036F) || (c >= 0x1AB0 && c <= 0x1AFF) ||
           (c >= 0x1DC0 && c <= 0x1DFF) || (c >= 0x20D0 && c <= 0x20FF) ||
           (c >= 0xFE20 && c <= 0xFE2F) || c == 0x3099 || c == 0x309A;
}

bool isKana(char32_t c) {
    return (c >= 0x3041 && c <= 0x309F) || (c >= 0x30A0 && c <= 0x30FF) ||
           (c >= 0x31F0 && c <= 0x31FF) || (c >= 0xFF66 && c <= 0xFF9F);
}

bool isHan(char32_t c) {
    return (c >= 0x3005 && c <= 0x3007) || (c >= 0x3400 && c <= 0x4DBF) ||
           (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0x20000 && c <= 0x3134F);
}

bool isLatinLetter(char32_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7) ||
           (c >= 0x1E00 && c <= 0x1EFF);
}

std::string trimmed(std::string_view utf8) {
    auto s = decode(utf8);
    size_t b = 0, e = s.size();
    while (b < e && isWhitespace(s[b])) ++b;
    while (e > b && isWhitespace(s[e - 1])) --e;
    return encode(std::vector<char32_t>(s.begin() + static_cast<std::ptrdiff_t>(b),
                                        s.begin() + static_cast<std::ptrdiff_t>(e)));
}

size_t characterCount(std::string_view utf8) {
    size_t n = 0;
    for (char32_t c : decode(utf8))
        if (!isCombiningMark(c)) ++n;
    return n;
}

namespace {

char32_t lower(char32_t c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    // Latin Extended-A pairs capitals on even code points, except the stretch U+0139-U+0148
    // and U+0179-U+017E, which pair them on odd ones.
    if (c >= 0x100 && c <= 0x137 && c % 2 == 0) return c + 1;
    if (c >= 0x139 && c <= 0x148 && c % 2 == 1) return c + 1;
    if (c >= 0x14A && c <= 0x177 && c % 2 == 0) return c + 1;
    if (c >= 0x179 && c <= 0x17E && c % 2 == 1) return c + 1;
    if (c >= 0x1EA0 && c <= 0x1EF9 && c % 2 == 0) return c + 1;  // Vietnamese
    if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 32;     // Greek
    if (c >= 0x410 && c <= 0x42F) return c + 32;                   // Cyrillic
    if (c >= 0x400 && c <= 0x40F) return c + 80;
    return c;
}

}  // namespace

std::string lowercased(std::string_view utf8) {
    std::string out;
    for (char32_t c : decode(utf8)) append(out, lower(c));
    return out;
}

}  // namespace trotlet::weather::unicode
