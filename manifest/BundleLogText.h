// The texts that are written to the error log behind a path. They are a format: people and tools look for them.
#pragma once

namespace bundlelogtext {

inline constexpr char kSplitLine[] = "---------------------------------------";

inline constexpr char kFileFormatError[] = "  File format error\n";
inline constexpr char kWrongProductVersion[] =
    ": The product version number of the RuntimeRequirements element is incorrect\n";
inline constexpr char kWrongOS[] = ": The OS of the RuntimeRequirements element is incorrect\n";
inline constexpr char kWrongArchitecture[] = ": The architecture of the RuntimeRequirements element is incorrect\n";
inline constexpr char kWrongPlatform[] = ": The platform of the RuntimeRequirements element is incorrect\n";
inline constexpr char kLoadingFailed[] = " loading failed\n";

} // namespace bundlelogtext
