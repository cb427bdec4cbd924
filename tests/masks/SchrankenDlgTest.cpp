// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What is entered in mask 487, and what its pages and hints say of it.
#include "casefile/CaseFile.h"
#include "host/CDC.h"
#include "krn/Placing.h"
#include "tests/masks/SchrankenMaske.h"

#include <algorithm>
#include <cmath>

namespace
{

using framework::InputResult;
using framework::Window;

class SchrankenDlgTest : public test::SchrankenMaske
{
};

TEST_F(SchrankenDlgTest, PageButtonsShowOnePageEach)
{
    Open();
    EXPECT_TRUE(pages[0]->visible);
    for (std::size_t number = 5; number >= 1; --number) {
        Page(number);
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(pages[i]->visible, i == number - 1);
            EXPECT_EQ(Control(*mask, IDC_SCHR_BU1 + static_cast<UINT>(i)).check, i == number - 1 ? 1 : 0);
        }
    }
    EXPECT_EQ(pages[2]->id, 30050U);
    UINT styles[4]{};
    EXPECT_EQ(static_cast<CMDIDialog*>(mask->object)->GetCloneCropStyle(styles), 2U);
}

TEST_F(SchrankenDlgTest, CheckNamesTheFirstReasonAndComputesNothing)
{
    Open();
    const std::string start = "Es sind nicht genügend Daten für eine Berechnung verfügbar. Folgende Fehler sind "
                              "aufgetreten:\n";
    const auto refusal = [&] {
        front.messages.clear();
        Press(*mask, IDC_RECHNEN);
        EXPECT_EQ(front.messages.size(), 1U);
        EXPECT_EQ(High(), 0.0);
        return front.messages.empty() ? std::string{} : front.messages[0].text;
    };
    EXPECT_EQ(refusal(), start + "Die Fahrzeugposition wurde nicht festgelegt.\n");
    Choose(Page(1), IDC_SCHR_FAHRZEUG, 1);
    Place(0, {-220, 0}, 0);
    EXPECT_EQ(refusal(), start + "Die Endlage der Person wurde nicht festgelegt.\n");
    Place(2, {375, -90}, 0, 50, 180);
    EXPECT_EQ(refusal(), start + "Der Kollisionsbereich wurde nicht festgelegt.\n");
    Place(1, {-1800, -100}, 0, 400, 200);
    EXPECT_EQ(refusal(), start + "Die Bremsverzögerung wurde nicht festgelegt.\n");
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "7");
    EXPECT_EQ(refusal(), start + "Es muss eine Toleranz für die Bremsverzögerung angegeben werden.\n");
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG_TOLERANZ, "0,7");
    front.messages.clear();
    Press(*mask, IDC_RECHNEN); // without any theory too
    EXPECT_TRUE(front.messages.empty());
    EXPECT_GT(High(), 0.0);
    // A refused entry holds the computation back.
    framework::TypeText(Control(Page(2), IDC_SCHR_VERZOEGERUNG), "21");
    EXPECT_EQ(Press(*mask, IDC_RECHNEN), InputResult::refused);
    EXPECT_EQ(front.refusals.back().args.at(0), "Verzögerung (m/s²)");
}

