// Whole outputs that are kept as files in tests/cli/golden.
#pragma once

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

/// Expects `text` to be the golden file `name`. With KEST_WRITE_GOLDEN in the environment the file is written instead;
/// then look at the difference before you commit it.
inline void expectGolden(const std::string& name, const std::string& text)
{
    const std::string file = std::string(KEST_GOLDEN_FOLDER) + "/" + name;
    if (std::getenv("KEST_WRITE_GOLDEN") != nullptr) {
        std::ofstream(file, std::ios::binary) << text;
    }
    std::ifstream stream(file, std::ios::binary);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(stream), {})) << "golden file " << name;
}
