#include "shop/qt/ShopDebugCLI.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sys/stat.h>

#include "shop/EconomySimulator.h"
#include "shop/ShopDebugOptions.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopStateCodec.h"
#include "shop/files/ShopPersistenceVerifier.h"

namespace trotlet::shop {

namespace {

// `--dump-shop` builds its states as of this moment, so the output is the same on every run.
constexpr Timestamp dumpTime = 1793469600.0;  // 2026-10-31T18:00:00Z

int fail(const std::string& message) {
    std::cerr << "trotlet: " << message << "\nRun `Trotlet --help` for usage.\n";
    return 2;
}

void print(const nlohmann::ordered_json& json) { std::cout << json.dump(2) << std::endl; }

// The words after a flag up to the next flag.
std::vector<std::string> wordsAfter(const std::vector<std::string>& args, size_t flag) {
    std::vector<std::string> words;
    for (size_t i = flag + 1; i < args.size() && args[i].rfind("--", 0) != 0; ++i) words.push_back(args[i]);
    return words;
}

bool isDirectory(const char* path) {
    struct stat st {};
    return path && *path && ::stat(path, &st) == 0 && S_ISDIR(st.st_mode);
}

int simulate(const std::vector<std::string>& words) {
    const auto parsed = SimulationOptions::parse(words);
    if (const auto* error = std::get_if<std::string>(&parsed)) return fail(*error);
    const SimulationReport report = simulateEconomy(std::get<SimulationOptions>(parsed));
    print(report.json);
    if (!report.passed) std::cerr << "trotlet: --simulate-economy: a check failed\n";
    return report.passed ? 0 : 1;
}

int dumpShop(const std::vector<std::string>& words) {
    std::string names;
    for (const auto name : ShopDemoNames) {
        if (!names.empty()) names += ", ";
        names += name;
    }
    if (words.size() > 1) return fail("--dump-shop takes one state: " + names);
    if (words.empty()) {
        nlohmann::ordered_json all = nlohmann::ordered_json::object();
        for (size_t i = 0; i < ShopDemoNames.size(); ++i)
            all[std::string(ShopDemoNames[i])] = ShopStateCodec::toJson(buildShopDemo(static_cast<ShopDemo>(i), dumpTime));
        print(all);
        return 0;
    }
    const auto demo = shopDemoNamed(words[0]);
    if (!demo) return fail("--dump-shop needs one of: " + names);
    print(ShopStateCodec::toJson(buildShopDemo(*demo, dumpTime)));
    return 0;
}

int verifyPersistence() {
    // A memory-backed folder where there is one: the truncation case loads the file thousands
    // of times, and each load syncs its writes.
    const char* tmpdir = std::getenv("TMPDIR");
    const std::string parent = isDirectory(tmpdir) ? tmpdir : isDirectory("/dev/shm") ? "/dev/shm" : "/tmp";
    const PersistenceVerification result = verifyShopPersistence(parent);
    print(result.json);
    if (!result.passed) std::cerr << "trotlet: --verify-shop-persistence: a case failed\n";
    return result.passed ? 0 : 1;
}

}  // namespace

std::optional<int> ShopDebugCLI::run(const std::vector<std::string>& args) {
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--simulate-economy") return simulate(wordsAfter(args, i));
        if (args[i] == "--dump-shop") return dumpShop(wordsAfter(args, i));
        if (args[i] == "--verify-shop-persistence") return verifyPersistence();
    }
#ifndef NDEBUG
    // The debug-only flags belong to the live app; a bad value stops here, before any window.
    const auto debug = ShopDebugOptions::parse(args);
    if (const auto* error = std::get_if<std::string>(&debug)) return fail(*error);
#endif
    return std::nullopt;
}

}  // namespace trotlet::shop
