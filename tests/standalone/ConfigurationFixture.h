// A host with a configuration store, the two menu keys in it, and processes that use the store as others would.
#pragma once

#include "HostFixture.h"

#include "standalone/Configuration.h"

#include "host/Configuration.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace standalonetest {

inline constexpr wchar_t kOurs[] = L"CUIX/LoadedBundleCuix";
inline constexpr wchar_t kHosts[] = L"CUIX/LoadedCuix";

/// Gives `value` a text, as the autoloader does it.
inline void giveText(KestVariant& value, const std::wstring& text)
{
    const auto count = static_cast<std::int32_t>((text.size() + 1) * 4 + 4);
    char* block = static_cast<char*>(std::malloc(static_cast<std::size_t>(count)));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(block, &count, 4);
    std::memcpy(block + 4, text.c_str(), static_cast<std::size_t>(count) - 4);
    std::free(value.block);
    value.type = KestVariant::kText;
    value.block = block;
}

/// The text of `value`, whose block must have the layout agreed on.
inline std::wstring textOf(const KestVariant& value)
{
    EXPECT_EQ(value.type, KestVariant::kText);
    const char* block = static_cast<const char*>(value.block);
    std::int32_t count = 0;
    std::memcpy(&count, block, 4);
    EXPECT_GE(count, 8);
    EXPECT_EQ(count % 4, 0);
    std::wstring text(static_cast<std::size_t>(count) / 4 - 1, L'?');
    std::memcpy(text.data(), block + 4, text.size() * 4);
    EXPECT_EQ(text.back(), L'\0');
    text.pop_back();
    return text;
}

class ConfigurationFixture : public HostFixture
{
protected:
    using Turn = standalone::Configuration::Turn;

    standalone::Configuration& store() { return running->configuration(); }
    std::string file() const { return settings.configurationFile; }
    std::string fileFolder() const { return folder / "configuration"; }

    static Kest::ErrorStatus set(const wchar_t* key, const std::wstring& text)
    {
        KestVariant value;
        giveText(value, text);
        return kestConfig()->setValue(TarvixConfig::kMenus, key, value);
    }

    /// The text under `key`, or `otherwise` when there is none.
    static std::wstring get(const wchar_t* key, const std::wstring& otherwise = L"(none)")
    {
        KestVariant value;
        return kestConfig()->getValue(TarvixConfig::kMenus, key, value) == Kest::eOk ? textOf(value) : otherwise;
    }

    static Kest::ErrorStatus statusOfGetting(const wchar_t* key)
    {
        KestVariant value;
        const Kest::ErrorStatus status = kestConfig()->getValue(TarvixConfig::kMenus, key, value);
        EXPECT_EQ(value.type, status == Kest::eOk ? KestVariant::kText : KestVariant::kNone);
        return status;
    }

    /// Stores the pair of menu lists, which a test then finds again.
    void storePair(const std::wstring& ours, const std::wstring& hosts)
    {
        if (!running) {
            startHost();
        }
        const Turn turn(store());
        EXPECT_EQ(set(kOurs, ours), Kest::eOk);
        EXPECT_EQ(set(kHosts, hosts), Kest::eOk);
    }

    using Pair = std::pair<std::wstring, std::wstring>;
    static Pair pair() { return {get(kOurs), get(kHosts)}; }

    /// Whether each write of the journal was stored, and if not, why.
    std::vector<std::string> writes() const
    {
        std::vector<std::string> outcomes;
        for (const auto& write : running->journal().only<standalone::ConfigurationWrite>()) {
            outcomes.push_back(write.stored ? "stored" : "refused: " + write.problem);
        }
        return outcomes;
    }

    /// What the file's notices begin with.
    std::string notRead() const { return "The configuration file \"" + file() + "\" could not be read: "; }
    std::string notWritten() const { return "The configuration file \"" + file() + "\" could not be written: "; }

    /// Runs `sql` on the file as another program would.
    void asAnotherProgram(const std::string& sql) const
    {
        sqlite3* other = nullptr;
        ASSERT_EQ(sqlite3_open(file().c_str(), &other), SQLITE_OK);
        char* problem = nullptr;
        EXPECT_EQ(sqlite3_exec(other, sql.c_str(), nullptr, nullptr, &problem), SQLITE_OK) << problem;
        sqlite3_free(problem);
        sqlite3_close(other);
    }
};

/// Runs `work` in a process of its own, which ends with 0, or with 1 when an expectation failed in it.
inline pid_t startProcess(const std::function<void()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

/// Waits for `child` and returns its wait status.
inline int endOf(pid_t child)
{
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

} // namespace standalonetest
