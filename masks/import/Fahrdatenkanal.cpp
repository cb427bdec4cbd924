// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrdatenkanal.h"

#include <algorithm>

namespace
{

constexpr std::string_view kUhr = "h";
constexpr std::string_view kMillisekunden = "ms";

constexpr std::string_view kGrundeinheiten[kKanaele] = {"s", "km/h", "°", "m",    "m",    "°/s", "°",
                                                        "°", "m",    "°", "m/s²", "m/s²", "m/s²"};

/// When a column takes a channel that another one has already.
enum class Vorrang { spaetere, nurLeer, nurKmh };

struct Spaltenname {
    std::string_view name;
    Kanal kanal;
    Vorrang vorrang = Vorrang::spaetere;
};

// Column names of loggers, in lower case. The list of the vertical acceleration ends in a name without blank and in one
// that belongs to the lateral one before: kept as they are, files are read the same way everywhere.
constexpr Spaltenname kNamen[] = {
    {"time", Kanal::zeit},
    {"gps time", Kanal::zeit},
    {"utc time", Kanal::zeit},
    {"data_ora_rilevazione", Kanal::zeit},
    {"data_ora_pos", Kanal::zeit},
    {"data_ora_posizione", Kanal::zeit},
    {"ms", Kanal::zeit},
    {"t", Kanal::zeit},
    {"zeit", Kanal::zeit},
    {"timestamp", Kanal::zeit},
    {"time stamp", Kanal::zeit},
    {"start zeit", Kanal::zeit},
    {"local", Kanal::zeit},
    {"speed", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"gps_speed_magnitude", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"gps_speed", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"velocity", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"v", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"geschwindigkeit", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"velocita_gps", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"geschw.", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"km/h", Kanal::geschwindigkeit, Vorrang::nurKmh},
    {"heading", Kanal::richtung},
    {"gps heading", Kanal::richtung},
    {"heading_gps", Kanal::richtung},
    {"bearing", Kanal::richtung},
    {"x", Kanal::x},
    {"bt x dist", Kanal::x},
    {"position x", Kanal::x},
    {"xpos", Kanal::x},
    {"y", Kanal::y},
    {"bt y dist", Kanal::y},
    {"position y", Kanal::y},
    {"ypos", Kanal::y},
    {"yaw rate", Kanal::gierrate},
    {"gps_yawrate_z", Kanal::gierrate},
    {"imu_yawrate_z", Kanal::gierrate, Vorrang::nurLeer},
    {"las_psip1_yaw_rate", Kanal::gierrate},
    {"gier", Kanal::gierrate},
    {"gierrate", Kanal::gierrate},
    {"longitude", Kanal::laenge},
    {"gps long", Kanal::laenge},
    {"lon", Kanal::laenge},
    {"long", Kanal::laenge},
    {"long_rilevazione", Kanal::laenge},
    {"laenge", Kanal::laenge},
    {"location longitude", Kanal::laenge},
    {"latitude", Kanal::breite},
    {"gps lat", Kanal::breite},
    {"location latitude", Kanal::breite},
    {"lat", Kanal::breite},
    {"lat_rilevazione", Kanal::breite},
    {"breite", Kanal::breite},
    {"altitude", Kanal::hoehe},
    {"gps altitude", Kanal::hoehe},
    {"height", Kanal::hoehe},
    {"hoehe", Kanal::hoehe},
    {"lenkwinkel", Kanal::lenkwinkel},
    {"steering angle", Kanal::lenkwinkel},
    {"lenkradwinkel", Kanal::lenkwinkel},
    {"accel x", Kanal::beschleunigungX},
    {"g-x", Kanal::beschleunigungX},
    {"gps_acc_x", Kanal::beschleunigungX},
    {"imu_acc_x", Kanal::beschleunigungX, Vorrang::nurLeer},
    {"num_acc_x", Kanal::beschleunigungX},
    {"acc_x_be", Kanal::beschleunigungX},
    {"linear acceleration x", Kanal::beschleunigungX},
    {"accx", Kanal::beschleunigungX},
    {"accel y", Kanal::beschleunigungY},
    {"g-y", Kanal::beschleunigungY},
    {"gps_acc_y", Kanal::beschleunigungY},
    {"imu_acc_y", Kanal::beschleunigungY, Vorrang::nurLeer},
    {"num_acc_y", Kanal::beschleunigungY},
    {"acc_y_be", Kanal::beschleunigungY},
    {"linear acceleration y", Kanal::beschleunigungY},
    {"accy", Kanal::beschleunigungY},
    {"accel z", Kanal::beschleunigungZ},
    {"g-z", Kanal::beschleunigungZ},
    {"gps_acc_z", Kanal::beschleunigungZ},
    {"imu_acc_z", Kanal::beschleunigungZ, Vorrang::nurLeer},
    {"num_acc_z", Kanal::beschleunigungZ},
    {"acc_z_be", Kanal::beschleunigungZ},
    {"linear accelerationy", Kanal::beschleunigungZ},
    {"accy", Kanal::beschleunigungZ},
};

/// Units of files that are converted.
struct Einheitenfaktor {
    std::string_view nach;
    std::string_view von;
    double faktor;
};
constexpr Einheitenfaktor kFaktoren[] = {
    {"km/h", "mph", 1.609344}, {"km/h", "m/s", 3.6}, {"km/h", "m/sec", 3.6},
    {"°", "rad", 57.2957795},  {"m", "km", 1000.0},  {"m/s²", "g", 9.81},
};

constexpr Einheitenwahl kWahl[] = {
    {Kanal::zeit, "s", 1.0},
    {Kanal::zeit, "ms", 0.001},
    {Kanal::zeit, "Uhrzeit", 1.0, Zeitform::tageszeit},
    {Kanal::zeit, "hhmmss", 1.0, Zeitform::ziffern},
    {Kanal::geschwindigkeit, "km/h", 1.0},
    {Kanal::geschwindigkeit, "m/s", 3.6},
    {Kanal::geschwindigkeit, "mph", 1.609344},
    {Kanal::geschwindigkeit, "kn", 1.852},
    {Kanal::richtung, "°", 1.0},
    {Kanal::richtung, "rad", 57.2957795},
    {Kanal::x, "m", 1.0},
    {Kanal::x, "km", 1000.0},
    {Kanal::x, "cm", 0.01},
    {Kanal::x, "ft", 0.3048},
    {Kanal::y, "m", 1.0},
    {Kanal::y, "km", 1000.0},
    {Kanal::y, "cm", 0.01},
    {Kanal::y, "ft", 0.3048},
    {Kanal::gierrate, "°/s", 1.0},
    {Kanal::gierrate, "rad/s", 57.2957795},
    {Kanal::laenge, "°", 1.0},
    {Kanal::laenge, "Bogenminuten", 1.0 / 60.0},
    {Kanal::laenge, "rad", 57.2957795},
    {Kanal::breite, "°", 1.0},
    {Kanal::breite, "Bogenminuten", 1.0 / 60.0},
    {Kanal::breite, "rad", 57.2957795},
    {Kanal::hoehe, "m", 1.0},
    {Kanal::hoehe, "ft", 0.3048},
    {Kanal::lenkwinkel, "°", 1.0},
    {Kanal::lenkwinkel, "rad", 57.2957795},
    {Kanal::beschleunigungX, "m/s²", 1.0},
    {Kanal::beschleunigungX, "g", 9.81},
    {Kanal::beschleunigungY, "m/s²", 1.0},
    {Kanal::beschleunigungY, "g", 9.81},
    {Kanal::beschleunigungZ, "m/s²", 1.0},
    {Kanal::beschleunigungZ, "g", 9.81},
};

const Spaltenname* Finde(std::string_view name)
{
    const auto* found =
        std::find_if(std::begin(kNamen), std::end(kNamen), [&](const Spaltenname& n) { return n.name == name; });
    return found == std::end(kNamen) ? nullptr : found;
}

} // namespace

