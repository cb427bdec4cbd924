// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Controls of the video masks that are tied to the record in their own way: a time of the video, a choice of its IDs.
#pragma once

#include "host/Bindings.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// "%02d:%02d:%02d.%03d" of hours, minutes, seconds and milliseconds, rounded.
std::string Videozeit(double sekunden);
/// Also minutes and seconds, or seconds alone, with point or comma; whole milliseconds. Nothing when it is no time.
std::optional<double> LiesVideozeit(const std::string& text);

/// A number of seconds as it is typed, with point or comma.
std::optional<double> LiesSekunden(std::string text);

class CVideozeit final : public CBinding
{
  public:
    CVideozeit(CMDIDialog* parent, UINT controlId, double* feld);
    void Show() override;
    EntryResult Take(const std::string& text) override;
    const void* Field() const override { return m_feld; }

  private:
    double* m_feld;
};

class CIdCombo final : public CChoiceCombo
{
  public:
    CIdCombo(CMDIDialog* parent, UINT controlId, std::int64_t* feld, const std::vector<std::int64_t>& ids)
        : CChoiceCombo(parent, controlId, feld, nullptr, nullptr), m_ids(ids)
    {
    }

  protected:
    void Entries(const TakeEntry& take) const override
    {
        for (const std::int64_t id : m_ids)
            take(id, std::nullopt, std::to_string(id));
    }

  private:
    const std::vector<std::int64_t>& m_ids;
};
