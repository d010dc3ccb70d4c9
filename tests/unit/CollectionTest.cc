// Which of the bundles found are kept.
#include "tests/AutoloaderTest.h"

namespace {

using hostdouble::Document;
using hostdouble::Element;
using Lines = std::vector<std::string>;
using Paths = std::vector<CStdStr<wchar_t>>;

class CollectionTest : public AutoloaderTest
{
protected:
    const Element sound{L"ApplicationPackage", {{L"UpgradeCode", L"same"}}};
    const Element unfit{L"RuntimeRequirements", {{L"Architecture", L"mips"}}};

    Document malformed() const
    {
        Document document = sound;
        document.isMalformed = true;
        return document;
    }

    /// Searches and collects; the folders of the bundles kept.
    Paths collect()
    {
        manager().fetchAllBundlePath();
        EXPECT_TRUE(manager().collectBundle());
        Paths folders;
        for (const KestBundle* bundle : manager().bundles) {
            folders.push_back(bundle->bundlePath);
            EXPECT_EQ(bundle->xmlPath, bundle->bundlePath + L"/PackageContents.xml");
            EXPECT_EQ(bundle->manager, &manager());
        }
        return folders;
    }
};

TEST_F(CollectionTest, SoundBundlesAreReadAndKeptInTheOrderFound)
{
    install(kUserRoot, L"b.bundle", sound);
    install(kUserRoot, L"a.bundle", sound);
    EXPECT_EQ(collect(), (Paths{kUserRoot + L"/b.bundle", kUserRoot + L"/a.bundle"}));
    EXPECT_EQ(hostdouble::callsTo({"kestCreateXmlFilerReader", "~XmlFilerReader"}),
              (Lines{"kestCreateXmlFilerReader(/home/user/.config/ORRELIN/ApplicationPlugins/b.bundle/"
                     "PackageContents.xml) -> reader",
                     "kestCreateXmlFilerReader(/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/"
                     "PackageContents.xml) -> reader"}));
    EXPECT_EQ(manager().bundles[0]->package.upgradeCode, L"same");
    EXPECT_EQ(problems(), "");
}

TEST_F(CollectionTest, TheSameNameUnderTwoRootsGivesTwoBundlesEvenWithOneIdentity)
{
    install(kAllUsersRoot, L"Tools.bundle", sound);
    install(kUserRoot, L"Tools.bundle", sound);
    EXPECT_EQ(collect(), (Paths{kAllUsersRoot + L"/Tools.bundle", kUserRoot + L"/Tools.bundle"}));
    EXPECT_EQ(manager().bundlePaths.size(), 2U);
    EXPECT_EQ(manager().manifestPaths.size(), 2U);
}

TEST_F(CollectionTest, BundlesOfAllRootsAreKeptInTheOrderOfTheRoots)
{
    install(kUserRoot, L"a.bundle", sound);
    install(kProgramRoot, L"c.bundle", sound);
    install(kAllUsersRoot, L"b.bundle", sound);
    EXPECT_EQ(collect(), (Paths{kProgramRoot + L"/c.bundle", kAllUsersRoot + L"/b.bundle", kUserRoot + L"/a.bundle"}));
}

TEST_F(CollectionTest, WhenAllRequirementsFailCollectingSucceedsWithoutABundle)
{
    install(kUserRoot, L"a.bundle", unfit);
    install(kUserRoot, L"b.bundle", unfit);
    EXPECT_EQ(collect(), Paths());
    EXPECT_EQ(problems(), kSplit +
                              "/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/PackageContents.xml: The "
                              "architecture of the RuntimeRequirements element is incorrect\n" +
                              kSplit +
                              "/home/user/.config/ORRELIN/ApplicationPlugins/b.bundle/PackageContents.xml: The "
                              "architecture of the RuntimeRequirements element is incorrect\n");
}

TEST_F(CollectionTest, AMalformedManifestDropsItsBundleAlone)
{
    install(kUserRoot, L"a.bundle", malformed());
    install(kUserRoot, L"b.bundle", sound);
    EXPECT_EQ(collect(), (Paths{kUserRoot + L"/b.bundle"}));
    EXPECT_EQ(problems(), kSplit + "/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/PackageContents.xml  "
                                   "File format error\n");
}

TEST_F(CollectionTest, ADroppedBundleIsDestroyedBeforeTheNextIsRead)
{
    install(kUserRoot, L"a.bundle", malformed());
    install(kUserRoot, L"b.bundle", sound);
    collect();
    EXPECT_EQ(hostdouble::callsTo({"kestCreateXmlFilerReader", "~XmlFilerReader"}),
              (Lines{"kestCreateXmlFilerReader(/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/"
                     "PackageContents.xml) -> reader",
                     "~XmlFilerReader()",
                     "kestCreateXmlFilerReader(/home/user/.config/ORRELIN/ApplicationPlugins/b.bundle/"
                     "PackageContents.xml) -> reader"}));
    EXPECT_EQ(host.openReaders, 1U);
}

TEST_F(CollectionTest, AManifestThatNoReaderOpensIsKeptAsAnEmptyBundle)
{
    install(kUserRoot, L"a.bundle", sound);
    host.documents.clear();
    EXPECT_EQ(collect(), (Paths{kUserRoot + L"/a.bundle"}));
    EXPECT_EQ(manager().bundles[0]->package.upgradeCode, L"");
    EXPECT_EQ(problems(), "");
}

TEST_F(CollectionTest, ABundleBothUnfitAndMalformedIsDroppedOnce)
{
    Document document = unfit;
    document.isMalformed = true;
    install(kUserRoot, L"a.bundle", document);
    EXPECT_EQ(collect(), Paths());
    EXPECT_EQ(host.openReaders, 0U);
}

TEST_F(CollectionTest, NothingIsCollectedWithoutPaths)
{
    EXPECT_FALSE(manager().collectBundle());
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(CollectionTest, NothingIsCollectedWhenTheListsDisagreeInLength)
{
    manager().bundlePaths = {L"/a.bundle"};
    EXPECT_FALSE(manager().collectBundle());
    manager().manifestPaths = {L"/a.bundle/PackageContents.xml", L"/b.bundle/PackageContents.xml"};
    EXPECT_FALSE(manager().collectBundle());
    manager().bundlePaths = {};
    EXPECT_FALSE(manager().collectBundle());
    EXPECT_TRUE(manager().bundles.empty());
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(CollectionTest, CollectingAgainMakesNewBundlesOfAllPaths)
{
    install(kUserRoot, L"a.bundle", sound);
    collect();
    EXPECT_TRUE(manager().collectBundle());
    ASSERT_EQ(manager().bundles.size(), 2U);
    EXPECT_NE(manager().bundles[0], manager().bundles[1]);
    EXPECT_EQ(manager().bundles[0]->xmlPath, manager().bundles[1]->xmlPath);
}

} // namespace
