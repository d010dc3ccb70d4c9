#include "cli/rules/RuleInput.h"

#include "host/LocaleText.h"

#include <algorithm>

namespace cli {

RuleInput::RuleInput(const Examination& facts) : examination(facts), dependencies(facts)
{
    for (const ExaminedBundle& bundle : facts.bundles) {
        for (std::size_t index = 0; index < bundle.components.size(); ++index) {
            const ExaminedComponent& component = bundle.components[index];
            auto& commands = component.record.loadsOnCommand() ? declaredCommands : idleCommands;
            for (const KestCommands& group : component.record.commands) {
                for (const KestCommand& command : group.commands) {
                    if (component.record.loadsOnCommand()) {
                        firstDeclaring.try_emplace(component.record.moduleName, ComponentPlace{&bundle, index});
                    }
                    std::wstring name = command.localName;
                    localetext::upperByGlobalLocale(name);
                    auto& places = commands[name];
                    if (places.empty() || places.back().bundle != &bundle || places.back().component != index) {
                        places.push_back({&bundle, index});
                    }
                }
            }
        }
    }
}

const ComponentPlace* RuleInput::loadedBy(const std::wstring& name) const
{
    const auto module = examination.commands.find(name);
    const auto places = declaredCommands.find(name);
    if (name.empty() || module == examination.commands.end() || places == declaredCommands.end()) {
        return nullptr;
    }
    const auto found = std::find_if(places->second.begin(), places->second.end(), [&](const ComponentPlace& place) {
        return (*place).record.moduleName == module->second;
    });
    return found != places->second.end() ? &*found : nullptr;
}

} // namespace cli
