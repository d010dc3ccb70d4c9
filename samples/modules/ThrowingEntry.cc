// A module whose entry ends with a C++ exception. The host reports it and goes on.
#include "standalone/ModuleApi.h"

#include <fstream>
#include <stdexcept>
#include <string>

int kestModuleEntry()
{
    const std::string catalogue = "/nonexistent/steel-profiles.csv";
    if (!std::ifstream(catalogue)) {
        throw std::runtime_error("the profile catalogue " + catalogue + " cannot be opened");
    }
    return 0;
}
