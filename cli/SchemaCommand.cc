#include "cli/SchemaCommand.h"

#include "cli/ExitStatus.h"
#include "cli/ManifestSchema.h"

#include <cstdio>

namespace cli {

namespace {

constexpr char kSchemaExamples[] = R"(Examples:
  kestbundle schema > PackageContents.xsd
      Keep the schema where an editor finds it; it completes names and explains them.
  kestbundle schema | xmllint --noout --schema - Hello.bundle/PackageContents.xml
      Check a manifest against it.

The schema refuses what the autoloader would pass over in silence, such as a
misspelt name.

Exit status: 0 all went well, 1 standard output could not be written,
2 wrong use.)";

} // namespace

void addSchemaCommand(CLI::App& app, Action& chosen)
{
    Subcommand schema(app, "schema", "Print an XML schema (XSD 1.0) of the manifest, for editors");
    schema.footer(kSchemaExamples);
    schema.does(chosen, [] {
        // Not by the locale: the document says that it is UTF-8.
        const std::string text = manifestSchema();
        std::fwrite(text.data(), 1, text.size(), stdout);
        return kAllWell;
    });
}

} // namespace cli