TEST_F(SchrankenDlgTest, PlacingIsAskedForAndAnswered)
{
    Open();
    Window& page = Page(1);
    EXPECT_EQ(Press(page, IDC_SCHR_SETZEN_FAHRZEUG), InputResult::disabled);
    EXPECT_EQ(Hint(IDC_SCHR_POSITION_HINWEIS), "Bitte wählen Sie zuerst das Fahrzeug.");
    Choose(page, IDC_SCHR_FAHRZEUG, 1);
    EXPECT_EQ(Hint(IDC_SCHR_POSITION_HINWEIS), "");
    Press(page, IDC_SCHR_SETZEN_FAHRZEUG);
    const krn::PlacingRequest* request = krn::OpenPlacingRequest(data);
    ASSERT_NE(request, nullptr);
    EXPECT_TRUE(request->wish.centred);
    EXPECT_EQ(request->wish.participant, 0);
    EXPECT_DOUBLE_EQ(request->wish.length, 440.0);
    ASSERT_NE(Dialog(30070), nullptr);
    EXPECT_EQ(Text(*Dialog(30070), IDC_SCHR_SETZE_TEXT), "Bitte positionieren Sie das Fahrzeug in seiner Endlage");

    // The host window hears of every placement.
    struct Main : CWnd {
        const CMessageMap* GetMessageMap() const override
        {
            static constexpr CMessageEntry kEntries[] = {OnMessage<&Main::Count>(1352)};
            static constexpr CMessageMap kMap{nullptr, kEntries};
            return &kMap;
        }
        void Count() { ++heard; }
        int heard = 0;
    } main;
    thread.CreateTopWindow(main, framework::Kind::frame, 0, nullptr);
    thread.m_pMainWnd = &main;

    // The open dialog goes over to the next kind.
    Choose(page, IDC_SCHR_PERSON, 1);
    Press(page, IDC_SCHR_SETZEN_PERSON);
    EXPECT_EQ(std::count(front.events.begin(), front.events.end(), "appeared 30070"), 1);
    EXPECT_EQ(Text(*Dialog(30070), IDC_SCHR_SETZE_TEXT),
              "Bitte positionieren Sie den Fußgänger bzw. den Radfahrer in seiner Endlage");
    request = krn::OpenPlacingRequest(data);
    EXPECT_DOUBLE_EQ(request->wish.width, 50.0);
    EXPECT_DOUBLE_EQ(request->wish.length, 180.0) << "lying down, a person is as long as tall";
    CPlacedObject object = request->wish;
    object.position = {375, -90};
    object.angle = 30;
    EXPECT_TRUE(krn::AnswerPlacing(data, object));
    EXPECT_EQ(main.heard, 1);
    EXPECT_EQ(Control(page, IDC_SCHR_PLATZ_PERSON).check, 1);
    const auto scene = krn::SceneObjects(data);
    ASSERT_EQ(scene.size(), 1U);
    EXPECT_NEAR(scene[0].object.position.x, 375.0, 1e-9);
    EXPECT_NEAR(scene[0].object.angle, 30.0, 1e-9);
    Press(*Dialog(30070), IDOK);
    EXPECT_EQ(Dialog(30070), nullptr);
    EXPECT_EQ(krn::OpenPlacingRequest(data), nullptr);

    // Taken out, put back, and the view ends a request.
    Press(page, IDC_SCHR_PLATZ_PERSON);
    EXPECT_TRUE(krn::SceneObjects(data).empty());
    Press(page, IDC_SCHR_PLATZ_PERSON);
    EXPECT_EQ(krn::SceneObjects(data).size(), 1U);
    EXPECT_EQ(Dialog(30070), nullptr);
    Press(page, IDC_SCHR_PLATZ_HAUPTFELD); // has no place yet
    EXPECT_EQ(Control(page, IDC_SCHR_PLATZ_HAUPTFELD).check, 0);
    ASSERT_NE(Dialog(30070), nullptr);
    krn::EndPlacing(data);
    EXPECT_EQ(Dialog(30070), nullptr);
    framework::CloseDialog(*mask);
    thread.DispatchPending();
    EXPECT_TRUE(krn::SceneObjects(data).empty());
    thread.m_pMainWnd = &mainWindow;
}

TEST_F(SchrankenDlgTest, MovingAnObjectRecomputesAStandingResultAndOnlyProjectsBefore)
{
    Open();
    PlaceAll();
    const auto move = [&](double cm) {
        for (const krn::SceneObject& standing : krn::SceneObjects(data)) {
            if (standing.object.kind == 1) {
                CPlacedObject moved = standing.object;
                moved.position.x += cm;
                standing.client->ObjectPlaced(moved);
                return;
            }
        }
    };
    move(-100.0);
    EXPECT_EQ(High(), 0.0);
    EXPECT_NEAR(Field("kollisionBis"), 19.0, 1e-9);
    Compute();
    const double before = High();
    EXPECT_NEAR(Value(*mask, IDC_SCHR_WEG_BIS), 19.0, 0.3);
    EXPECT_NEAR(before, 3.6 * std::sqrt(2 * 7.7 * Value(*mask, IDC_SCHR_WEG_BIS)), 0.1);
    move(-300.0);
    EXPECT_NEAR(Value(*mask, IDC_SCHR_WEG_BIS), 22.0, 0.3);
    EXPECT_GT(High(), before);

    // The vehicle changes in the case: its front lies elsewhere.
    const double farther = Value(*mask, IDC_SCHR_WEG_BIS);
    data.KfzDat(0).length = 6.4;
    data.NotifyGeo(0);
    EXPECT_NEAR(Value(*mask, IDC_SCHR_WEG_BIS), farther + 1.0, 0.3);
    // It is removed: nothing old stays on the screen, and computing says why.
    data.KfzDat(0) = {};
    data.NotifyGeo(0);
    EXPECT_EQ(High(), 0.0);
    Press(*mask, IDC_RECHNEN);
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_NE(front.messages[0].text.find("Fahrzeugposition"), std::string::npos);
}

