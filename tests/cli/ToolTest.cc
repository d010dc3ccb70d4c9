#include "tests/cli/ToolTest.h"

#include "tests/SpawnWords.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <regex>
#include <sstream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

void redirect(const std::string& file, int flags, int descriptor)
{
    const int opened = ::open(file.c_str(), flags, 0600);
    if (opened < 0 || ::dup2(opened, descriptor) < 0) {
        ::_exit(126);
    }
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// The user who owns nothing.
constexpr uid_t kNobody = 65534;

constexpr std::string_view kTimeForm = "0000-00-00 00:00:00";

/// Every member "milliseconds" in `value` is a time or null; times become 0.
void maskMilliseconds(nlohmann::json& value)
{
    for (auto& [name, member] : value.items()) {
        if (value.is_object() && name == "milliseconds") {
            EXPECT_TRUE(member.is_null() || (member.is_number() && member.get<double>() >= 0)) << value;
            member = member.is_null() ? member : nlohmann::json(0);
        } else if (member.is_structured()) {
            maskMilliseconds(member);
        }
    }
}

bool isTime(std::string_view text)
{
    const auto fits = [](char character, char form) {
        return form == '0' ? character >= '0' && character <= '9' : character == form;
    };
    return std::equal(text.begin(), text.end(), kTimeForm.begin(), kTimeForm.end(), fits);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ToolRun& run)
{
    return stream << "status " << run.status << "\noutput:\n" << run.output << "\nerrors:\n" << run.errors;
}

ToolTest::ToolTest()
{
    std::string pattern = fs::temp_directory_path().string() + "/kestbundle-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error(std::strerror(errno));
    }
    root = fs::canonical(pattern).string();
    fs::create_directories(path("tool/bin"));
    fs::create_directories(path("tool/lib"));
    fs::create_directories(path("home"));
    fs::create_directories(path("program"));
    std::error_code error;
    fs::create_hard_link(KEST_TOOL_FILE, path("tool/bin/kestbundle"), error);
    if (error) { // another file system
        fs::copy_file(KEST_TOOL_FILE, path("tool/bin/kestbundle"));
    }
    fs::create_symlink(KEST_LIBRARY_FILE, path("tool/lib/libkestbundle.so"));
    environment = {"HOME=" + home(), "LC_ALL=C.UTF-8"};
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* value = std::getenv(name)) {
            environment.push_back(std::string(name) + "=" + value);
        }
    }
}

ToolTest::~ToolTest()
{
    std::error_code ignored;
    fs::remove_all(root, ignored);
}

