// The single steps of mends; see Mends.h for what they return.
#pragma once

#include "tests/rehearsal/ManifestEdit.h"
#include "tests/rehearsal/Mends.h"

#include <functional>
#include <string>
#include <vector>

namespace rehearsal {

/// The texts in quotation marks in `text`, in order.
std::vector<std::string> quotedIn(const std::string& text);

/// The findings about all bundles with the UpgradeCode of `told` but the one that others can rely on.
std::vector<Told> unneededOf(const Told& told, const MendTree& tree);

/// Changes the manifest at the place of `told` and saves it, unless `change` returns false.
bool changeAt(const Told& told, const std::function<bool(const ManifestEdit&, xmlNode*)>& change);

// What lies in the folders.
bool makeFolder(const Told& told, const MendTree& tree);
bool letRead(const Told& told, const MendTree& tree);
bool letWrite(const Told& told, const MendTree& tree);
bool removeFile(const Told& told, const MendTree& tree);
bool writeManifest(const Told& told, const MendTree& tree);
bool renameManifest(const Told& told, const MendTree& tree);
bool moveManifestUp(const Told& told, const MendTree& tree);
bool unpack(const Told& told, const MendTree& tree);
bool moveBundleUp(const Told& told, const MendTree& tree);
bool removeBundle(const Told& told, const MendTree& tree);
bool renameBundle(const Told& told, const MendTree& tree);
bool installNeeded(const Told& told, const MendTree& tree);
bool makeFileSound(const Told& told, const MendTree& tree);
bool mendReason(const Told& told, const MendTree& tree);
bool shipAsMenu(const Told& told, const MendTree& tree);
bool renameFile(const Told& told, const MendTree& tree);
bool shortenPath(const Told& told, const MendTree& tree);

// What the manifest says.
bool reparse(const Told& told, const MendTree& tree);
bool renameAtPlace(const Told& told, const MendTree& tree);
bool putIntoNamed(const Told& told, const MendTree& tree);
bool moveOutOfItsLike(const Told& told, const MendTree& tree);
bool moveOtherOut(const Told& told, const MendTree& tree);
bool makeAttribute(const Told& told, const MendTree& tree);
bool makeOutermost(const Told& told, const MendTree& tree);
bool writeAttributeOfText(const Told& told, const MendTree& tree);
bool removeAttributesOfText(const Told& told, const MendTree& tree);
bool removeAttributeAtPlace(const Told& told, const MendTree& tree);
bool removeElement(const Told& told, const MendTree& tree);
bool writeBounds(const Told& told, const MendTree& tree);
bool removeBounds(const Told& told, const MendTree& tree);
bool writeExpectedBound(const Told& told, const MendTree& tree);
bool writeTrue(const Told& told, const MendTree& tree);
bool writeFalse(const Told& told, const MendTree& tree);
bool moveToPackage(const Told& told, const MendTree& tree);
bool writeSimilarCode(const Told& told, const MendTree& tree);
bool writeNeededCode(const Told& told, const MendTree& tree);
bool writeOwnCode(const Told& told, const MendTree& tree);
bool giveUnneededOwnCodes(const Told& told, const MendTree& tree);
bool removeUnneeded(const Told& told, const MendTree& tree);
bool wrapInPackage(const Told& told, const MendTree& tree);

// Components and commands.
bool declareComponent(const Told& told, const MendTree& tree);
bool giveNamedBundleAComponent(const Told& told, const MendTree& tree);
bool giveEmptyBundlesComponents(const Told& told, const MendTree& tree);
bool removeEmptyBundles(const Told& told, const MendTree& tree);
bool writeModuleName(const Told& told, const MendTree& tree);
bool writeFileKind(const Told& told, const MendTree& tree);
bool writeSimilarKind(const Told& told, const MendTree& tree);
bool writeEarlierVersion(const Told& told, const MendTree& tree);
bool writeStandIn(const Told& told, const MendTree& tree);
bool loadOnCommand(const Told& told, const MendTree& tree);
bool appendCommandOfText(const Told& told, const MendTree& tree);
bool declareOwnCommand(const Told& told, const MendTree& tree);
bool writeOwnLocal(const Told& told, const MendTree& tree);
bool putMenusLast(const Told& told, const MendTree& tree);

// The host's list of menus.
bool takeEmptyEntriesOut(const Told& told, const MendTree& tree);
bool renameHostMenu(const Told& told, const MendTree& tree);
bool moveConfigurationAway(const Told& told, const MendTree& tree);

// What other findings tell.
bool mendNamedBundle(const Told& told, const MendTree& tree);
bool mendOwnBundle(const Told& told, const MendTree& tree);

} // namespace rehearsal
