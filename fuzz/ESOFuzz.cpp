// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Text of five measured curves: read whole and in pieces it is the same, and what the search of their shifts says is
// what the definition of r says.
#include "host/Assert.h"
#include "masks/import/ESOLeser.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    ESOLeser whole(text.size());
    static_cast<void>(whole.Nimm(text));
    const ESOBefund befund = whole.Ende();
    ESOLeser pieces;
    const std::size_t piece = 1 + bytes[0] % 32U;
    for (std::size_t at = 0; at < text.size(); at += piece)
        if (!pieces.Nimm(text.substr(at, piece)))
            break;
    RUV_ASSERT(pieces.Ende() == befund);
    RUV_ASSERT(pieces.Kurven() == whole.Kurven() && pieces.Aufbau() == whole.Aufbau());
    const ESOKurven& curves = whole.Kurven();
    RUV_ASSERT((befund == ESOBefund::gelesen) == !curves[0].empty());
    const std::size_t length = curves[0].size();
    for (const ESOKurve& curve : curves)
        RUV_ASSERT(curve.size() == length && (curve.empty() || curve.front() == 0));

    const ESOFenster window = FensterVon(length);
    const auto found = SucheVerschiebungen(curves[0], {&curves[1], &curves[2]});
    RUV_ASSERT(found && found->size() == 2);
    for (std::size_t q = 0; q < 2 && length < 300; ++q) {
        ESOTreffer best;
        for (std::size_t d = 0; d < window.m; ++d)
            if (const double r = Korrelation(curves[0], curves[q + 1], window.s, window.e, d); r > best.r)
                best = {d, r};
        RUV_ASSERT(best.d == (*found)[q].d && best.r == (*found)[q].r);
        RUV_ASSERT(Verschoben(curves[q + 1], static_cast<std::int64_t>(best.d) - 7, length).size() == length);
    }
    return 0;
}
