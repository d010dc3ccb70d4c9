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
bool makeFolder(const Told& told, MendTree& tree);
bool letRead(const Told& told, MendTree& tree);
bool letWrite(const Told& told, MendTree& tree);
bool removeFile(const Told& told, MendTree& tree);
bool writeManifest(const Told& told, MendTree& tree);
bool renameManifest(const Told& told, MendTree& tree);
bool moveManifestUp(const Told& told, MendTree& tree);
bool unpack(const Told& told, MendTree& tree);
bool removeBundle(const Told& told, MendTree& tree);
bool renameBundle(const Told& told, MendTree& tree);
bool installNeeded(const Told& told, MendTree& tree);
bool makeFileSound(const Told& told, MendTree& tree);
bool mendReason(const Told& told, MendTree& tree);
bool shipAsMenu(const Told& told, MendTree& tree);
bool renameFile(const Told& told, MendTree& tree);
bool shortenPath(const Told& told, MendTree& tree);

// What the manifest says.
bool reparse(const Told& told, MendTree& tree);
bool renameAtPlace(const Told& told, MendTree& tree);
bool putIntoNamed(const Told& told, MendTree& tree);
bool makeOutermost(const Told& told, MendTree& tree);
bool writeAttributeOfText(const Told& told, MendTree& tree);
bool removeAttributesOfText(const Told& told, MendTree& tree);
bool removeAttributeAtPlace(const Told& told, MendTree& tree);
bool removeElement(const Told& told, MendTree& tree);
bool writeBounds(const Told& told, MendTree& tree);
bool removeBounds(const Told& told, MendTree& tree);
bool writeExpectedBound(const Told& told, MendTree& tree);
bool writeTrue(const Told& told, MendTree& tree);
bool writeFalse(const Told& told, MendTree& tree);
bool moveToPackage(const Told& told, MendTree& tree);
bool writeSimilarCode(const Told& told, MendTree& tree);
bool writeNeededCode(const Told& told, MendTree& tree);
bool writeOwnCode(const Told& told, MendTree& tree);
bool giveUnneededOwnCodes(const Told& told, MendTree& tree);
bool removeUnneeded(const Told& told, MendTree& tree);
bool wrapInPackage(const Told& told, MendTree& tree);

// Components and commands.
bool declareComponent(const Told& told, MendTree& tree);
bool giveNamedBundleAComponent(const Told& told, MendTree& tree);
bool giveEmptyBundlesComponents(const Told& told, MendTree& tree);
bool removeEmptyBundles(const Told& told, MendTree& tree);
bool writeModuleName(const Told& told, MendTree& tree);
bool writeFileKind(const Told& told, MendTree& tree);
bool writeSimilarKind(const Told& told, MendTree& tree);
bool writeStandIn(const Told& told, MendTree& tree);
bool loadOnCommand(const Told& told, MendTree& tree);
bool appendCommandOfText(const Told& told, MendTree& tree);
bool declareOwnCommand(const Told& told, MendTree& tree);
bool writeOwnLocal(const Told& told, MendTree& tree);
bool putMenusLast(const Told& told, MendTree& tree);

// The host's list of menus.
bool takeEmptyEntriesOut(const Told& told, MendTree& tree);
bool renameHostMenu(const Told& told, MendTree& tree);

// What other findings tell.
bool mendNamedBundle(const Told& told, MendTree& tree);
bool mendOwnBundle(const Told& told, MendTree& tree);

} // namespace rehearsal
