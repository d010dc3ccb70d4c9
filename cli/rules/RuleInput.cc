#include "cli/rules/RuleInput.h"

#include "host/LocaleText.h"

namespace cli {

RuleInput::RuleInput(const Examination& facts) : examination(facts), dependencies(facts)
{
    for (const ExaminedBundle& bundle : facts.bundles) {
        for (std::size_t index = 0; index < bundle.components.size(); ++index) {
            const ExaminedComponent& component = bundle.components[index];
            if (!component.record.loadsOnCommand()) {
                continue;
            }
            for (const KestCommands& group : component.record.commands) {
                for (const KestCommand& command : group.commands) {
                    std::wstring name = command.localName;
                    localetext::upperByGlobalLocale(name);
                    auto& places = declaredCommands[name];
                    if (places.empty() || places.back().bundle != &bundle || places.back().component != index) {
                        places.push_back({&bundle, index});
                    }
                }
            }
        }
    }
}

} // namespace cli
