// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CRuvFileDialog.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace
{

constexpr UINT kMissing = 1004;
constexpr UINT kOverwrite = 1005;
constexpr DWORD kImport = 4100; // OFN_HIDEREADONLY | OFN_FILEMUSTEXIST

class FileDialogTest : public test::MaskTest
{
  protected:
    FileDialogTest() { folder.Write("fahrt.fli", "x"); }
    CRuvFileDialog Opening(DWORD flags = kImport)
    {
        return {true, "*.FLI", folder.File("zuletzt.fli"), flags, "CSV (*.csv)|*.csv||", &mainWindow};
    }
    CRuvFileDialog Saving(DWORD flags) { return {false, "gpx", "", flags, "GPX (*.gpx)|*.gpx||", &mainWindow}; }

    test::TemporaryFolder folder;
};

TEST_F(FileDialogTest, AsksTheFrontEndWithAllItWasGiven)
{
    front.files = {folder.File("fahrt.fli")};
    CRuvFileDialog dialog = Opening();
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), folder.File("fahrt.fli"));
    ASSERT_EQ(front.requests.size(), 1U);
    const framework::FileRequest& request = front.requests[0];
    EXPECT_TRUE(request.open);
    EXPECT_TRUE(request.mustExist);
    EXPECT_EQ(request.title, "Datei öffnen");
    EXPECT_EQ(request.filter, "CSV (*.csv)|*.csv||");
    EXPECT_EQ(request.defaultExtension, "FLI");
    EXPECT_EQ(request.initialName, folder.File("zuletzt.fli"));
    EXPECT_EQ(request.owner, thread.Find(mainWindow.m_hWnd));
    EXPECT_TRUE(front.messages.empty());
}

TEST_F(FileDialogTest, WithoutAChoiceItIsCancelledAndHasNoPath)
{
    CRuvFileDialog dialog = Opening();
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialog.GetPathName(), "");
}

TEST_F(FileDialogTest, AFileThatMustExistIsAskedForAgain)
{
    front.files = {folder.File("fehlt.fli"), folder.Folder("ordner"), folder.File("fahrt.fli")};
    CRuvFileDialog dialog = Opening();
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), folder.File("fahrt.fli"));
    ASSERT_EQ(front.messages.size(), 2U);
    EXPECT_EQ(front.messages[0].number, kMissing);
    EXPECT_NE(front.messages[0].text.find("fehlt.fli"), std::string::npos);

    front.files = {folder.File("fehlt.fli")};
    CRuvFileDialog any = Opening(OFN_HIDEREADONLY);
    EXPECT_EQ(any.DoModal(), IDOK) << "without the flag it may be missing";
}

TEST_F(FileDialogTest, TheDefaultExtensionCompletesWhatHasNone)
{
    front.files = {folder.File("neu"), folder.File("neu.txt"), folder.Folder("mit.punkt") + "/neu"};
    for (const char* expected : {"neu.gpx", "neu.txt", "mit.punkt/neu.gpx"}) {
        CRuvFileDialog dialog = Saving(0);
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(dialog.GetPathName(), folder.File(expected));
    }
    // Opening completes only to what is there.
    folder.Write("ohne", "x");
    folder.Write("beide", "x");
    folder.Write("beide.FLI", "x");
    folder.Write("nur.FLI", "x");
    front.files = {folder.File("ohne"), folder.File("beide"), folder.File("nur")};
    for (const char* expected : {"ohne", "beide", "nur.FLI"}) {
        CRuvFileDialog dialog = Opening();
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(dialog.GetPathName(), folder.File(expected));
    }
}

TEST_F(FileDialogTest, OverwritingIsAskedForOnceAndOnlyWhenWanted)
{
    folder.Write("alt.gpx", "x");
    front.files = {folder.File("alt"), folder.File("neu")};
    CRuvFileDialog dialog = Saving(OFN_OVERWRITEPROMPT);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), folder.File("neu.gpx")) << "no: asked again";
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(front.messages[0].number, kOverwrite);
    EXPECT_NE(front.messages[0].text.find("alt.gpx"), std::string::npos) << "the completed name";

    front.answers[kOverwrite] = IDYES;
    front.files = {folder.File("alt")};
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), folder.File("alt.gpx"));
    front.files = {folder.File("alt")};
    EXPECT_EQ(Saving(0).DoModal(), IDOK);
    EXPECT_EQ(front.messages.size(), 2U);
}

} // namespace
