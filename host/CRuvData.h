// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CKfzDaten.h"
#include "host/CSzenenBild.h"
#include "host/CSzenenSpur.h"
#include "host/CUBEParameter.h"
#include "host/CVideoQuelle.h"
#include "host/CWegZeitDat.h"
#include "host/HostTypes.h"

#include <array>
#include <bitset>
#include <map>
#include <memory>
#include <string>
#include <vector>

class CWnd;

/// Values a mask keeps per case, by field name. Their order and units are the mask's.
using CMaskenWerte = std::map<std::string, std::vector<double>>;

/// What holds for the whole case.
struct CFallParameter {
    double luftdichte = 1.2; ///< kg/m³

    friend bool operator==(const CFallParameter&, const CFallParameter&) = default;
};

/// What the case is about, as its reports say it.
struct CFallAngaben {
    std::string datum; ///< of the accident, as the user writes it
    std::string ort;
    std::string bearbeiter;

    friend bool operator==(const CFallAngaben&, const CFallAngaben&) = default;
};

/// The open case: 16 vehicles with their path-time data and parameters, and what masks keep.
class CRuvData
{
  public:
    static constexpr std::size_t kFahrzeuge = 16;

    CRuvData();
    ~CRuvData();
    CRuvData(const CRuvData&) = delete;
    CRuvData& operator=(const CRuvData&) = delete;

    // An index of 16 or more is a broken invariant.
    CKfzDaten& KfzDat(std::size_t vehicle);
    const CKfzDaten& KfzDat(std::size_t vehicle) const;
    CWegZeitDat& WZDat(std::size_t vehicle);
    CWegZeitRechDat& WZRechDat(std::size_t vehicle);
    const CWegZeitRechDat& WZRechDat(std::size_t vehicle) const;
    CUBEParameter& UPa(std::size_t vehicle);
    const CUBEParameter& UPa(std::size_t vehicle) const;
    CMaskenWerte& MaskenWerte(UINT maskId) { return m_maskenWerte[maskId]; }
    const std::map<UINT, CMaskenWerte>& AlleMaskenWerte() const { return m_maskenWerte; }
    /// What a mask keeps under a name, empty when it never did. Leaves the case as it is.
    std::vector<double> GemerkteWerte(UINT maskId, const std::string& name) const
    {
        const auto mask = m_maskenWerte.find(maskId);
        if (mask == m_maskenWerte.end())
            return {};
        const auto values = mask->second.find(name);
        return values == mask->second.end() ? std::vector<double>{} : values->second;
    }

    bool IsFzgValid(std::int64_t vehicle) const;

    /// Empties the case, in a time that follows from how many vehicles were touched. For a case that nobody holds a
    /// reference into any more.
    void Clear();

    /// Pictures under the scene, the first one lowest.
    std::vector<CSzenenBild>& Bilder() { return m_bilder; }
    const std::vector<CSzenenBild>& Bilder() const { return m_bilder; }

    /// The video that is analysed; its clicks and tracks lie with the mask's values.
    CVideoQuelle& Video() { return m_video; }
    const CVideoQuelle& Video() const { return m_video; }

    /// The case's own file, empty while it has none; the program says it.
    std::string& Falldatei() { return m_falldatei; }
    const std::string& Falldatei() const { return m_falldatei; }

    /// Recorded tracks, above the pictures.
    std::vector<CSzenenSpur>& Spuren() { return m_spuren; }
    const std::vector<CSzenenSpur>& Spuren() const { return m_spuren; }

    CFallParameter& FallParameter() { return m_fallParameter; }
    const CFallParameter& FallParameter() const { return m_fallParameter; }

    /// The case's reference number or name.
    std::string& Title() { return m_title; }
    const std::string& Title() const { return m_title; }
    CFallAngaben& Angaben() { return m_angaben; }
    const CFallAngaben& Angaben() const { return m_angaben; }

    /// Sends a message to all open masks of the case and to the main window, except `except`.
    void BroadcastMessage(UINT message, WPARAM wParam, LPARAM lParam, const CWnd* except);

    /// Tells the open masks that something of a vehicle changed.
    void NotifyGeo(std::size_t vehicle);
    void NotifyWZ(std::size_t vehicle);
    void NotifyUPa(std::size_t vehicle);
    /// Tells the program that a mask keeps other values now.
    void NotifyMaskenWerte();

    /// What a newer program wrote into the case file and this one does not know; kept by the file's reader.
    struct Unknown;
    std::unique_ptr<Unknown> unknown;

  private:
    std::array<CKfzDaten, kFahrzeuge> m_kfz{};
    std::array<CWegZeitRechDat, kFahrzeuge> m_wegZeit; // 150 KB: with {} they would be filled twice
    std::array<CUBEParameter, kFahrzeuge> m_parameter{};
    std::map<UINT, CMaskenWerte> m_maskenWerte;
    std::vector<CSzenenBild> m_bilder;
    CVideoQuelle m_video;
    std::string m_falldatei;
    std::vector<CSzenenSpur> m_spuren;
    CFallParameter m_fallParameter;
    std::string m_title;
    CFallAngaben m_angaben;
    /// What was given out to be changed since the case was empty, by vehicle.
    struct Touched {
        std::bitset<kFahrzeuge> kfz, wegZeit, parameter;
    } m_touched;
};
