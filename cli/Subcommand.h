// A subcommand in the making: its options, its arguments, what it does. Behind it stands the library that takes command
// lines apart, whose header takes the compiler longer than any source of the tool.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace cli {

/// What a subcommand does once the command line is understood; returns the exit status. Throws WrongUse.
using Action = std::function<int()>;

/// Says what is wrong with a value; an empty text: nothing is.
using ValueCheck = std::function<std::string(const std::string& given)>;

enum class Presence
{
    kOptional,
    kRequired
};

/// What options and arguments fill must outlive the parsing. Texts are those of the command line, byte for byte; `form`
/// stands for the value in the help.
class Subcommand
{
public:
    /// Adds it to `app`, which owns it.
    Subcommand(CLI::App& app, const std::string& name, const std::string& description);

    /// An option without a value; with `other`, if there is one, it is refused.
    void flag(const std::string& name, bool& target, const std::string& help, CLI::Option* other = nullptr);

    /// An option with one value, the last one given. Without a check of its own only an empty value is refused.
    CLI::Option* text(const std::string& name, std::string& target, const std::string& form, const std::string& help,
                      ValueCheck check = {});

    /// An option that may be given more than once, with one value each time.
    void texts(const std::string& name, std::vector<std::string>& target, const std::string& form,
               const std::string& help);

    /// The same with values that are among `choices`; several may stand together with commas between them. The help
    /// shows all, and a refusal proposes the nearest one.
    void choices(const std::string& name, std::vector<std::string>& target, const std::string& form,
                 const std::string& help, const std::vector<std::string>& choices);

    /// A value that stands by itself.
    void argument(const std::string& name, std::string& target, const std::string& form, const std::string& help,
                  Presence presence = Presence::kOptional);

    /// All values that stand by themselves.
    void arguments(const std::string& name, std::vector<std::string>& target, const std::string& form,
                   const std::string& help, Presence presence = Presence::kOptional);

    /// What the help ends with.
    void footer(const std::string& text);

    /// Makes `action` what is `chosen` when the subcommand is called; `chosen` must outlive the parsing.
    void does(Action& chosen, Action action);

private:
    CLI::App& parser;
};

} // namespace cli
