// Forms for programs are UTF-8 in every locale.
#include "tests/cli/FaultFixture.h"

namespace {

class JsonLocaleTest : public FaultFixture
{
};

TEST_F(JsonLocaleTest, WhatProgramsReadIsTheSameBytesInALocaleThatLacksItsCharacters)
{
    installFault("nothing-wrong");
    const std::string gear = "\xE9\xBD\xBF\xE8\xBD\xAE";
    const std::string folder =
        install("Gear.bundle", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ApplicationPackage Name=\"" + gear +
                                   "\" UpgradeCode=\"" + gear + "\"><DependentBundles><DependentBundle UpgradeCode=\"" +
                                   gear + "2\"/></DependentBundles></ApplicationPackage>");
    const std::vector<std::vector<std::string>> forms = {{"list", "--json"},
                                                         {"explain", "--json"},
                                                         {"check", "--json", folder},
                                                         {"check", "--format", "sarif", folder},
                                                         {"graph", "--json"}};
    const auto outputOf = [&](const std::vector<std::string>& form) {
        return form.front() == "check" ? runTool(form) : tell(form);
    };
    std::vector<ToolRun> expected;
    for (const std::vector<std::string>& form : forms) {
        expected.push_back(outputOf(form));
        EXPECT_NE(expected.back().output.find(gear), std::string::npos) << expected.back();
    }
    const auto expectSame = [&] {
        for (std::size_t index = 0; index < forms.size(); ++index) {
            EXPECT_EQ(outputOf(forms[index]), expected[index]) << forms[index].front();
        }
    };
    useLatin1();
    expectSame();
    environment[1] = "LC_ALL=C";
    expectSame();
}

} // namespace
