// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseFile.h"

#include "base/JsonValue.h"
#include "base/Sha256.h"
#include "host/CRuvData.h"
#include "host/Files.h"
#include "krn/CaseUnknown.h"

#include <memory>
#include <utility>

namespace casefile
{
namespace
{

CaseResult FileTrouble(CaseOutcome outcome, const base::FileResult& trouble, const std::string& path)
{
    return {outcome, "", trouble.Text(), path, {}};
}

} // namespace

std::string CaseResult::Text() const
{
    const std::string subject = path.empty() ? "Der Fall" : "Die Falldatei „" + path + "“";
    const std::string fault = pointer.empty() ? reason : "ist beschädigt: " + pointer + " " + reason;
    switch (outcome) {
    case CaseOutcome::ok:
        break;
    case CaseOutcome::notReadable:
    case CaseOutcome::notWritable:
        return reason;
    case CaseOutcome::damaged:
    case CaseOutcome::newerVersion:
        return subject + " " + fault + ".";
    case CaseOutcome::invalidValue:
        return "Der Fall kann nicht gespeichert werden: " + (pointer.empty() ? "Er" : pointer) + " " + reason + ".";
    case CaseOutcome::keepsDamaged:
    case CaseOutcome::keepsNewer:
    case CaseOutcome::keepsChanged:
        return subject + " " + fault + ". Sie wird nicht überschrieben.";
    }
    return {};
}

CaseResult LoadCase(const std::string& path, CRuvData& data, base::Source source)
{
    std::string bytes;
    if (const base::FileResult read = base::ReadWholeFile(path, bytes, base::kJsonMaxBytes, source); !read)
        return FileTrouble(CaseOutcome::notReadable, read, path);
    CaseResult result = CaseFromJson(bytes, data);
    if (result)
        data.Falldatei() = path;
    result.path = path;
    result.digest = base::Sha256(bytes);
    return result;
}

std::string FileDigest(const std::string& path)
{
    std::string bytes;
    if (!base::FileExists(path))
        return kNoFile;
    return base::ReadWholeFile(path, bytes, base::kJsonMaxBytes) ? base::Sha256(bytes) : std::string();
}

std::string PicturePath(const std::string& name, const std::string& caseFile)
{
    return RuvPathBeside(name, caseFile);
}

void MovePictures(CRuvData& data, const std::string& fromFile, const std::string& toFile)
{
    if (toFile.empty())
        return;
    const auto rename = [&](std::string& name) { name = RuvNameBeside(RuvPathBeside(name, fromFile), toFile); };
    for (CSzenenBild& picture : data.Bilder())
        rename(picture.datei);
    if (!data.Video().datei.empty())
        rename(data.Video().datei);
}

CaseResult SaveCase(const std::string& path, const CRuvData& data, Overwrite overwrite, const base::FileCalls& calls,
                    const std::string& expected)
{
    std::string bytes;
    CaseResult result = CaseToJson(data, bytes);
    result.path = path;
    if (!result)
        return result;
    if (overwrite == Overwrite::onlyCases && !expected.empty() && base::FileExists(path) &&
        FileDigest(path) != expected)
        return {CaseOutcome::keepsChanged, "", "wurde inzwischen von jemand anderem geändert", path, {}};
    if (overwrite == Overwrite::onlyCases && base::IsOrdinaryFile(path)) {
        std::string existing;
        if (const base::FileResult read = base::ReadWholeFile(path, existing, base::kJsonMaxBytes); !read)
            return FileTrouble(CaseOutcome::notWritable, read, path);
        const auto before = std::make_unique<CRuvData>();
        result = existing.empty() ? CaseResult() : CaseFromJson(existing, *before);
        result.path = path;
        if (!result) {
            result.outcome =
                result.outcome == CaseOutcome::newerVersion ? CaseOutcome::keepsNewer : CaseOutcome::keepsDamaged;
            return result;
        }
    }
    if (const base::FileResult written = base::WriteFileAtomically(path, bytes, calls); !written)
        return FileTrouble(CaseOutcome::notWritable, written, path);
    result.digest = base::Sha256(bytes);
    return result;
}

void ReplaceCase(CRuvData& data, CRuvData&& content)
{
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        data.KfzDat(i) = std::move(content.KfzDat(i));
        data.WZRechDat(i) = std::move(content.WZRechDat(i));
        data.UPa(i) = content.UPa(i);
    }
    for (const auto& entry : data.AlleMaskenWerte())
        data.MaskenWerte(entry.first).clear();
    for (const auto& entry : content.AlleMaskenWerte())
        data.MaskenWerte(entry.first) = std::move(content.MaskenWerte(entry.first));
    data.Bilder() = std::move(content.Bilder());
    data.Video() = std::move(content.Video());
    data.Spuren() = std::move(content.Spuren());
    data.FallParameter() = content.FallParameter();
    data.Title() = std::move(content.Title());
    data.Angaben() = std::move(content.Angaben());
    data.unknown = std::move(content.unknown);
}

void AddExampleCars(CRuvData& data)
{
    data.KfzDat(0) = TypicalCar("Pkw 1", RGB(200, 30, 30));
    data.KfzDat(1) = TypicalCar("Pkw 2", RGB(30, 60, 200));
}

void NewExampleCase(CRuvData& data)
{
    const auto fresh = std::make_unique<CRuvData>();
    AddExampleCars(*fresh);
    ReplaceCase(data, std::move(*fresh));
}

} // namespace casefile
