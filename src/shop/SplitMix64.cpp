#include "shop/SplitMix64.h"

#include <cstdio>

namespace trotlet::shop {

std::string IdGenerator::next() {
    const uint64_t high = random_.next();
    const uint64_t low = random_.next();
    const unsigned a = static_cast<unsigned>(high >> 32);
    const unsigned b = static_cast<unsigned>((high >> 16) & 0xFFFF);
    const unsigned c = static_cast<unsigned>((high & 0x0FFF) | 0x4000);
    const unsigned d = static_cast<unsigned>(((low >> 48) & 0x3FFF) | 0x8000);
    const unsigned long long e = low & 0xFFFFFFFFFFFFULL;
    char text[40];
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%04X-%012llX", a, b, c, d, e);
    return text;
}

}  // namespace trotlet::shop
