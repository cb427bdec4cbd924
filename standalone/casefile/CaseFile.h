// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The case as a JSON file; docs/case-format.md describes it.
#pragma once

#include "base/AtomicFile.h"
#include "base/JsonValue.h"

#include <memory>
#include <string>
#include <string_view>

class CRuvData;

namespace casefile
{

/// Of the format's version 1 that this program knows in full.
inline constexpr int kCaseMinorVersion = 4;

enum class CaseOutcome {
    ok,
    notReadable,  ///< the file system says why
    damaged,      ///< no case, or a value in it is wrong
    newerVersion, ///< written by a program whose format this one cannot read
    invalidValue, ///< the case holds something that no file can hold, such as not-a-number
    notWritable,  ///< the file system says why
    keepsDamaged, ///< not written: the existing file is no readable case
    keepsNewer,   ///< not written: the existing file is a case of a newer version
    keepsChanged, ///< not written: the file no longer holds what it did when it was opened
};

/// What loading or saving came to; converts to true when it was done.
struct CaseResult {
    CaseOutcome outcome = CaseOutcome::ok;
    std::string pointer;  ///< JSON pointer (RFC 6901) to the value at fault, empty when it is the whole text
    std::string reason;   ///< German, follows the name of the value or file: "ist keine Zahl"
    std::string path;     ///< empty when no file is involved
    std::string digest{}; ///< of the bytes that were read from the file or written to it: see FileDigest

    explicit operator bool() const { return outcome == CaseOutcome::ok; }
    /// German sentence for the user, empty when all is well.
    std::string Text() const;
};

/// A case that was read, or why there is none.
struct CaseRead {
    std::unique_ptr<CRuvData> data; ///< null when the result is not ok
    CaseResult result;
};
CaseRead ReadCase(const base::JsonValue& root);

/// Reads a case. `data` is replaced as a whole, or left as it is when the result is not ok. Open masks are not told.
CaseResult CaseFromJson(std::string_view json, CRuvData& data);
/// `--case` of the command line may also be a pipe.
CaseResult LoadCase(const std::string& path, CRuvData& data, base::Source source = base::Source::ordinaryFile);

/// What tells the content of a file from any other: its SHA-256, or kNoFile when there is no file.
inline constexpr const char* kNoFile = "none";
/// Empty when it cannot be read.
std::string FileDigest(const std::string& path);

/// Writes a case: its used columns, and the vehicles that are valid or have any or a driving line; what a newer program
/// added to the file it was read from comes along. The same case gives the same bytes.
CaseResult CaseToJson(const CRuvData& data, std::string& json);

enum class Overwrite {
    onlyCases, ///< an existing file must be empty or a case that LoadCase reads
    force,
};
/// With an `expected` digest a file that holds something else is left as it is, unless forced: somebody changed it.
CaseResult SaveCase(const std::string& path, const CRuvData& data, Overwrite overwrite = Overwrite::onlyCases,
                    const base::FileCalls& calls = base::SystemFileCalls(), const std::string& expected = {});

/// Names the pictures of a case anew that moves from one file to another: relative to its file, or in full where they
/// lie on another drive. An empty path is a case without a file.
void MovePictures(CRuvData& data, const std::string& fromFile, const std::string& toFile);
/// Where a picture lies that a case of this file names so.
std::string PicturePath(const std::string& name, const std::string& caseFile);

/// Puts `content` in the place of what `data` holds; references into `data` stay valid. Open masks are not told.
void ReplaceCase(CRuvData& data, CRuvData&& content);

/// Two passenger cars of complete, typical dimensions in the place of the first two vehicles.
void AddExampleCars(CRuvData& data);
/// Empties the case but for those two.
void NewExampleCase(CRuvData& data);

} // namespace casefile