TEST_F(SchrankenDlgTest, SwitchesRecomputeOnlyAStandingResult)
{
    Open();
    PlaceAll();
    Press(Page(2), IDC_SCHR_DETTINGER);
    EXPECT_TRUE(Control(Page(2), IDC_SCHR_DETTINGER_TOLERANZ).enabled);
    EXPECT_EQ(High(), 0.0);
    Enter(Page(2), IDC_SCHR_DETTINGER_TOLERANZ, "1");
    Compute();
    const double narrow = High();
    Press(Page(2), IDC_SCHR_DETTINGER);
    EXPECT_FALSE(Control(Page(2), IDC_SCHR_DETTINGER_TOLERANZ).enabled);
    EXPECT_GT(High(), narrow);
    // An entry waits for "Rechnen" and says so, a spinner step does not.
    const double wide = High();
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "6");
    EXPECT_EQ(High(), wide);
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "Eingaben geändert: bitte neu rechnen.");
    Press(*mask, IDC_RECHNEN);
    EXPECT_LT(High(), wide);
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "");
    const double slower = High();
    StepOnce(Page(2), IDC_SCHR_VERZOEGERUNG, 1);
    EXPECT_GT(High(), slower);
}

TEST_F(SchrankenDlgTest, TheoriesThatLackSomethingSaySo)
{
    Open();
    PlaceAll();
    Compute();
    const double high = High();
    Press(Page(3), IDC_SCHR_FRONTSCHEIBE);
    Press(Page(3), IDC_SCHR_GESAMTFELD);
    Press(Page(3), IDC_SCHR_ABWICKLUNG);
    EXPECT_EQ(Hint(IDC_SCHR_FRONTSCHEIBE_HINWEIS), "Hauptfeld nicht platziert");
    EXPECT_EQ(Hint(IDC_SCHR_HAUPTFELD_HINWEIS), "");
    EXPECT_EQ(Hint(IDC_SCHR_GESAMTFELD_HINWEIS), "Gesamtfeld nicht platziert");
    EXPECT_NE(Hint(IDC_SCHR_ABWICKLUNG_HINWEIS), "");
    EXPECT_EQ(High(), high);
    Place(5, {-1200, -100}, 0, 300, 100);
    EXPECT_EQ(Hint(IDC_SCHR_FRONTSCHEIBE_HINWEIS), "");
    Enter(Page(3), IDC_SCHR_ABWICKLUNG_WEG, "200");
    EXPECT_EQ(Hint(IDC_SCHR_ABWICKLUNG_HINWEIS), "");
    Press(Page(2), IDC_SCHR_KUEHNEL_VERZOEGERUNG);
    EXPECT_EQ(Hint(IDC_SCHR_SCHRANKEN_HINWEIS), "");
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "3");
    EXPECT_NE(Hint(IDC_SCHR_SCHRANKEN_HINWEIS), "");
}

TEST_F(SchrankenDlgTest, ThrowCheckFollowsItsInputs)
{
    Open();
    PlaceAll();
    Compute();
    Window& page = Page(4);
    Enter(page, IDC_SCHR_RUTSCHVERZOEGERUNG, "5");
    Press(page, IDC_SCHR_WURF_MAXIMUM);
    const double distance = Value(page, IDC_SCHR_WURFWEG_MAXIMUM);
    EXPECT_NEAR(distance, Value(*mask, IDC_SCHR_WEG_BIS) + 4.0, 1e-9);
    EXPECT_NEAR(Value(page, IDC_SCHR_ABFLUGTEMPO), 3.6 * std::sqrt(2 * 5 * distance), 1e-9);
    Enter(page, IDC_SCHR_KONTROLLE_ANSTOSS, "0,5");
    EXPECT_NEAR(Value(page, IDC_SCHR_KOLLISIONSTEMPO), 7.2 * std::sqrt(2 * 5 * distance), 1e-9);
    EXPECT_EQ(Text(Page(5), IDC_SCHR_EXPORT_ANSTOSS), "0,50") << "one factor on both pages";
    Enter(Page(4), IDC_SCHR_HOEHENUNTERSCHIED, "1");
    EXPECT_EQ(front.refusals.size(), 1U);
}

