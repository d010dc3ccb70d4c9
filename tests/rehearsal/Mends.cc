#include "tests/rehearsal/MendActions.h"

#include "cli/rules/CommandRules.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/FormRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"

namespace rehearsal {

const std::vector<Mend>& allMends()
{
    using namespace cli;
    static const std::vector<Mend> kAll{
        {&kRootMissing, "Make the folder", makeFolder},
        {&kRootNotListable, "Make it a folder that the user of the host can read.", letRead},
        {&kNoManifest, "Put a manifest", writeManifest},
        {&kNoManifest, "Rename the file", renameManifest},
        {&kManifestLetterCase, "Rename the file", renameManifest},
        {&kManifestTooDeep, "Move the manifest, with all that it names, up", moveManifestUp},
        {&kNotAFolder, "Unpack it", unpack},
        {&kBrokenLink, "Let the link lead to a bundle folder", unpack},
        {&kBrokenLink, "or remove it", removeBundle},
        {&kNameWithoutEnding, "Rename the folder", renameBundle},
        {&kNameWithoutEnding, "or move it away", removeBundle},
        {&kFolderNotListable, "Let the user of the host read the folder.", letRead},
        {&kManifestNotOpened, "Let the user of the host read the file, and see that it is a regular file.", letRead},
        {&kBundleTooDeep, "Move the folder ", moveBundleUp},
        {&kMalformedManifest, "Mend the XML at this place.", reparse, true},

        // What was passed over then counts, and may stop the bundle for another reason.
        {&kMisspeltElement, "Did you mean", renameAtPlace, false, true},
        {&kMisspeltAttribute, "Did you mean", renameAtPlace, false, true},
        {&kNameLetterCase, "Write ", renameAtPlace, false, true},
        {&kMisplacedElement, "Put it into", putIntoNamed, true, true},
        {&kMisplacedElement, "Write it as an attribute of ", makeAttribute, true, true},
        {&kMisplacedElement, "Make it the outermost element", makeOutermost, true, true},
        {&kNestedElement, "Move it behind the end of the outermost ", moveOutOfItsLike, true, true},
        {&kCutOffElement, "Move that other ", moveOtherOut, true, true},
        {&kRepeatedElement, "Keep one of them", removeElement},

        {&kWrongProductVersion, "Change ", writeBounds},
        {&kWrongProductVersion, "or remove ", removeBounds},
        {&kWrongOS, "Write OS=", writeAttributeOfText},
        {&kWrongOS, "leave the attribute out", removeAttributeAtPlace},
        {&kWrongArchitecture, "Write Architecture=", writeAttributeOfText},
        {&kWrongArchitecture, "leave the whole element out", removeElement},
        {&kWrongPlatform, "Write Platform=", writeAttributeOfText},
        {&kWrongPlatform, "leave the attribute out", removeAttributeAtPlace},
        {&kBoundWithoutNumber, "Write a number", writeExpectedBound},
        {&kBoundWithoutNumber, "leave the attribute out", removeAttributeAtPlace},
        {&kUnreadRequirements, "Move the element out", moveToPackage, true, true},

        {&kMissingDependency, "Install the bundle with this UpgradeCode", installNeeded},
        {&kMissingDependency, "remove the DependentBundle", removeElement},
        {&kMissingDependency, "Did you mean", writeSimilarCode},
        {&kDroppedDependency, "Mend ", mendNamedBundle},
        {&kWaitingDependency, "Mend what holds up ", mendNamedBundle},
        {&kWaitingDependency, "See what is said about", mendNamedBundle},
        {&kDependencyCycle, "Remove one of these dependencies", removeElement},
        {&kSelfDependency, "Remove this DependentBundle", removeElement},
        {&kDependencyNeverLoads, "Give ", giveNamedBundleAComponent},
        {&kDependencyNeverLoads, "remove this DependentBundle", removeElement},
        {&kLoadingEndedEarly, "Remove the bundles that have no components", removeEmptyBundles},
        {&kLoadingEndedEarly, "give each of them one", giveEmptyBundlesComponents},
        {&kNoUpgradeCode, "Give ApplicationPackage an UpgradeCode that no other bundle has", writeOwnCode},
        {&kRepeatedUpgradeCode, "remove the rest", removeUnneeded},
        {&kRepeatedUpgradeCode, "give them codes of their own", giveUnneededOwnCodes},
        {&kDependencyWithoutCode, "Write the UpgradeCode of the bundle that is needed", writeNeededCode},
        {&kNoApplicationPackage, "Put everything into one ApplicationPackage element", wrapInPackage, true},

        {&kNoComponents, "Declare the files of the bundle as components", declareComponent},
        {&kNoModuleName, "Write the path of the file", writeModuleName},
        {&kNoModuleName, "or remove the component", removeElement},
        {&kModulePathForm, "Write ModuleName=", writeAttributeOfText},
        {&kLoadCtrlFlag, "Remove LoadCtrlFlag", removeAttributesOfText},
        {&kLoadCtrlFlag, "or write LoadOnCommandInvocation=\"True\" and the commands", loadOnCommand},
        {&kNeverLoads, "Write LoadOnCommandInvocation=\"True\" and the commands", loadOnCommand},
        {&kNeverLoads, "or remove LoadOnTARVIXStartup", removeAttributesOfText},
        {&kNotTrueOrFalse, "Write \"True\"", writeTrue},
        {&kNotTrueOrFalse, "or \"False\"", writeFalse},
        {&kStartupWins, "Write LoadOnTARVIXStartup=\"False\"", writeAttributeOfText},
        {&kStartupWins, "else remove LoadOnCommandInvocation", removeAttributesOfText},
        {&kNoCommands, "into the component", appendCommandOfText},
        {&kUnknownExtension, "Did you mean", writeSimilarKind},
        {&kUnknownExtension, "Name a file of one of these kinds", writeFileKind},
        {&kNoPythonVersion, "Write PythonVersion=", writeAttributeOfText},
        {&kNoPythonVersion, "another Python that is installed", writeStandIn},
        {&kPythonNotFound, "Write PythonVersion=", writeAttributeOfText},
        {&kPythonNotFound, "name one that is installed", writeStandIn},
        {&kComponentFails, "Put the file there, or", makeFileSound},
        {&kComponentFails, "Put the file there first", mendReason},
        {&kComponentFails, "Mend what the reason says", mendReason},
        {&kFirstUseFails, "Put the file there, or", makeFileSound},
        {&kFirstUseFails, "Put the file there first", mendReason},
        {&kFirstUseFails, "Mend what the reason says", mendReason},
        {&kLispFileMissing, "Put the file there", makeFileSound},
        {&kLispPathTooLong, "Give the file a shorter path", shortenPath},
        {&kLispPathChanged, "Rename the file", renameFile},
        {&kOtherPythonVersion, "Write PythonVersion=", writeAttributeOfText},
        {&kOtherPythonVersion, "Write the PythonVersion into the earlier component", writeEarlierVersion},

        {&kEmptyCommandName, "Write the name that users are to type as Local", writeOwnLocal},
        {&kRepeatedCommand, "Give one of the two commands another Local name", writeOwnLocal},
        {&kCommandOfAnotherBundle, "Give one of the two commands another Local name", writeOwnLocal},
        {&kNoCommandLeft, "Declare a command that no other component has", declareOwnCommand},

        {&kMenuNotAtStartup, "Remove ", removeAttributesOfText},
        {&kMenuNotRegistered, "Mend what is said about the bundle's UpgradeCode or dependencies", mendOwnBundle},
        {&kMenuNotRegistered, "says about the host", moveConfigurationAway},
        {&kEmptyMenuEntry, "Put the menus behind all other components", putMenusLast, true},
        {&kEmptyMenuEntry, "Mend the menu file", makeFileSound},
        {&kEntriesRunTogether, "Take the empty entries out of the host's list of menus", takeEmptyEntriesOut},
        {&kSemicolonInMenuPath, "Rename the file", renameFile},
        {&kMenuNotConverted, "Mend the menu file", makeFileSound},
        {&kMenuNotConverted, "or ship it as \".cuix\"", shipAsMenu},
        {&kMenuFileMissing, "Put the file there", makeFileSound},
        {&kHostEntryDamaged, "Let no menu of the host's own end in the path of a bundle's menu", renameHostMenu},

        {&kLogNotOpened, "Make the folder", makeFolder},
        {&kLogNotOpened, "Remove what stands there", removeFile},
        {&kLogNotOpened, "Let the user of the host write to", letWrite},
    };
    return kAll;
}

const std::map<std::string, std::string>& rulesWithoutMend()
{
    static const std::map<std::string, std::string> kWithout{
        {"KB305", "the host's VERNUM decides, and no bundle can change it"},
        {"KB306", "nothing is wrong as long as that part is meant"},
        {"KB408", "the version range is to be left alone, since nobody looks at it"},
        {"KB413", "told by \"check\" only"},
        {"KB605", "nothing is wrong as long as the component registers its commands itself"},
        {"KB902", "the host says itself what is wrong with it"},
        {"KB903", "an error of the host's, which says itself what is wrong"},
        {"KB904", "told by \"check\" only"},
    };
    return kWithout;
}

} // namespace rehearsal
