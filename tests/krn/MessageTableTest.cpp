// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/MessageTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using framework::MessageKind;

/// A number that masks show, what the user is to do with it, and how many arguments come with it.
struct Wanted {
    UINT number;
    MessageKind kind;
    std::size_t args = 0;
};

constexpr MessageKind kInformation = MessageKind::information;
constexpr MessageKind kWarning = MessageKind::warning;
constexpr MessageKind kQuestion = MessageKind::question;

constexpr Wanted kWanted[] = {
    {1000, kWarning},
    {1001, kWarning, 4}, // label, text, minimum, maximum
    {1002, kWarning, 4},
    {1003, kWarning, 2},
    {1052, kQuestion},
    {1093, kWarning},
    {1201, kWarning},
    {1202, kWarning},
    {1203, kWarning},
    {1204, kWarning},
    {1331, kInformation},
    {1332, kWarning},
    {1333, kWarning},
    {1334, kWarning},
    {1335, kWarning},
    {1336, kWarning},
    {1339, kWarning},
    {1340, kWarning},
    {1341, kWarning},
    {1342, kQuestion},
    {1343, kWarning},
    {1344, kQuestion},
    {1345, kWarning, 3}, // known speed, acceleration, limit
    {1346, kWarning},
    {1347, kInformation, 1}, // phase
    {1348, kWarning, 2},     // path, difference
    {1349, kWarning},
    {1350, kWarning},
    // From here to 1419: phases of the vehicle and of the opponent.
    {1402, kWarning, 2},
    {1403, kWarning, 2},
    {1404, kWarning, 2},
    {1405, kWarning, 2},
    {1406, kWarning, 2},
    {1407, kWarning, 2},
    {1408, kWarning, 2},
    {1409, kWarning, 2},
    {1410, kWarning, 2},
    {1411, kWarning, 2},
    {1412, kWarning, 2},
    {1413, kWarning, 2},
    {1414, kWarning, 2},
    {1415, kWarning, 2},
    {1416, kWarning, 2},
    {1417, kWarning, 2},
    {1418, kQuestion, 2},
    {1419, kInformation, 2},
    {1443, kWarning},
    {1980, MessageKind::confirmation},
};

const krn::MessageText* Find(UINT number)
{
    const auto table = krn::MessageTable();
    const auto found =
        std::find_if(table.begin(), table.end(), [number](const auto& text) { return text.number == number; });
    return found == table.end() ? nullptr : &*found;
}

TEST(MessageTableTest, EveryNumberThatMasksShowHasATextOfItsKind)
{
    for (const Wanted& wanted : kWanted) {
        const krn::MessageText* message = Find(wanted.number);
        ASSERT_NE(message, nullptr) << wanted.number;
        EXPECT_EQ(message->kind, wanted.kind) << wanted.number;
        // Every argument that the masks hand over finds its place or is left out; none is missing.
        std::vector<MessageArg> args;
        for (std::size_t i = 0; i < wanted.args; ++i)
            args.emplace_back("Wert" + std::to_string(i));
        const std::string text = krn::FormatMessage(wanted.number, args).text;
        EXPECT_EQ(text.find_first_of("{}"), std::string::npos) << text;
        const bool asks = text.back() == '?';
        EXPECT_EQ(asks, wanted.kind == kQuestion) << text;
        EXPECT_TRUE(asks || text.back() == '.') << text;
        EXPECT_EQ(text.find("  "), std::string::npos) << text;
    }
    const std::vector<MessageArg> limit{std::string("50,00"), std::string("-2,00"), std::string("70,00")};
    EXPECT_EQ(krn::FormatMessage(1345, limit).text,
              "Die Geschwindigkeitsgrenze 70,00 km/h liegt über der bekannten Geschwindigkeit 50,00 km/h und wird mit "
              "der Beschleunigung -2,00 m/s² nicht erreicht. Es wird ohne Grenze gerechnet.");
}

TEST(MessageTableTest, ConfirmationsAndQuestionsAreDeclinedUnlessAnswered)
{
    framework::NullFrontEnd front;
    EXPECT_EQ(front.ShowMessage(nullptr, krn::FormatMessage(1980, {})), fehlerAbbrechen);
    EXPECT_EQ(front.ShowMessage(nullptr, krn::FormatMessage(1052, {})), fehlerNein);
    EXPECT_EQ(front.ShowMessage(nullptr, krn::FormatMessage(1000, {})), fehlerOk);
}

TEST(MessageTableTest, IsSortedUniqueAndKeepsBracesOfArguments)
{
    UINT last = 0;
    for (const auto& message : krn::MessageTable()) {
        EXPECT_LT(last, message.number);
        last = message.number;
    }
    const std::vector<MessageArg> args{std::string("Feld"), std::string("{0}{1}"), 1.5, std::int64_t{7}};
    EXPECT_EQ(krn::FormatMessage(1002, args).text,
              "Feld: Der Wert {0}{1} liegt außerhalb des zulässigen Bereichs von 1,5 bis 7.");
    EXPECT_EQ(krn::FormatMessage(4711, args).text, "Meldung 4711 · Feld · {0}{1} · 1,5 · 7");
}

} // namespace