TEST_F(SchrankenDlgTest, WhatIsShownIsKeptAtEveryRecomputation)
{
    Open();
    PlaceAll();
    Compute();
    const auto reopen = [&] {
        framework::CloseDialog(*mask); // without OK
        thread.DispatchPending();
        Open();
    };
    Press(Page(2), IDC_SCHR_KUEHNEL_GLOBAL);
    const double narrowed = High();
    reopen();
    EXPECT_EQ(Control(Page(2), IDC_SCHR_KUEHNEL_GLOBAL).check, 1);
    EXPECT_EQ(High(), narrowed);
    StepOnce(Page(2), IDC_SCHR_VERZOEGERUNG, 1);
    const double stepped = High();
    EXPECT_NE(stepped, narrowed);
    reopen();
    EXPECT_EQ(Text(Page(2), IDC_SCHR_VERZOEGERUNG), "7,10");
    EXPECT_EQ(High(), stepped);
    Enter(Page(4), IDC_SCHR_RUTSCHVERZOEGERUNG, "5");
    Press(Page(4), IDC_SCHR_WURF_MAXIMUM);
    Press(Page(5), IDC_SCHR_VON_LINKS);
    Press(Page(5), IDC_SCHR_EXPORT_MITTEL);
    const double thrown = Value(Page(4), IDC_SCHR_KOLLISIONSTEMPO);
    EXPECT_GT(thrown, 0.0);
    reopen();
    EXPECT_EQ(Value(Page(4), IDC_SCHR_KOLLISIONSTEMPO), thrown);
    EXPECT_EQ(Control(Page(5), IDC_SCHR_VON_LINKS).check, 1);
    EXPECT_EQ(Control(Page(5), IDC_SCHR_EXPORT_MITTEL).check, 1);
    // An entry that waits for "Rechnen" counts as soon as something else has everything computed.
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "6");
    data.KfzDat(0).length = 4.6;
    data.NotifyGeo(0);
    const double longer = High();
    EXPECT_NE(longer, stepped);
    reopen();
    EXPECT_EQ(High(), longer);
}

TEST_F(SchrankenDlgTest, NoSpeedOfOtherInputsLeavesTheMask)
{
    Open();
    PlaceAll();
    Compute();
    const double before = High();
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "5");
    ASSERT_EQ(High(), before) << "waits";
    Press(Page(5), IDC_SCHR_EXPORT_MAXIMUM);
    EXPECT_LT(High(), before);
    EXPECT_EQ(data.WZDat(0).spalten[3].vEnd, High());
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "");
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "6");
    Press(Page(5), IDC_SCHR_EXPORT);
    EXPECT_NEAR(data.WZDat(0).spalten[3].vEnd, 3.6 * std::sqrt(2 * 6.7 * Value(*mask, IDC_SCHR_WEG_BIS)), 0.1);
    EXPECT_EQ(data.WZDat(0).spalten[3].vEnd, High());
    EXPECT_EQ(data.WZDat(0).spalten[2].vAnf, High());
    // What cannot be computed is said and not handed over.
    const CWegZeitRechDat written = data.WZRechDat(0);
    const CWegZeitRechDat person = data.WZRechDat(1);
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "0");
    for (const UINT button : std::initializer_list<UINT>{IDC_SCHR_EXPORT_MINIMUM, IDC_SCHR_EXPORT}) {
        front.messages.clear();
        Press(Page(5), button);
        ASSERT_EQ(front.messages.size(), 1U);
        EXPECT_NE(front.messages[0].text.find("Bremsverzögerung"), std::string::npos);
        EXPECT_EQ(data.WZRechDat(0), written);
        EXPECT_EQ(data.WZRechDat(1), person);
    }
    // The radio buttons follow the speed in the collision that an export has written.
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "6");
    Press(Page(5), IDC_SCHR_EXPORT_MINIMUM);
    EXPECT_EQ(data.WZDat(0).spalten[2].vAnf, data.WZDat(0).spalten[3].vEnd);
}

TEST_F(SchrankenDlgTest, SwitchingAnObjectOffAndOnAgainKeepsTheResult)
{
    Open();
    PlaceAll();
    Compute();
    const double high = High();
    for (const UINT object :
         std::initializer_list<UINT>{IDC_SCHR_PLATZ_PERSON, IDC_SCHR_PLATZ_KOLLISIONSORT, IDC_SCHR_PLATZ_FAHRZEUG}) {
        Press(Page(1), object);
        EXPECT_EQ(High(), 0.0);
        EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "") << "nothing is said of an area that nobody computed";
        if (object == IDC_SCHR_PLATZ_PERSON) { // also over closing
            framework::CloseDialog(*mask);
            thread.DispatchPending();
            Open();
        }
        Press(Page(1), object);
        EXPECT_EQ(High(), high);
    }
}