std::string_view Grundeinheit(Kanal kanal)
{
    return kGrundeinheiten[Platz(kanal)];
}

Umrechnung Umgerechnet(Kanal kanal, std::string_view einheit)
{
    const std::string_view grund = Grundeinheit(kanal);
    if (einheit.empty() || einheit == grund || (kanal == Kanal::zeit && einheit == kUhr))
        return {};
    for (const Einheitenfaktor& eine : kFaktoren)
        if (eine.nach == grund && eine.von == einheit)
            return {eine.faktor, true};
    return {1.0, false};
}

std::vector<const Einheitenwahl*> Einheiten(Kanal kanal)
{
    std::vector<const Einheitenwahl*> wahl;
    for (const Einheitenwahl& eine : kWahl)
        if (eine.kanal == kanal)
            wahl.push_back(&eine);
    return wahl;
}

Spaltenplan::Spaltenplan(std::span<const std::string> namen, std::span<const std::string> einheiten,
                         std::span<const Zuordnung> zuordnungen)
    : m_einheit(einheiten.begin(), einheiten.end()), m_uhrOhneEinheit(namen.size())
{
    m_platz.fill(kLeer);
    m_faktor.fill(1.0);
    m_einheit.resize(namen.size());
    for (std::size_t i = 0; i < namen.size(); ++i)
        Erkenne(static_cast<std::int64_t>(i), namen[i]);
    for (const Zuordnung& zuordnung : zuordnungen)
        Ordne(zuordnung);
    for (std::size_t i = 0; i < kKanaele; ++i) {
        const auto kanal = static_cast<Kanal>(i);
        if (m_gewaehlt[i] != nullptr)
            m_faktor[i] = m_gewaehlt[i]->faktor;
        else if (kanal != Kanal::zeit && Spalte(kanal) >= 0)
            m_faktor[i] = Umgerechnet(kanal, Einheit(Spalte(kanal))).faktor;
    }
    BestimmeZeitform();
}

