#include "standalone/ModuleImage.h"

#include "HostFixture.h"
#include "ModuleFolder.h"

#include <cstring>
#include <elf.h>
#include <random>

using namespace standalone;
using standalonetest::fileContent;
using standalonetest::OwnFolder;
using standalonetest::writeFile;

namespace {

TEST(ModuleImageTest, AModuleThatWouldLoadHasNoProblem)
{
    for (const char* name : {"greeting.krx", "refusing.krx", "throwing.krx"}) {
        const ModuleImage image = examineModule(kModules + "/" + name);
        EXPECT_EQ(problemOf(image), "") << name;
        EXPECT_TRUE(image.hasEntry);
    }
}

TEST(ModuleImageTest, TheProblemsOfTheLinkerAreForetold)
{
    EXPECT_EQ(problemOf(examineModule(kModules + "/entry-missing.krx")), "it does not export kestModuleEntry");
    EXPECT_EQ(problemOf(examineModule(kModules + "/entry-elsewhere.krx")), "it does not export kestModuleEntry");
    EXPECT_EQ(examineModule(kModules + "/undefined-symbol.krx").undefinedSymbols,
              std::vector<std::string>{"kestNobodyDefinesThis"});
}

TEST(ModuleImageTest, ALibraryThatIsNotFoundIsNamed)
{
    const OwnFolder folder;
    std::string content = fileContent(kModules + "/entry-elsewhere.krx");
    const std::size_t name = content.find("libkest_test_elsewhere.so");
    ASSERT_NE(name, std::string::npos);
    content.replace(name, 7, "lib0000");
    writeFile(folder / "module.krx", content);
    EXPECT_EQ(examineModule(folder / "module.krx").missingLibraries,
              std::vector<std::string>{"lib0000_test_elsewhere.so"});
}

TEST(ModuleImageTest, AFileThatIsNoSharedObjectIsNone)
{
    const OwnFolder folder;
    writeFile(folder / "text.krx", "This is not a module.");
    EXPECT_EQ(problemOf(examineModule(folder / "text.krx")),
              "it is no native module: it does not begin like an ELF file");
    std::string content = fileContent(kModules + "/greeting.krx");
    content[offsetof(Elf64_Ehdr, e_type)] = ET_EXEC;
    writeFile(folder / "program.krx", content);
    EXPECT_EQ(problemOf(examineModule(folder / "program.krx")), "it is no shared object");
}

/// Every answer is right that is an answer: the file lies in as many ways as there are rounds, each told by its number.
TEST(ModuleImageTest, AFileThatLiesAboutItselfIsReadWithinItsBounds)
{
    const OwnFolder folder;
    const std::string whole = fileContent(kModules + "/greeting.krx");
    const std::string path = folder / "module.krx";
    for (unsigned round = 0; round < 300; ++round) {
        std::mt19937 random(round);
        std::string content = whole;
        for (unsigned change = 0; change < 1 + round % 8; ++change) {
            // Half of the changes hit the headers, the others what the headers lead to.
            const std::size_t reach = random() % 2 == 0 ? 1024 : content.size() - 8;
            const std::uint64_t value =
                random() % 3 == 0 ? ~std::uint64_t{0} : std::uint64_t{random()} << (random() % 33);
            std::memcpy(content.data() + random() % reach, &value, 1 + random() % 8);
        }
        writeFile(path, round % 5 == 0 ? content.substr(0, random() % content.size()) : content);
        examineModule(path);
    }
}

} // namespace