TEST_F(SchrankenDlgTest, HintsNameTheCauseAndTheNextStep)
{
    Open();
    PlaceAll();
    EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "Noch kein Ergebnis: bitte zuerst rechnen.");
    Compute();
    EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "Bitte wählen Sie Minimum, Mittelwert oder Maximum.");
    Press(Page(5), IDC_SCHR_EXPORT_MINIMUM);
    EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "");
    // 28.01 m / 199 = 0.14 m
    Place(1, {-1801, 0}, 0, 1, 1);
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "Kollisionsort schmaler als der Rechenabstand 0,14 m.");
    EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "Ohne gemeinsamen Bereich ist nichts zu übertragen.");
    Place(1, {200, 0}, 0, 100, 100);
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "Der Kollisionsort reicht vor die Fahrzeugfront.");
    Place(1, {-1800, -100}, 0, 400, 200);
    Enter(Page(2), IDC_SCHR_VERZOEGERUNG_TOLERANZ, "7");
    Press(*mask, IDC_RECHNEN);
    EXPECT_EQ(Hint(IDC_SCHR_HINWEIS), "Der gemeinsame Bereich ist nach unten offen.");
    EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "Nach unten offen: Nur das Maximum ist zu übertragen.");
}

TEST_F(SchrankenDlgTest, NobodyIsOfferedTwice)
{
    Open();
    Choose(Page(1), IDC_SCHR_FAHRZEUG, 1);
    Choose(Page(1), IDC_SCHR_PERSON, 1);
    EXPECT_EQ(Control(Page(1), IDC_SCHR_FAHRRAD).items, (std::vector<std::string>{"(keines)", "3  Rad"}));
    Choose(Page(1), IDC_SCHR_FAHRRAD, 1);
    EXPECT_EQ(Control(Page(1), IDC_SCHR_PERSON).items, (std::vector<std::string>{"(keines)", "2  Fußgänger"}));
    EXPECT_EQ(Control(Page(1), IDC_SCHR_FAHRZEUG).items.size(), 2U);
}

TEST_F(SchrankenDlgTest, EveryObjectHasItsOwnPrompt)
{
    Open();
    Choose(Page(1), IDC_SCHR_FAHRZEUG, 1);
    constexpr const char* kPrompts[] = {"Bitte positionieren Sie das Fahrzeug in seiner Endlage",
                                        "Bitte legen Sie den Bereich des Kollisionsortes fest",
                                        "Bitte positionieren Sie den Fußgänger bzw. den Radfahrer in seiner Endlage",
                                        "Bitte positionieren Sie das Fahrrad in seiner Endlage",
                                        "Bitte platzieren Sie das Gesamtsplitterfeld",
                                        "Bitte platzieren Sie das Hauptsplitterfeld"};
    for (UINT kind = 0; kind < 6; ++kind) {
        Press(Page(1), IDC_SCHR_SETZEN_FAHRZEUG + kind);
        EXPECT_EQ(Text(*Dialog(30070), IDC_SCHR_SETZE_TEXT), kPrompts[kind]);
        EXPECT_EQ(krn::OpenPlacingRequest(data)->prompt, kPrompts[kind]);
        EXPECT_EQ(krn::OpenPlacingRequest(data)->wish.kind, static_cast<int>(kind));
    }
}

TEST_F(SchrankenDlgTest, OddPlacesEndInAnEmptyAreaOrAMessage)
{
    Open();
    PlaceAll();
    Compute();
    for (const double odd : {0.0, 1e12, -1e300, std::nan("")}) {
        for (int kind = 0; kind < 6; ++kind) {
            auto* client = dynamic_cast<CPlacingClient*>(mask->object);
            CPlacedObject object;
            object.kind = kind;
            object.position = {odd, -odd};
            object.width = odd;
            client->ObjectPlaced(object);
            CDC dc(400, 200);
            Control(*mask, IDC_SCHR_ZEICHENFELD).painter(dc, {0, 0, 400, 200});
            EXPECT_TRUE(std::isfinite(High()));
        }
        Press(*mask, IDC_RECHNEN);
    }
    std::string json;
    EXPECT_TRUE(casefile::CaseToJson(data, json)) << "nothing in the case that no file can hold";
    data.MaskenWerte(487)["objekt.person.x"] = {std::nan("")};
    data.MaskenWerte(487)["fahrzeug"] = {1e9};
    framework::CloseDialog(*mask);
    thread.DispatchPending();
    Open();
    EXPECT_EQ(High(), 0.0);
}

} // namespace