void Spaltenplan::Erkenne(std::int64_t spalte, const std::string& name)
{
    const Spaltenname* gefunden = Finde(name);
    if (gefunden == nullptr)
        return;
    std::string& einheit = m_einheit[static_cast<std::size_t>(spalte)];
    if (gefunden->kanal == Kanal::zeit) {
        ErkenneZeit(spalte, name);
        return;
    }
    if (einheit.empty() && (name == "g-x" || name == "g-y" || name == "g-z"))
        einheit = "g";
    std::int64_t& platz = m_platz[Platz(gefunden->kanal)];
    if (platz == kLeer || gefunden->vorrang == Vorrang::spaetere ||
        (gefunden->vorrang == Vorrang::nurKmh && einheit == "km/h"))
        platz = spalte;
}

void Spaltenplan::ErkenneZeit(std::int64_t spalte, const std::string& name)
{
    constexpr std::int64_t kGrenze = 1'000'000'000; // no file has as many columns: many of them name none
    std::string& einheit = m_einheit[static_cast<std::size_t>(spalte)];
    std::int64_t& platz = m_platz[Platz(Kanal::zeit)];
    const bool leer = platz == kLeer;
    if (einheit.empty()) {
        if (name == kMillisekunden)
            einheit = kMillisekunden;
        if (leer && (name == "utc time" || name == "zeit" || name == "start zeit")) {
            einheit = kUhr;
            m_uhrOhneEinheit[static_cast<std::size_t>(spalte)] = true;
        }
        if (name == "local" && !leer)
            platz = std::min((spalte + 1) * kZweiSpalten + platz, kGrenze);
    }
    // Right only when the first time column is column 0; kept so, files are read the same way everywhere.
    if (name == kMillisekunden)
        platz = std::min(platz + spalte * kZweiSpalten + platz + kZweiSpalten, kGrenze);
    else if (leer)
        platz = spalte;
}