void ToolTest::write(const std::string& file, const std::string& content)
{
    fs::create_directories(fs::path(file).parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

std::string ToolTest::contentOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

std::string ToolTest::install(const std::string& name, const std::string& manifest) const
{
    write(plugins() + name + "/PackageContents.xml", manifest);
    return plugins() + name;
}

void ToolTest::installModule(const std::string& module, const std::string& folder, const std::string& name)
{
    fs::create_directories(folder);
    fs::copy_file(std::string(KEST_MODULE_FOLDER) + "/" + module + ".krx", folder + "/" + name);
}

void ToolTest::installEvaluator() const
{
    installModule("evaluator", path("tool/lib"), "libKestLispEvaluator.so");
}

void ToolTest::installPythonStandIn() const
{
    installModule("pythonengine", path("tool/lib"), "libVxPythonLoad.so");
    installModule("entryless", path("tool/lib"), "libstandin.so");
}

void ToolTest::installEngines() const
{
    for (const char* engine : {"libKestLispEvaluator.so", "libVxPythonLoad.so", "VxManagedCommand.dll"}) {
        fs::create_symlink(fs::path(KEST_ENGINE_FOLDER) / engine, path("tool/lib/") + engine);
    }
}

std::vector<std::string> ToolTest::commandThatStarts(const std::string& tool)
{
    std::vector<std::string> words;
    std::istringstream emulator(KEST_EMULATOR);
    for (std::string word; std::getline(emulator, word, '|');) {
        words.push_back(word);
    }
    words.push_back(tool);
    return words;
}

ToolRun ToolTest::runTool(const std::vector<std::string>& arguments, const std::string& input)
{
    write(path("input"), input);
    const std::string tool = path("tool/bin/kestbundle");
    std::vector<std::string> words = commandThatStarts(tool);
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argumentPointers = pointersTo(words);
    const std::vector<char*> environmentPointers = pointersTo(environment);
    const std::string output = standardOutput.empty() ? path("output") : standardOutput;
    const std::string errors = path("errors");

    const pid_t process = ::fork();
    if (process == 0) {
        ::alarm(words.front() == tool ? 60 : 600); // outlives exec; emulation takes its time
        redirect(path("input"), O_RDONLY, STDIN_FILENO);
        redirect(output, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        redirect(errors, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        if (largestFile != RLIM_INFINITY) {
            const rlimit limit{largestFile, largestFile};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, SIG_IGN); // an error, as on a full disk
        }
        if (isUnprivileged && (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) {
            ::_exit(127);
        }
        if (::chdir(root.c_str()) == 0) {
            ::execve(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        }
        ::_exit(127);
    }
    int status = 0;
    while (process > 0 && ::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            standardOutput.empty() ? contentOf(output) : "", contentOf(errors)};
}

void ToolTest::runUnprivileged()
{
    if (::geteuid() != 0) {
        return;
    }
    isUnprivileged = true;
    // A copy: that user may not be let into the folder that the library was built in.
    fs::remove(path("tool/lib/libkestbundle.so"));
    fs::copy_file(KEST_LIBRARY_FILE, path("tool/lib/libkestbundle.so"));
    EXPECT_EQ(::chown(root.c_str(), kNobody, kNobody), 0);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.path() != path("tool/bin/kestbundle")) { // which may be the built one
            EXPECT_EQ(::lchown(entry.path().c_str(), kNobody, kNobody), 0) << entry.path();
        }
    }
}

ToolRun ToolTest::run(std::vector<std::string> arguments, const std::string& input)
{
    std::vector<std::string> all = {"run", "--program-dir", path("program"), "--vernum", "26.0_1_Linux_test"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ToolRun done = runTool(all, input);
    done.output = normalised(done.output);
    done.errors = normalised(done.errors);
    return done;
}

nlohmann::json ToolTest::runJson(std::vector<std::string> arguments, const std::string& input)
{
    arguments.insert(arguments.begin(), "--json");
    const ToolRun done = run(std::move(arguments), input);
    EXPECT_EQ(done.errors, "");
    nlohmann::json document = nlohmann::json::parse(done.output, nullptr, false);
    EXPECT_FALSE(document.is_discarded()) << done;
    if (document.is_object()) {
        EXPECT_EQ(document["exitStatus"], done.status);
        unmasked = document;
        maskMilliseconds(document);
    }
    return document;
}

void ToolTest::useLatin1()
{
    environment[1] = "LC_ALL=de_DE.ISO-8859-1";
    environment.push_back("LOCPATH=" KEST_TEST_LOCALES);
}

std::string ToolTest::normalised(std::string text) const
{
    text = replaced(std::move(text), root, "/T");
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isTime(std::string_view(text).substr(at, kTimeForm.size()))) {
            text.replace(at, kTimeForm.size(), "TIME");
        }
    }
    return std::regex_replace(text, std::regex("[0-9]+\\.[0-9] ms"), "N ms");
}

std::string manifestOf(const std::string& content, const std::string& upgradeCode)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ApplicationPackage SchemaVersion=\"1.0\" UpgradeCode=\"" +
           upgradeCode + "\">\n" + content + "</ApplicationPackage>\n";
}

std::string startupEntry(const std::string& module)
{
    return "<Components><ComponentEntry ModuleName=\"" + module + "\"/></Components>\n";
}

std::string scriptEntry(const std::string& script, const std::string& pythonVersion)
{
    return "<Components><ComponentEntry ModuleName=\"" + script + "\" PythonVersion=\"" + pythonVersion +
           "\"/></Components>\n";
}

std::string onDemandEntry(const std::string& module, const std::vector<std::string>& commands,
                          const std::string& pythonVersion)
{
    std::string list;
    for (const std::string& command : commands) {
        list += "<Command Global=\"" + command + "\" Local=\"" + command + "\"/>";
    }
    return "<Components><ComponentEntry ModuleName=\"" + module + "\" PythonVersion=\"" + pythonVersion +
           "\" LoadOnTARVIXStartup=\"false\" LoadOnCommandInvocation=\"true\"><Commands GroupName=\"G\">" + list +
           "</Commands></ComponentEntry></Components>\n";
}
