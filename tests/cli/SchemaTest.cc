// `kestbundle schema`, and what a validator makes of it.
#include "tests/cli/Lines.h"
#include "tests/cli/ToolTest.h"

#include <filesystem>
#include <libxml/xmlschemas.h>
#include <memory>

namespace {

namespace fs = std::filesystem;

void addMessage(void* lines, xmlErrorPtr error)
{
    static_cast<Lines*>(lines)->push_back(error->message);
}

/// The schema that the tool prints, as libxml2 reads it.
class SchemaTest : public ToolTest
{
protected:
    SchemaTest() : printed(runTool({"schema"}))
    {
        const std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> parser(
            xmlSchemaNewMemParserCtxt(printed.output.data(), static_cast<int>(printed.output.size())),
            &xmlSchemaFreeParserCtxt);
        xmlSchemaSetParserStructuredErrors(parser.get(), addMessage, &parseProblems);
        schema.reset(xmlSchemaParse(parser.get()));
    }

    /// What the validator says about a manifest.
    Lines problemsOf(const std::string& manifest) const
    {
        const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
            xmlReadMemory(manifest.data(), static_cast<int>(manifest.size()), nullptr, nullptr, 0), &xmlFreeDoc);
        const std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> validator(
            xmlSchemaNewValidCtxt(schema.get()), &xmlSchemaFreeValidCtxt);
        Lines problems;
        xmlSchemaSetValidStructuredErrors(validator.get(), addMessage, &problems);
        const int result = xmlSchemaValidateDoc(validator.get(), document.get());
        EXPECT_EQ(result == 0, problems.empty());
        return problems;
    }

    ToolRun printed;
    Lines parseProblems;
    std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)> schema{nullptr, &xmlSchemaFree};
};

/// The manifest of one entry with the attributes `attributes`.
std::string entryWith(const std::string& attributes)
{
    return manifestOf("<Components><ComponentEntry " + attributes + "/></Components>");
}

TEST_F(SchemaTest, TheSchemaHoldsEveryWordWithItsDocumentation)
{
    EXPECT_EQ(printed, (ToolRun{0, contentOf(KEST_GOLDEN_FOLDER "/schema.xsd"), ""}));
}

TEST_F(SchemaTest, AValidatorTakesTheSchema)
{
    EXPECT_EQ(parseProblems, Lines());
    EXPECT_NE(schema, nullptr);
}

TEST_F(SchemaTest, TheManifestsOfTheSamplesAreValid)
{
    ASSERT_NE(schema, nullptr);
    std::size_t count = 0;
    for (const fs::directory_entry& bundle : fs::directory_iterator(KEST_BUILD_FOLDER "/samples/ApplicationPlugins")) {
        if (bundle.path().filename() != "Malformed.bundle") {
            EXPECT_EQ(problemsOf(contentOf(bundle.path().string() + "/PackageContents.xml")), Lines()) << bundle;
            ++count;
        }
    }
    EXPECT_GT(count, 15U);
}

TEST_F(SchemaTest, TheManifestOfANewBundleIsValid)
{
    ASSERT_NE(schema, nullptr);
    const ToolRun done = runTool({"new", "Hello", "--kind", "native,lisp,python,managed,menus", "--requirements"});
    EXPECT_EQ(done.status, 0) << done;
    EXPECT_EQ(problemsOf(contentOf(path("Hello.bundle/PackageContents.xml"))), Lines());
}

TEST_F(SchemaTest, ElementsMayBeMissingRepeatedAndInAnyOrder)
{
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(problemsOf("<ApplicationPackage/>"), Lines());
    EXPECT_EQ(problemsOf("<ApplicationPackage><Components/><RuntimeRequirements/><DependentBundles>"
                         "<DependentBundle><Component/></DependentBundle><DependentBundle/></DependentBundles>"
                         "<Components><ComponentEntry><Commands><Command/></Commands><Commands/></ComponentEntry>"
                         "</Components><CompanyDetails/></ApplicationPackage>"),
              Lines());
}

