#include "TestMain.h"

#include "PrivateEnvironment.h"

#include <cstdio>
#include <map>
#include <optional>
#include <string_view>

namespace
{

std::map<std::string_view, RegisteredTest::Run> &registeredTests()
{
    static std::map<std::string_view, RegisteredTest::Run> tests;
    return tests;
}

} // namespace

RegisteredTest::RegisteredTest(const char *name, Run run)
{
    registeredTests().emplace(name, run);
}

/// usage: ROOM_tests TESTCLASS [QTEST-ARGUMENT…]
int main(int argc, char **argv)
{
    const auto found = argc > 1 ? registeredTests().find(argv[1]) : registeredTests().end();
    if (found == registeredTests().end()) {
        std::fputs("The first argument is one of these classes:\n", stderr);
        for (const auto &[name, run] : registeredTests())
            std::fprintf(stderr, "  %s\n", name.data());
        return 2;
    }
    std::optional<PrivateEnvironment> environment;
    if (!PrivateEnvironment::isInherited())
        environment.emplace();
    argv[1] = argv[0]; // Qt Test sees its own arguments alone.
    return found->second(argc - 1, argv + 1);
}
