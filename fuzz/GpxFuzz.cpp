// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Any bytes as a GPX file: points with possible positions, joints between them, the same ones however the file is
// spelled, and an XML text's entities.
#include "host/Assert.h"
#include "masks/import/GpxLeser.h"
#include "masks/import/XmlLeser.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace
{

constexpr std::string_view kPunkt = "<trkpt ";
constexpr std::size_t kRest = 1000;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    // A copy of its own, so that a read beyond its end is seen.
    const std::string datei(reinterpret_cast<const char*>(bytes), size);
    const GpxInhalt inhalt = LiesGpx(datei);
    RUV_ASSERT(inhalt.punkte.size() * 7 <= size); // "<trkpt>"
    for (const GPXTrackPoint& p : inhalt.punkte) {
        RUV_ASSERT(std::abs(p.latitude) <= 90.0 && std::abs(p.longitude) <= 360.0);
        for (const double wert : {p.elevation, p.heartRate, p.cadence, p.temperature})
            RUV_ASSERT(std::isfinite(wert));
        RUV_ASSERT(p.millisecond >= -1 && p.millisecond < 1000 && p.mikrosekunde < 1000);
    }
    std::size_t vorige = 0;
    for (const std::size_t naht : inhalt.nahtstellen) {
        RUV_ASSERT(naht > vorige && naht < inhalt.punkte.size());
        vorige = naht;
    }
    // A second blank keeps points from being read in the usual spelling, the ones behind them from ending too near.
    std::string anders = datei + std::string(kRest, ' ');
    const GpxInhalt alle = LiesGpx(anders);
    for (std::size_t p = anders.find(kPunkt); p != std::string::npos; p = anders.find(kPunkt, p + kPunkt.size()))
        anders.insert(p + kPunkt.size(), 1, ' ');
    const GpxInhalt einzeln = LiesGpx(anders);
    RUV_ASSERT(alle.punkte == einzeln.punkte && alle.nahtstellen == einzeln.nahtstellen);
    RUV_ASSERT(alle.unvollstaendig == einzeln.unvollstaendig && alle.unmoeglich == einzeln.unmoeglich);
    RUV_ASSERT(alle.ausgang == einzeln.ausgang && alle.vollstaendig == einzeln.vollstaendig);
    RUV_ASSERT(XmlText(datei).size() <= size);
    return 0;
}
