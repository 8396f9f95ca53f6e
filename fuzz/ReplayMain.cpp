// Runs the committed corpus of a fuzz target through the target's own checks, without
// libFuzzer: the normal build registers one test per target, so every crash input committed
// with its fix stays a regression test, and the debug preset replays them under ASan and UBSan.
//   fuzz_replay <target> <file or folder>...

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#define TROTLET_FUZZ_TARGET(name) \
    extern "C" int trotlet_fuzz_##name(const std::uint8_t* data, std::size_t size);
#include "ReplayTargets.inc"
#undef TROTLET_FUZZ_TARGET

namespace {

using Target = int (*)(const std::uint8_t*, std::size_t);

struct Entry {
    const char* name;
    Target run;
};

const Entry targets[] = {
#define TROTLET_FUZZ_TARGET(name) {#name, trotlet_fuzz_##name},
#include "ReplayTargets.inc"
#undef TROTLET_FUZZ_TARGET
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: fuzz_replay <target> <file or folder>...\n");
        return 2;
    }
    const auto* entry = std::find_if(std::begin(targets), std::end(targets), [&](const Entry& e) {
        return std::strcmp(e.name, argv[1]) == 0;
    });
    if (entry == std::end(targets)) {
        std::fprintf(stderr, "fuzz_replay: no target %s\n", argv[1]);
        return 2;
    }
    std::vector<std::filesystem::path> inputs;
    for (int i = 2; i < argc; ++i) {
        const std::filesystem::path path = argv[i];
        if (std::filesystem::is_directory(path)) {
            for (const auto& file : std::filesystem::directory_iterator(path))
                if (file.is_regular_file()) inputs.push_back(file.path());
        } else {
            inputs.push_back(path);
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (const auto& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>()};
        // A crash names the input it was running on.
        std::fprintf(stderr, "%s\n", path.c_str());
        entry->run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%s: %zu inputs replayed\n", entry->name, inputs.size());
    return inputs.empty() ? 1 : 0;
}
