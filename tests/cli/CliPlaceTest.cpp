// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Session.h"

#include "casefile/CaseFile.h"
#include "host/CDialog.h"

#include <gtest/gtest.h>

#include <map>

namespace
{

struct Outcome {
    std::string error;
    std::map<std::string, double> record;
};

/// Runs actions on mask 487 of an example case.
Outcome Play(std::initializer_list<const char*> actions)
{
    std::vector<cli::Action> parsed;
    for (const char* action : actions)
        parsed.push_back(cli::ParseAction(action).action.value());
    auto data = std::make_unique<CRuvData>();
    casefile::NewExampleCase(*data);
    cli::Session session(std::move(data));
    const auto failure = session.Run(487, parsed);
    Outcome outcome{failure ? failure->text : "", {}};
    auto* mask = dynamic_cast<CMDIRechDialog*>(session.Mask()->object);
    for (const RecordField& field : mask->DescribeRecord())
        if (const auto* value = std::get_if<double*>(&field.value))
            outcome.record[std::string(field.name)] = **value;
    return outcome;
}

TEST(CliPlace, AnswersTheOpenRequestByNumberOrName)
{
    const Outcome outcome = Play({"select:48721=1", "press:48741", "place:0=100,200,90,0,0", "press:48745",
                                  "place:gesamtsplitterfeld=-300,50.5,-30,400,150"});
    EXPECT_EQ(outcome.error, "");
    EXPECT_NEAR(outcome.record.at("objekt.fahrzeug.x"), 1.0, 1e-12);
    EXPECT_NEAR(outcome.record.at("objekt.fahrzeug.winkel"), 1.5707963267948966, 1e-12);
    EXPECT_NEAR(outcome.record.at("objekt.gesamtfeld.y"), 0.505, 1e-12);
    EXPECT_NEAR(outcome.record.at("objekt.gesamtfeld.breite"), 4.0, 1e-12);
    EXPECT_NEAR(outcome.record.at("objekt.gesamtfeld.laenge"), 1.5, 1e-12);
}

TEST(CliPlace, WithoutARequestMovesWhatStandsInTheScene)
{
    const Outcome outcome =
        Play({"press:48742", "place:1=0,0,0,400,200", "press:1", "place:Kollisionsort=700,0,0,400,200"});
    EXPECT_EQ(outcome.error, "");
    EXPECT_NEAR(outcome.record.at("objekt.kollisionsort.x"), 7.0, 1e-12);
}

TEST(CliPlace, SaysWhatIsAskedInstead)
{
    EXPECT_NE(Play({"press:48742", "place:2=0,0,0,1,1"}).error.find("Kollisionsort"), std::string::npos);
    EXPECT_NE(Play({"place:2=0,0,0,1,1"}).error.find("Szene"), std::string::npos);
    EXPECT_NE(Play({"48751=7"}).error.find("ausgeblendet"), std::string::npos) << "a field of a page that is not shown";
}

} // namespace