TEST_F(SchemaTest, UnknownNamesAreRefused)
{
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(problemsOf(entryWith("Modulename=\"./a.krx\"")),
              Lines{"Element 'ComponentEntry', attribute 'Modulename': The attribute 'Modulename' is not allowed.\n"});
    EXPECT_EQ(problemsOf(manifestOf("<Component/>")),
              Lines{"Element 'Component': This element is not expected. Expected is one of ( CompanyDetails, "
                    "RuntimeRequirements, DependentBundles, Components ).\n"});
    EXPECT_EQ(problemsOf("<Bundle/>"),
              Lines{"Element 'Bundle': No matching global declaration available for the validation root.\n"});
}

TEST_F(SchemaTest, ValuesThatDoWhatTheySayAreTaken)
{
    ASSERT_NE(schema, nullptr);
    for (const char* attribute :
         {"ModuleName=\"./a.krx\"", "ModuleName=\"./Contents/图 纸.lsp\"", "LoadOnTARVIXStartup=\"TRUE\"",
          "LoadOnTARVIXStartup=\"fAlSe\"", "LoadOnCommandInvocation=\"True\"", "LoadCtrlFlag=\"1\"",
          "LoadCtrlFlag=\"-4\"", "PythonVersion=\"python3.11\"", "PythonVersion=\"python3.7m\"", "AppName=\"\""}) {
        EXPECT_EQ(problemsOf(entryWith(attribute)), Lines()) << attribute;
    }
    EXPECT_EQ(problemsOf(manifestOf("<RuntimeRequirements SeriesMin=\"25\" SeriesMax=\"26.0\"/>")), Lines());
}

TEST_F(SchemaTest, ValuesThatDoSomethingElseThanTheySayAreRefused)
{
    ASSERT_NE(schema, nullptr);
    const auto firstProblem = [this](const std::string& manifest) {
        const Lines problems = problemsOf(manifest);
        return problems.empty() ? "" : problems.front();
    };
    const auto refused = [](const std::string& element, const std::string& attribute, const std::string& value,
                            const std::string& pattern) {
        return "Element '" + element + "', attribute '" + attribute + "': [facet 'pattern'] The value '" + value +
               "' is not accepted by the pattern '" + pattern + "'.\n";
    };
    const auto expectRefusedEntry = [&](const std::string& attribute, const std::string& value,
                                        const std::string& pattern) {
        EXPECT_EQ(firstProblem(entryWith(attribute + "=\"" + value + "\"")),
                  refused("ComponentEntry", attribute, value, pattern));
    };
    const std::string trueFalse = "[Tt][Rr][Uu][Ee]|[Ff][Aa][Ll][Ss][Ee]";
    expectRefusedEntry("LoadOnTARVIXStartup", "No", trueFalse);
    expectRefusedEntry("LoadOnTARVIXStartup", " False", trueFalse);
    expectRefusedEntry("LoadOnTARVIXStartup", "", trueFalse);
    expectRefusedEntry("LoadOnCommandInvocation", "1", trueFalse);
    expectRefusedEntry("ModuleName", "Contents/a.krx", "\\./.+");
    expectRefusedEntry("ModuleName", ".\\a.krx", "\\./.+");
    expectRefusedEntry("ModuleName", "./", "\\./.+");
    expectRefusedEntry("LoadCtrlFlag", "yes", "[+\\-]?[0-9]+");
    expectRefusedEntry("PythonVersion", "3.11", "python[0-9]+(\\.[0-9]+)?[a-z]*");
    EXPECT_EQ(firstProblem(manifestOf("<RuntimeRequirements SeriesMin=\"R25\"/>")),
              refused("RuntimeRequirements", "SeriesMin", "R25", "[0-9]+(\\.[0-9]+)?"));
}

TEST_F(SchemaTest, ArgumentsAreRefused)
{
    EXPECT_EQ(runTool({"schema", "manifest.xml"}),
              (ToolRun{2, "",
                       "kestbundle: The argument \"manifest.xml\" was not expected\n"
                       "Run \"kestbundle schema --help\" for how it is used.\n"}));
}

} // namespace
