// Requirements of a manifest, and what the log says of those that the recording host does not meet.
#pragma once

#include "tests/AutoloaderTest.h"

inline const hostdouble::Element kFitting{L"RuntimeRequirements", {{L"Architecture", L"x86_64"}}};
inline const hostdouble::Element kUnfitting{L"RuntimeRequirements", {{L"Architecture", L"x86_64"}, {L"OS", L"Plan9"}}};

/// The log's records of the bundle "/bundles/a".
inline const std::string kEntry = kSplit + "/bundles/a/PackageContents.xml";
inline const std::string kVersion =
    kEntry + ": The product version number of the RuntimeRequirements element is incorrect\n";
inline const std::string kOS = kEntry + ": The OS of the RuntimeRequirements element is incorrect\n";
inline const std::string kArchitecture =
    kEntry + ": The architecture of the RuntimeRequirements element is incorrect\n";
inline const std::string kPlatform = kEntry + ": The platform of the RuntimeRequirements element is incorrect\n";
