#include "manifest/Bundle.h"

#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"

#include <type_traits>

namespace {

static_assert(!std::is_polymorphic_v<KestBundle>);
static_assert(!std::is_copy_constructible_v<KestBundle> && !std::is_copy_assignable_v<KestBundle>);

/// Everything of a bundle that neither its constructor's arguments nor its flags decide.
void expectNothingRead(const KestBundle& bundle)
{
    EXPECT_EQ(recordtext::of(bundle), std::vector<std::string>());
    EXPECT_TRUE(bundle.commandModuleMap.empty());
    EXPECT_TRUE(bundle.pythonVersionMap.empty());
    EXPECT_EQ(bundle.xmlReader, nullptr);
    EXPECT_EQ(bundle.pythonLoadLib, "libVxPythonLoad.so");
    EXPECT_EQ(bundle.pythonVersion, "");
    EXPECT_EQ(bundle.pythonLibName, "");
    EXPECT_EQ(bundle.pythonLibNameM, "");
}

class BundleTest : public AutoloaderTest
{
protected:
    /// Gives `bundle` a reader, of an empty document.
    void openReader(KestBundle& bundle)
    {
        host.documents[bundle.xmlPath] = hostdouble::Document();
        bundle.xmlReader.reset(kestCreateXmlFilerReader(bundle.xmlPath.c_str()));
        host.calls.clear();
    }
};

TEST_F(BundleTest, ABundleThatWasNeverParsedFitsTheHostHasNoReadErrorAndIsNotLoaded)
{
    const KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");

    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_FALSE(bundle.getIsLoad());
    expectNothingRead(bundle);
}

TEST_F(BundleTest, TheFirstArgumentIsTheFolderAndTheSecondTheManifest)
{
    const KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");

    EXPECT_EQ(bundle.bundlePath, L"/p/X.bundle");
    EXPECT_EQ(bundle.xmlPath, L"/p/X.bundle/PackageContents.xml");
}

TEST_F(BundleTest, ABundleKnowsTheOneManager)
{
    const KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");

    EXPECT_EQ(bundle.manager, KestBundleManager::getInstance());
}

TEST_F(BundleTest, MakingABundleReadsNothing)
{
    host.documents[L"/p/X.bundle/PackageContents.xml"] = hostdouble::Element{L"ApplicationPackage"};

    const KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");

    EXPECT_EQ(host.calls, std::vector<std::string>());
}

TEST_F(BundleTest, ABundleForTheLoadersAloneHasNoPathsNoManagerAndNoFlag)
{
    const KestBundle bundle;

    EXPECT_EQ(bundle.bundlePath, L"");
    EXPECT_EQ(bundle.xmlPath, L"");
    EXPECT_EQ(bundle.manager, nullptr);
    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_FALSE(bundle.getIsLoad());
    expectNothingRead(bundle);
    EXPECT_EQ(host.calls, std::vector<std::string>());
}

TEST_F(BundleTest, EachGetterAnswersWithItsOwnFlag)
{
    for (int set = 0; set < 3; ++set) {
        KestBundle bundle;
        bundle.isRuntime = set == 0;
        bundle.isLoad = set == 1;
        bundle.isReadError = set == 2;

        EXPECT_EQ(bundle.getIsRuntime(), set == 0);
        EXPECT_EQ(bundle.getIsLoad(), set == 1);
        EXPECT_EQ(bundle.getIsReadError(), set == 2);
    }
}

TEST_F(BundleTest, DestroyingABundleWithoutAReaderTouchesNoReader)
{
    {
        const KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");
    }

    EXPECT_EQ(host.calls, std::vector<std::string>());
}

TEST_F(BundleTest, DestroyingABundleReleasesItsReaderThroughItsDestructor)
{
    {
        KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");
        openReader(bundle);
        EXPECT_EQ(host.openReaders, 1U);
    }

    EXPECT_EQ(host.calls, std::vector<std::string>{"~XmlFilerReader()"});
    EXPECT_EQ(host.openReaders, 0U);
}

/// Looks at the bundle from inside the reader's destructor.
class LookingReader : public XmlFilerReader
{
public:
    LookingReader(const KestBundle& owner, std::vector<std::string>& lines) : bundle(owner), seen(lines) {}
    ~LookingReader() override { seen = recordtext::of(bundle); }
    LookingReader(const LookingReader&) = delete;
    LookingReader& operator=(const LookingReader&) = delete;
    int checkStartElement() override { return 1; }
    int checkEndElement() override { return 1; }
    void attribute(const CStdStr<wchar_t>&, CStdStr<wchar_t>&) override {}
    void tokenName(CStdStr<wchar_t>&) override {}
    int moreTokens() override { return 0; }
    int readOk() override { return 1; }
    void readNext() override {}

private:
    const KestBundle& bundle;
    std::vector<std::string>& seen;
};

TEST_F(BundleTest, TheReaderIsReleasedBeforeTheRecordsAre)
{
    std::vector<std::string> seen;
    {
        KestBundle bundle(L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml");
        bundle.components.emplace_back().appName = L"a name that is too long to be kept inside the string itself";
        bundle.xmlReader = std::make_unique<LookingReader>(bundle, seen);
    }

    EXPECT_EQ(seen, std::vector<std::string>{
                        "entry app=[a name that is too long to be kept inside the string itself] ctrl=0 flags=0"});
}

TEST_F(BundleTest, TheMembersFollowEachOtherInOrder)
{
    const KestBundle bundle;
    const void* const members[] = {&bundle.package,          &bundle.dependentBundles, &bundle.commandModuleMap,
                                   &bundle.pythonVersionMap, &bundle.isRuntime,        &bundle.isLoad,
                                   &bundle.isReadError,      &bundle.xmlPath,          &bundle.bundlePath,
                                   &bundle.runtime,          &bundle.company,          &bundle.xmlReader,
                                   &bundle.components,       &bundle.pythonLoadLib,    &bundle.pythonVersion,
                                   &bundle.pythonLibName,    &bundle.pythonLibNameM,   &bundle.manager};
    for (std::size_t i = 1; i < std::size(members); ++i) {
        EXPECT_LT(members[i - 1], members[i]) << "member " << i;
    }
}

} // namespace
