// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A case file that somebody else uses too, or that moves to another folder.
#include "base/AtomicFile.h"
#include "casefile/CaseDifferences.h"
#include "casefile/CaseFile.h"
#include "casefile/FileClaim.h"
#include "host/CRuvData.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace
{

using namespace casefile;

class CaseFileSharing : public ::testing::Test
{
  protected:
    CaseFileSharing() { NewExampleCase(data); }
    CaseResult Save(const std::string& expected, Overwrite overwrite = Overwrite::onlyCases)
    {
        return SaveCase(path, data, overwrite, base::SystemFileCalls(), expected);
    }

    test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    CRuvData data;
};

TEST_F(CaseFileSharing, WhatSomebodyElseWroteIsNotOverwritten)
{
    const CaseResult first = Save(kNoFile);
    ASSERT_TRUE(first) << first.Text();
    CRuvData mine;
    const CaseResult read = LoadCase(path, mine);
    EXPECT_EQ(read.digest, first.digest);
    EXPECT_EQ(FileDigest(path), first.digest);

    data.Title() = "von jemand anderem";
    ASSERT_TRUE(Save(first.digest));
    const std::string theirs = folder.Read("fall.json");
    mine.Title() = "meiner";
    const CaseResult kept = SaveCase(path, mine, Overwrite::onlyCases, base::SystemFileCalls(), read.digest);
    EXPECT_EQ(kept.outcome, CaseOutcome::keepsChanged);
    EXPECT_EQ(kept.Text(), "Die Falldatei „" + path +
                               "“ wurde inzwischen von jemand anderem geändert. Sie wird nicht überschrieben.");
    EXPECT_EQ(folder.Read("fall.json"), theirs);
    EXPECT_EQ(SaveCase(path, mine, Overwrite::onlyCases, base::SystemFileCalls(), kNoFile).outcome,
              CaseOutcome::keepsChanged)
        << "there was none";
    EXPECT_TRUE(SaveCase(path, mine, Overwrite::force, base::SystemFileCalls(), read.digest));

    std::filesystem::remove(path);
    EXPECT_EQ(FileDigest(path), kNoFile);
    EXPECT_TRUE(Save(first.digest)) << "nothing there that could be lost";
}

TEST_F(CaseFileSharing, DifferencesNameTheValues)
{
    const auto text = [](const CRuvData& of) {
        std::string json;
        EXPECT_TRUE(CaseToJson(of, json));
        return json;
    };
    const std::string before = text(data);
    EXPECT_TRUE(CaseDifferences(before, before).empty());
    data.KfzDat(1).mass = 1234.5;
    data.Title() = "neu";
    std::map<std::string, std::pair<std::string, std::string>> found;
    for (const CaseDifference& difference : CaseDifferences(before, text(data)))
        found[difference.pointer] = {difference.before, difference.after};
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found.at("/vehicles/1/mass").second, "1234.5");
    EXPECT_EQ(found.at("/title").second, "\"neu\"");
    EXPECT_EQ(CaseDifferences("[1, [2]]", "[1, [2, 3]]").at(0).pointer, "/1/1");
    EXPECT_EQ(CaseDifferences("{", "{}").size(), 1U);
}

TEST_F(CaseFileSharing, AClaimStandsByWhateverNameTheFileIsReached)
{
    folder.Write("fall.json", "{}");
    std::filesystem::create_symlink("fall.json", folder.File("verweis.json"));
    const std::string state = folder.File("state");
    auto claim = FileClaim::Take(state, path);
    ASSERT_NE(claim, nullptr);
    EXPECT_EQ(FileClaim::Take(state, folder.Path() + "/./fall.json"), nullptr);
    EXPECT_EQ(FileClaim::Take(state, folder.File("verweis.json")), nullptr);
    EXPECT_NE(FileClaim::Take(state, folder.File("anderer.json")), nullptr);
    claim.reset();
    EXPECT_NE(FileClaim::Take(state, path), nullptr);
    EXPECT_TRUE(std::filesystem::is_empty(state));
}

TEST_F(CaseFileSharing, PicturesAreFoundFromAnotherFolder)
{
    const auto name = [&](const std::string& from, const std::string& to, const std::string& file) {
        data.Bilder().assign(1, {});
        data.Bilder()[0].datei = file;
        MovePictures(data, from, to);
        return data.Bilder()[0].datei;
    };
    EXPECT_EQ(name("/a/b/fall.json", "/a/c/fall.json", "bild.png"), "../b/bild.png");
    EXPECT_EQ(name("/a/b/fall.json", "/a/b/kopie.json", "bilder/ä.png"), "bilder/ä.png");
    EXPECT_EQ(name("/a/b/fall.json", "/a/fall.json", "../oben.png"), "oben.png");
    EXPECT_EQ(name("", "/a/b/fall.json", "/a/b/bild.png"), "bild.png");
    data.Video().datei = "film.mp4";
    MovePictures(data, "/a/b/fall.json", "/a/c/fall.json");
    EXPECT_EQ(data.Video().datei, "../b/film.mp4");
    EXPECT_EQ(PicturePath("../b/bild.png", "/a/c/fall.json"), "/a/b/bild.png");
    EXPECT_EQ(PicturePath("/x/bild.png", "/a/c/fall.json"), "/x/bild.png");
    EXPECT_EQ(PicturePath("bild.png", ""), "bild.png");
}

} // namespace