void Spaltenplan::Ordne(const Zuordnung& zuordnung)
{
    if (zuordnung.spalte < 0 || static_cast<std::size_t>(zuordnung.spalte) >= m_einheit.size())
        return;
    for (std::size_t i = 0; i < kKanaele; ++i) {
        const auto kanal = static_cast<Kanal>(i);
        if (Spalte(kanal) == zuordnung.spalte ||
            (kanal == Kanal::zeit && HatZweiZeitspalten() && ZweiteZeitspalte() == zuordnung.spalte)) {
            m_platz[i] = kLeer;
            m_gewaehlt[i] = nullptr;
        }
    }
    if (zuordnung.kanal == Kanal::keiner)
        return;
    const std::size_t platz = Platz(zuordnung.kanal);
    m_zeitZugeordnet = m_zeitZugeordnet || zuordnung.kanal == Kanal::zeit;
    m_platz[platz] = zuordnung.spalte;
    const auto wahl = Einheiten(zuordnung.kanal);
    const auto einheit = static_cast<std::size_t>(zuordnung.einheit);
    m_gewaehlt[platz] = zuordnung.einheit >= 0 && einheit < wahl.size() ? wahl[einheit] : nullptr;
}

void Spaltenplan::BestimmeZeitform()
{
    const int spalte = Spalte(Kanal::zeit);
    if (m_gewaehlt[0] != nullptr)
        m_form = m_gewaehlt[0]->form;
    else if (spalte >= 0 && Einheit(spalte) == kUhr)
        m_form = m_uhrOhneEinheit[static_cast<std::size_t>(spalte)] ? Zeitform::uhrOderSekunden : Zeitform::uhr;
}

int Spaltenplan::Spalte(Kanal kanal) const
{
    const std::int64_t platz = m_platz[Platz(kanal)];
    const std::int64_t spalte = kanal == Kanal::zeit && HatZweiZeitspalten() ? platz % kZweiSpalten : platz;
    return spalte < static_cast<std::int64_t>(m_einheit.size()) ? static_cast<int>(spalte) : -1;
}

int Spaltenplan::ZweiteZeitspalte() const
{
    const std::int64_t spalte = m_platz[0] / kZweiSpalten - 1;
    return spalte < static_cast<std::int64_t>(m_einheit.size()) ? static_cast<int>(spalte) : -1;
}

bool Spaltenplan::IstUhrMitMs() const
{
    return HatZweiZeitspalten() && !IstUhrDerZweiten() && ZweiteZeitspalte() >= 0 &&
           Einheit(ZweiteZeitspalte()) == kMillisekunden;
}

bool Spaltenplan::IstUhrDerZweiten() const
{
    return HatZweiZeitspalten() && (Spalte(Kanal::zeit) < 0 || Einheit(Spalte(Kanal::zeit)) != kUhr);
}

Kanal Spaltenplan::KanalDer(int spalte) const
{
    for (std::size_t i = 0; i < kKanaele; ++i)
        if (const auto kanal = static_cast<Kanal>(i); Spalte(kanal) == spalte)
            return kanal;
    return HatZweiZeitspalten() && ZweiteZeitspalte() == spalte ? Kanal::zeit : Kanal::keiner;
}

const std::string& Spaltenplan::Einheit(int spalte) const
{
    return m_einheit[static_cast<std::size_t>(spalte)];
}

bool Spaltenplan::Reicht() const
{
    return Hat(Kanal::zeit) && (Hat(Kanal::geschwindigkeit) || (Hat(Kanal::laenge) && Hat(Kanal::breite)) ||
                                (Hat(Kanal::x) && Hat(Kanal::y)));
}

std::size_t Spaltenplan::Erkannt() const
{
    return static_cast<std::size_t>(std::count_if(
        m_platz.begin(), m_platz.end(), [](std::int64_t platz) { return platz != kLeer; }));
}

std::uint64_t Kopfschluessel(std::string_view kopfzeile)
{
    // FNV-1a, 64 bits.
    std::uint64_t key = 0xcbf29ce484222325U;
    for (const char c : kopfzeile)
        key = (key ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return key;
}
