// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Verbs.h"

#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/Options.h"
#include "cli/Session.h"

namespace cli
{

int MaskVerb(const std::vector<std::string>& arguments)
{
    const Options options =
        ParseOptions(arguments, {"--case", "--save", "--transfer", "--units", "--config", "--json"});
    if (!options.error.empty())
        return Complain(exitUsage, options.error);
    const auto mask = options.rest.empty() ? std::nullopt : MaskNumber(options.rest.front());
    if (!mask)
        return Complain(exitUsage, "mask erwartet die Nummer einer Maske");
    std::vector<Action> actions;
    for (std::size_t i = 1; i < options.rest.size(); ++i) {
        ParsedAction parsed = ParseAction(options.rest[i]);
        if (!parsed.action)
            return Complain(exitUsage, parsed.error);
        actions.push_back(std::move(*parsed.action));
    }
    if (const auto error = ApplySettings(options))
        return Complain(exitFile, *error);
    CaseInput loaded = options.caseFile.empty() ? CaseInput{ExampleCase(), {}} : CaseFromFile(options.caseFile);
    if (!loaded.data)
        return Complain(exitFile, loaded.error);

    Session session(std::move(loaded.data));
    const auto failure = session.Run(*mask, actions, [](const std::string& state) { Print(state + "\n"); });
    if (failure)
        return Complain(failure->exit, failure->text);
    Print(session.State() + "\n");
    if (!options.saveFile.empty())
        if (const auto saved = casefile::SaveCase(options.saveFile, session.Case()); !saved)
            return Complain(exitFile, saved.Text());
    return session.Refused() ? exitRefused : exitDone;
}

} // namespace cli
