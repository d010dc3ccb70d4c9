// Any stream of tokens through the manifest reader, against a reader that is one loop with a state in place of walks
// inside walks.
#include "fuzz/Input.h"
#include "fuzz/ManifestModel.h"
#include "fuzz/Target.h"
#include "tests/FreshManager.h"
#include "tests/RecordText.h"

namespace fuzz {

namespace {

using hostdouble::Token;

std::wstring drawnFrom(const std::vector<std::wstring>& texts, Input& input)
{
    return texts[input.below(static_cast<unsigned>(texts.size()))];
}

Token token(Input& input)
{
    static const std::vector<std::wstring> kElements = {L"Components",
                                                        L"ComponentEntry",
                                                        L"Commands",
                                                        L"Command",
                                                        L"DependentBundles",
                                                        L"DependentBundle",
                                                        L"ApplicationPackage",
                                                        L"RuntimeRequirements",
                                                        L"CompanyDetails",
                                                        L"components",
                                                        L"",
                                                        L"Component"};
    static const std::vector<std::wstring> kAttributes = {L"UpgradeCode",
                                                          L"Name",
                                                          L"ModuleName",
                                                          L"AppName",
                                                          L"LoadCtrlFlag",
                                                          L"PythonVersion",
                                                          L"LoadOnTARVIXStartup",
                                                          L"LoadOnCommandInvocation",
                                                          L"GroupName",
                                                          L"Global",
                                                          L"Local",
                                                          L"VersionMin",
                                                          L"VersionMax",
                                                          L"Architecture",
                                                          L"OS",
                                                          L"Platform",
                                                          L"SeriesMin",
                                                          L"SeriesMax",
                                                          L"Phone",
                                                          L"SchemaVersion",
                                                          L"HelpFile",
                                                          L"ProductCode"};
    static const std::vector<std::wstring> kValues = {L"",      L"./a.krx", L"./",    L"a.lsp", L"true",
                                                      L"FALSE", L"2",       L"Linux", L"x86",   L"TARVIX",
                                                      L"27",    L"\u00e4",  L"True"};
    const unsigned kind = input.below(8);
    Token made{kind < 4 ? Token::kStart : kind < 7 ? Token::kEnd : Token::kOther, drawnFrom(kElements, input)};
    for (unsigned left = made.kind == Token::kEnd ? 0 : input.below(8); left > 0; --left) {
        const std::wstring name = drawnFrom(kAttributes, input);
        made.attributes.emplace_back(name, drawnFrom(kValues, input));
    }
    return made;
}

void readTokens(std::string_view bytes)
{
    Input input(bytes);
    const unsigned settings = input.below(256);
    hostdouble::Document document;
    document.isMalformed = settings % 2 != 0;
    while (!input.isEmpty()) {
        document.tokens.push_back(token(input));
    }
    restartManagerAndHost();
    hostdouble::State& host = hostdouble::state();
    host.vernum = settings % 4 < 2 ? L"26.0_1_Linux_x86_64" : L"26.0_1__";
    host.missingAttribute = settings % 8 < 4 ? hostdouble::MissingAttribute::kEmptiesBuffer
                                             : hostdouble::MissingAttribute::kLeavesBufferAlone;
    host.documents = {{L"/b/PackageContents.xml", document}};

    ManifestModel model(L"/b", document, host);
    model.read();
    {
        KestBundle bundle(L"/b", L"/b/PackageContents.xml");
        bundle.parseXml();
        requireEqual(recordtext::of(bundle), recordtext::of(model.expected), "the records");
        require(bundle.getIsRuntime() == model.expected.isRuntime, "whether the host is the right one");
        require(bundle.getIsReadError() == model.expected.isReadError, "whether the manifest is malformed");
        require(loggedProblems().empty() == (bundle.getIsRuntime() && !bundle.getIsReadError()),
                "what is wrong is logged, and nothing else");
        require(host.openReaders == 1, "one reader is made");
    }
    require(host.openReaders == 0, "the reader ends with its bundle");
}

const Register kTokens("tokens", readTokens);

} // namespace

} // namespace fuzz
