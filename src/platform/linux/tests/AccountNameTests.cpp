#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "platform/linux/AccountName.h"

namespace trotlet::platform {
namespace {

TEST(AccountName, FirstNameFromTheFullNameField) {
    struct Case {
        const char* gecos;
        const char* login;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"Henry Walsh,,,", "henry", "Henry"},
        {"Henry", "hw", "Henry"},
        {"  Ada   Lovelace ,Room 1,555-0101", "ada", "Ada"},
        {"Dr. Ines Marlow", "ines", "Ines"},
        {"& Walsh", "henry", "Henry"},
        {"", "henry", std::nullopt},
        {",,,", "henry", std::nullopt},
        {"henry", "henry", std::nullopt},  // only the login repeated: no name was set
        {"Élodie Durand", "elodie", "Élodie"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.gecos);
        EXPECT_EQ(firstNameFromGecos(c.gecos, c.login), c.expected);
    }
}

TEST(AccountName, ReadsTheUsersLineUnderARoot) {
    namespace fs = std::filesystem;
    const fs::path root =
        fs::temp_directory_path() / ("trotlet-passwd-" + std::to_string(std::random_device{}()));
    fs::create_directories(root / "etc");
    std::ofstream(root / "etc/passwd") << "root:x:0:0:root:/root:/bin/bash\n"
                                          "# a comment\n"
                                          "broken line\n"
                                          "henry:x:1000:1000:Henry Walsh,,,:/home/henry:/bin/bash\n"
                                          "shadow:x:1000:1000:Someone Else:/home/s:/bin/sh\n"
                                          "svc:x:998:998::/var/svc:/usr/sbin/nologin\n";
    EXPECT_EQ(accountFirstName(1000, root.string()), "Henry");
    EXPECT_EQ(accountFirstName(998, root.string()), std::nullopt);
    EXPECT_EQ(accountFirstName(4242, root.string()), std::nullopt);
    EXPECT_EQ(accountFirstName(1000, (root / "missing").string()), std::nullopt);
    fs::remove_all(root);
}

}  // namespace
}  // namespace trotlet::platform
