#include <gtest/gtest.h>

#include "platform/ShellMenu.h"

#ifdef _WIN32
#include <cstdio>
#include <string>
#endif

namespace qp::platform {
namespace {

// A key of its own, so that a real installation's menu is never touched.
ShellVerb testVerb()
{
    return ShellVerb{u"QuilletProTest", u"用 Quillet Pro 批量更名", u"C:/Program Files/Quillet Pro/QuilletPro.exe",
                     u"Quillet Pro Test"};
}

#ifdef _WIN32

struct Query {
    int exitCode = -1;
    std::string output;
};

// What "reg query" says about a key below HKCU\Software\Classes, as a person would check.
Query regQuery(const char* key)
{
    const std::string command = std::string("reg query \"HKCU\\Software\\Classes\\") + key + "\" /s 2>&1";
    Query query;
    FILE* pipe = _popen(command.c_str(), "r");
    if (!pipe) return query;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe)) query.output += buffer;
    query.exitCode = _pclose(pipe);
    return query;
}

TEST(ShellMenu, RegisterWritesTheVerbsAndUnregisterLeavesNothing)
{
    const ShellResult registered = registerShellVerbs(testVerb());
    ASSERT_EQ(registered.status, ShellStatus::Ok) << registered.message;
    EXPECT_EQ(registered.done.size(), 4u);  // three verbs and the SendTo shortcut
    const struct {
        const char* key;
        const char* command;
        bool multiSelect;
    } verbs[] = {
        {"*\\shell\\QuilletProTest", "\"C:\\Program Files\\Quillet Pro\\QuilletPro.exe\" \"%1\"", true},
        {"Directory\\shell\\QuilletProTest", "\"C:\\Program Files\\Quillet Pro\\QuilletPro.exe\" \"%1\"", true},
        {"Directory\\Background\\shell\\QuilletProTest", "\"C:\\Program Files\\Quillet Pro\\QuilletPro.exe\" \"%V\"",
         false},
    };
    for (const auto& verb : verbs) {
        const Query query = regQuery(verb.key);
        EXPECT_EQ(query.exitCode, 0) << verb.key << "\n" << query.output;
        EXPECT_NE(query.output.find(verb.command), std::string::npos) << query.output;
        EXPECT_NE(query.output.find("QuilletPro.exe\",0"), std::string::npos) << query.output;  // the icon
        EXPECT_EQ(query.output.find("MultiSelectModel") != std::string::npos, verb.multiSelect) << query.output;
    }
    const std::u16string shortcut = registered.done.back();
    EXPECT_TRUE(isFile(shortcut));

    EXPECT_EQ(registerShellVerbs(testVerb()).status, ShellStatus::Ok);  // again: the same keys
    const ShellResult removed = unregisterShellVerbs(testVerb());
    ASSERT_EQ(removed.status, ShellStatus::Ok) << removed.message;
    for (const auto& verb : verbs) EXPECT_NE(regQuery(verb.key).exitCode, 0) << verb.key;
    EXPECT_FALSE(exists(shortcut));
    // Removing what is gone already is no failure.
    EXPECT_EQ(unregisterShellVerbs(testVerb()).status, ShellStatus::Ok);
}

#else

TEST(ShellMenu, OtherSystemsUseDesktopFilesInstead)
{
    EXPECT_EQ(registerShellVerbs(testVerb()).status, ShellStatus::Unsupported);
    EXPECT_EQ(unregisterShellVerbs(testVerb()).status, ShellStatus::Unsupported);
}

#endif

}  // namespace
}  // namespace qp::platform
