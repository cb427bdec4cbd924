// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Verbs.h"

#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/Options.h"
#include "cli/Session.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace cli
{
namespace
{

/// "Bilder lesen: 37 %"
std::string ProgressLine(const std::string& what, double done)
{
    const double part = std::isfinite(done) ? std::clamp(done, 0.0, 1.0) : 0.0;
    return what + ": " + std::to_string(static_cast<int>(std::floor(part * 100.0))) + " %";
}

/// What the file held that will be written, when the work on it began.
std::string TargetBefore(const Options& options, const std::string& loaded)
{
    if (options.saveFile.empty())
        return {};
    const auto from = base::NativePath(options.caseFile);
    const auto to = base::NativePath(options.saveFile);
    std::error_code ignored;
    const bool same = !options.caseFile.empty() && from && to && std::filesystem::equivalent(*from, *to, ignored);
    return same ? loaded : casefile::FileDigest(options.saveFile);
}

/// Saves the case, unless an entry was refused: then the case is not what the call asked for.
int Save(const Options& options, Session& session, const std::string& before)
{
    if (session.Refused() && !options.saveRefused) {
        Complain(exitRefused, "eine Eingabe wurde nicht angenommen, deshalb wurde „" + options.saveFile +
                                  "“ nicht gespeichert (--save-refused speichert trotzdem)");
        return exitRefused;
    }
    casefile::MovePictures(session.Case(), options.caseFile, options.saveFile);
    const auto overwrite = options.force ? casefile::Overwrite::force : casefile::Overwrite::onlyCases;
    const auto saved = casefile::SaveCase(options.saveFile, session.Case(), overwrite, base::SystemFileCalls(), before);
    return saved ? exitDone : Complain(exitFile, saved.Text());
}

} // namespace

int MaskVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(arguments, {"--case", "--save", "--transfer", "--units", "--config", "--json",
                                                     "--progress", "--force", "--save-refused"});
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
    CaseInput loaded =
        options.caseFile.empty() ? CaseInput{ExampleCase(), {}, {}} : CaseFromFile(options.caseFile, base::Source::any);
    if (!loaded.data)
        return Complain(exitFile, loaded.error);

    const std::string before = TargetBefore(options, loaded.digest);
    Session session(std::move(loaded.data));
    if (options.progress)
        session.OnProgress([shown = std::string()](const std::string& what, double done) mutable {
            std::string line = ProgressLine(what, done);
            if (line != shown)
                std::fputs((line + "\n").c_str(), stderr);
            shown = std::move(line);
            return true;
        });
    const auto failure = session.Run(*mask, actions, [](const std::string& state) { Print(state + "\n"); });
    if (failure)
        return Complain(failure->exit, failure->text);
    // The case first: a reader that goes away does not cost it.
    int exit = session.Refused() ? exitRefused : exitDone;
    if (session.FileFailure())
        exit = Complain(session.FileFailure()->exit, session.FileFailure()->text);
    if (!options.saveFile.empty())
        exit = std::max(exit, Save(options, session, before));
    Print(session.State() + "\n");
    return exit;
}

} // namespace cli
