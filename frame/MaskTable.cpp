// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/MaskTable.h"

#include "masks/collision/CFahrradDlg.h"
#include "masks/collision/CLadungDlg.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "masks/collision/CWurfWeiteDlg.h"
#include "masks/dynamics/CBeschlDlg.h"
#include "masks/dynamics/CGrenzVDlg.h"
#include "masks/dynamics/CMRBremsDlg.h"
#include "masks/dynamics/CTeilanhDlg.h"
#include "masks/dynamics/CVkonstDlg.h"
#include "masks/import/CESOImportDlg.h"
#include "masks/import/CFLIImportDlg.h"
#include "masks/import/CGPXImportDlg.h"
#include "masks/manoeuvre/CAbVorDlg.h"
#include "masks/manoeuvre/CHalbeSichtDlg.h"
#include "masks/manoeuvre/CSpurVorDlg.h"
#include "masks/manoeuvre/CVermDlg.h"
#include "masks/video/CVideoDlg.h"

#include <array>
#include <new>

namespace
{

/// A mask that gets the case and no parent.
template <class Dialog> CMDIRechDialog* Create(CRuvData& data)
{
    return new (std::nothrow) Dialog(data, nullptr);
}

/// A mask that gets the case and its own number as the dialog's.
template <class Dialog, UINT Number> CMDIRechDialog* CreateNumbered(CRuvData& data)
{
    return new (std::nothrow) Dialog(data, Number);
}

constexpr std::array kMasks{
    MaskEntry{400, "CBeschlDlg", "Berechnung der Beschleunigung", 2, &Create<CBeschlDlg>},
    MaskEntry{401, "CGrenzVDlg", "Berechnung der Kurvengrenzgeschwindigkeit", 2, &Create<CGrenzVDlg>},
    MaskEntry{417, "CRadKontaktDlg", "Radkontaktspuren", 4, nullptr},
    MaskEntry{419, "CLadungDlg", "Ladungssicherung", 4, &CreateNumbered<CLadungDlg, 419>},
    MaskEntry{450, "CAbVorDlg", "Abbiege-Vorgang", 3, &CreateNumbered<CAbVorDlg, 450>},
    MaskEntry{451, "CLosAbDlg", "Losfahren-Abbremsen", 2, nullptr},
    MaskEntry{452, "CEinDlg", "Auffahrunfall", 3, nullptr},
    MaskEntry{455, "CEinDlg", "Einbiegeunfall", 3, nullptr},
    MaskEntry{456, "CMRAusweichDlg", "Ausweichvorgang eines Motorrades", 3, nullptr},
    MaskEntry{458, "CSpurVorDlg", "Spurwechsel-Vorgang", 3, &CreateNumbered<CSpurVorDlg, 458>},
    MaskEntry{459, "CTeilanhDlg", "Reagieren (mit Beschleunigung) - Bremsen", 2, &Create<CTeilanhDlg>},
    MaskEntry{461, "CUeberholDlg", "Überhol-Vorgang", 3, nullptr},
    MaskEntry{462, "CVermDlg", "Vermeidbarkeitsberechnung", 3, &Create<CVermDlg>},
    MaskEntry{463, "CWZRechDlg", "Weg-Zeit-Rechnen", 2, nullptr},
    MaskEntry{464, "CWZCalcDlg", "Teilanhaltestrecken", 2, nullptr},
    MaskEntry{466, "CUpnDlg", " UPN - Taschenrechner", 7, nullptr},
    MaskEntry{468, "CVkonstDlg", "Weg - Zeit bei konstanter Geschwindigkeit", 2, &Create<CVkonstDlg>},
    MaskEntry{469, "CMRBremsDlg", "Motorrad-Bremsung (Exponentialansatz)", 2, &Create<CMRBremsDlg>},
    MaskEntry{470, "CKurvenBremsDlg", "Kurven-Bremsung", 2, nullptr},
    MaskEntry{471, "CWurfWeiteDlg", "Wurfweitenberechnung", 4, &Create<CWurfWeiteDlg>},
    MaskEntry{472, "CHalbeSichtDlg", "Halbe Sicht", 3, &Create<CHalbeSichtDlg>},
    MaskEntry{473, "CVorrangDlg", "Vorrang geben Problematik", 3, nullptr},
    MaskEntry{474, "CFLIImportDlg", "Allgemeine Fahrdaten / GPS Daten importieren", 5, &Create<CFLIImportDlg>},
    MaskEntry{484, "CDDDImportDlg", "DDD Daten importieren", 5, nullptr},
    MaskEntry{486, "CESOImportDlg", "ESO Datenanalyse", 5, &Create<CESOImportDlg>},
    MaskEntry{487, "CSchrankenverfahrenDlg", "Schrankenverfahren", 4, &Create<CSchrankenverfahrenDlg>},
    MaskEntry{488, "CCDRImportDlg", "CDR Daten importieren", 5, nullptr},
    MaskEntry{491, "CGoProImportDlg", "GoPro Daten importieren", 5, nullptr},
    MaskEntry{492, "CGPXImportDlg", "GPX Daten importieren", 5, &Create<CGPXImportDlg>},
    MaskEntry{493, "CFahrradDlg", "Anstreifspuren Fahrrad", 4, &Create<CFahrradDlg>},
    MaskEntry{494, "CVideoDlg", "Videoanalyse", 6, &Create<CVideoDlg>},
};

} // namespace

std::span<const MaskEntry> MaskTable()
{
    return kMasks;
}
