// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Any bytes as a FIT file: what a part of it gives is the beginning of what all of it gives, and the GPX text of the
// track has its points.
#include "host/Assert.h"
#include "masks/import/FitSpur.h"
#include "masks/import/GpxLeser.h"

#include <cstdint>
#include <string>

namespace
{

bool Gleich(const FitPunkt& a, const FitPunkt& b)
{
    return a.breite == b.breite && a.laenge == b.laenge && a.zeitstempel == b.zeitstempel && a.vorhanden == b.vorhanden;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string datei(reinterpret_cast<const char*>(bytes), size);
    const FitSpur ganz = LiesFit(datei);
    RUV_ASSERT(ganz.punkte.size() * 9 <= size); // a header byte and two positions
    RUV_ASSERT(ganz.befund.dateien > 0);
    RUV_ASSERT(!ganz.befund.fehler.empty() || ganz.befund.dateien * 14 <= size);
    for (const std::size_t naht : ganz.nahtstellen)
        RUV_ASSERT(naht > 0 && naht < ganz.punkte.size());
    const std::string halb = datei.substr(0, size / 2);
    const FitSpur teil = LiesFit(halb);
    if (teil.ausMetadaten == ganz.ausMetadaten) {
        RUV_ASSERT(teil.punkte.size() <= ganz.punkte.size());
        for (std::size_t i = 0; i < teil.punkte.size(); ++i)
            RUV_ASSERT(Gleich(teil.punkte[i], ganz.punkte[i]));
    }
    GpxText text(ganz.punkte);
    std::string gpx;
    for (std::string_view stueck = text.Naechstes(); !stueck.empty(); stueck = text.Naechstes())
        gpx += stueck;
    RUV_ASSERT(LiesGpx(gpx).punkte.size() == ganz.punkte.size());
    return 0;
}
