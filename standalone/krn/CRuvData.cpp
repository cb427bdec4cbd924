// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CRuvData.h"

#include "framework/UiThread.h"
#include "host/Assert.h"
#include "krn/CaseUnknown.h"
#include "krn/CaseWindows.h"

CRuvData::CRuvData() = default;
CRuvData::~CRuvData() = default;

CKfzDaten& CRuvData::KfzDat(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    m_touched.kfz.set(vehicle);
    return m_kfz[vehicle];
}

const CKfzDaten& CRuvData::KfzDat(std::size_t vehicle) const
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    return m_kfz[vehicle];
}

CWegZeitDat& CRuvData::WZDat(std::size_t vehicle)
{
    return WZRechDat(vehicle);
}

CWegZeitRechDat& CRuvData::WZRechDat(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    m_touched.wegZeit.set(vehicle);
    return m_wegZeit[vehicle];
}

const CWegZeitRechDat& CRuvData::WZRechDat(std::size_t vehicle) const
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    return m_wegZeit[vehicle];
}

CUBEParameter& CRuvData::UPa(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    m_touched.parameter.set(vehicle);
    return m_parameter[vehicle];
}

const CUBEParameter& CRuvData::UPa(std::size_t vehicle) const
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    return m_parameter[vehicle];
}

bool CRuvData::IsFzgValid(std::int64_t vehicle) const
{
    return vehicle >= 0 && vehicle < static_cast<std::int64_t>(kFahrzeuge) &&
           m_kfz[static_cast<std::size_t>(vehicle)].IsValid();
}

void CRuvData::Clear()
{
    static const CWegZeitRechDat noPhases; // one of 48 columns takes long to make
    for (std::size_t i = 0; i < kFahrzeuge; ++i) {
        if (m_touched.kfz[i])
            m_kfz[i] = {};
        if (m_touched.wegZeit[i])
            m_wegZeit[i] = noPhases;
        if (m_touched.parameter[i])
            m_parameter[i] = {};
    }
    m_touched = {};
    m_maskenWerte.clear();
    m_bilder.clear();
    m_video = {};
    m_falldatei.clear();
    m_spuren.clear();
    m_fallParameter = {};
    m_title.clear();
    m_angaben = {};
    unknown.reset();
}

void CRuvData::BroadcastMessage(UINT message, WPARAM wParam, LPARAM lParam, const CWnd* except)
{
    krn::BroadcastToWindows(*this, message, wParam, lParam, except);
}

void CRuvData::NotifyGeo(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    krn::NotifyOpenMasks(*this, krn::CaseChange::geometry, vehicle);
}

void CRuvData::NotifyWZ(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    krn::NotifyOpenMasks(*this, krn::CaseChange::phases, vehicle);
}

void CRuvData::NotifyUPa(std::size_t vehicle)
{
    RUV_ASSERT(vehicle < kFahrzeuge);
    krn::NotifyOpenMasks(*this, krn::CaseChange::parameters, vehicle);
}

void CRuvData::NotifyMaskenWerte()
{
    if (auto* thread = framework::UiThread::Current())
        thread->Front().CaseChanged(*this);
}
