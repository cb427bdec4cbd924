// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/MessageTable.h"

#include "base/NumberText.h"
#include "framework/UiThread.h"
#include "framework/WndAccess.h"

#include <algorithm>
#include <array>

namespace krn
{
namespace
{

using framework::MessageKind;

// Ascending by number.
constexpr std::array kMessages{
    MessageText{1000, MessageKind::warning, "Die Berechnung ist mit diesen Werten nicht möglich."},
    MessageText{1001, MessageKind::warning, "{0}: „{1}“ ist keine Zahl. Zulässig sind Werte von {2} bis {3}."},
    MessageText{1002, MessageKind::warning,
                "{0}: Der Wert {1} liegt außerhalb des zulässigen Bereichs von {2} bis {3}."},
    MessageText{1003, MessageKind::warning, "{0}: „{1}“ steht nicht zur Wahl."},
    MessageText{1004, MessageKind::warning, "Die Datei „{0}“ gibt es nicht, oder sie ist keine gewöhnliche Datei."},
    MessageText{1005, MessageKind::question, "Die Datei „{0}“ gibt es schon. Soll sie überschrieben werden?"},
    MessageText{1052, MessageKind::question, "Sollen alle Eingaben gelöscht werden?"},
    MessageText{1093, MessageKind::warning,
                "Die Datei enthält nicht die nötigen Daten: Gebraucht wird die Zeit und dazu die Geschwindigkeit, "
                "geografische Länge und Breite oder x- und y-Koordinate, jeweils in jeder Zeile; ein GPX- oder "
                "FIT-Track braucht Zeit, Länge und Breite an jedem Punkt. Es wurde nichts übernommen."},
    MessageText{1201, MessageKind::warning, "Die Verzögerung ist 0. Bitte eine Verzögerung eingeben."},
    MessageText{1202, MessageKind::warning,
                "Es ist weder eine Geschwindigkeit noch ein Weg eingegeben. Bitte zwei der Größen "
                "Anfangsgeschwindigkeit, Endgeschwindigkeit, Gesamtweg und Bremsweg angeben."},
    MessageText{1203, MessageKind::warning,
                "Es ergibt sich keine Bremszeit: Der gegebene Weg passt nicht zu Geschwindigkeit und Verzögerung. Ist "
                "er länger als der Weg bis zum Stillstand, hilft ein kürzerer Weg, eine höhere Geschwindigkeit oder "
                "eine kleinere Verzögerung."},
    MessageText{1204, MessageKind::warning,
                "Der Gesamtweg ist kürzer als Reaktions- und Schwellweg zusammen. Bitte einen längeren Gesamtweg, eine "
                "kleinere Anfangsgeschwindigkeit oder kürzere Dauern eingeben."},
    MessageText{1331, MessageKind::information,
                "Dem Fahrzeug fehlt die Länge. Gerechnet wird mit 4,0 m; wo auch Radstand oder vorderer Überhang "
                "fehlen, mit 2,3 m und 0,9 m. Diese Werte sind in die Fahrzeugdaten eingetragen."},
    MessageText{1332, MessageKind::warning,
                "Es ist keine Geschwindigkeit bekannt. Bitte eine Anfangsgeschwindigkeit eingeben, beim Spurwechsel "
                "gegebenenfalls die Endgeschwindigkeit; beim Abbiegen genügt auch eine Beschleunigung."},
    MessageText{1333, MessageKind::warning, "Der gesamte Seitenversatz ist 0. Bitte einen Seitenversatz eingeben."},
    MessageText{1334, MessageKind::warning, "Die Querbeschleunigung ist 0. Bitte eine Querbeschleunigung eingeben."},
    MessageText{1335, MessageKind::warning,
                "Ohne Lenk-Stellzeit fährt das Fahrzeug von Anfang an den Endradius, und der ist nicht eingegeben. "
                "Bitte einen Endradius oder eine Lenk-Stellzeit eingeben."},
    MessageText{1336, MessageKind::warning,
                "Es ist kein Radius eingegeben. Bitte einen Anfangs- oder einen Endradius eingeben."},
    MessageText{
        1339, MessageKind::warning,
        "Die Geschwindigkeitsgrenze liegt über der Anfangsgeschwindigkeit und wird nicht erreicht, weil das Fahrzeug "
        "verzögert. Bitte eine kleinere Grenze (0 = bis zum Stillstand) oder eine positive Beschleunigung eingeben."},
    MessageText{
        1340, MessageKind::warning,
        "Die Geschwindigkeitsgrenze liegt unter der Anfangsgeschwindigkeit und wird nicht erreicht, weil das Fahrzeug "
        "beschleunigt. Bitte eine größere Grenze (0 = keine) oder eine negative Beschleunigung eingeben."},
    MessageText{1341, MessageKind::warning,
                "Der Spurwechsel ist mit diesen Werten nicht zu fahren: Es ergibt sich keine Bahn, deren engster "
                "Radius größer als der halbe Radstand des Fahrzeugs ist."},
    MessageText{1342, MessageKind::question,
                "Das Fahrzeug kommt zum Stillstand, bevor das Abbiegen beendet ist. Soll die Verzögerung so spät "
                "einsetzen, dass es erst am Ende steht?"},
    MessageText{1343, MessageKind::warning,
                "Die Phasen des Spurwechsels passen nicht mehr in die Weg-Zeit-Daten: Ab der gewählten Phase sind "
                "dafür nicht genug Phasen frei. Es wurde nichts übertragen."},
    MessageText{1344, MessageKind::question,
                "Das Fahrzeug fährt schon geradeaus, bevor die Gierwinkeländerung erreicht ist. Soll das Zurücklenken "
                "so spät beginnen, dass sie erreicht wird?"},
    MessageText{1345, MessageKind::warning,
                "Die Geschwindigkeitsgrenze {2} km/h liegt über der bekannten Geschwindigkeit {0} km/h und wird mit "
                "der Beschleunigung {1} m/s² nicht erreicht. Es wird ohne Grenze gerechnet."},
    MessageText{1346, MessageKind::warning,
                "Die Geschwindigkeitsgrenze liegt unter der bekannten Geschwindigkeit und wird mit dieser "
                "Beschleunigung nicht erreicht. Es wird ohne Grenze gerechnet."},
    MessageText{
        1347, MessageKind::information,
        "Phase {0}: Mit dieser Beschleunigung käme das Fahrzeug innerhalb des Spurwechsels zum Stillstand. Es wird neu "
        "gerechnet, mit dem Stillstand am Rand des Spurwechsels und der eingegebenen Geschwindigkeit als Grenze."},
    MessageText{1348, MessageKind::warning,
                "Der Kurvenradius der Straße ist für Geschwindigkeit und Querbeschleunigung zu klein: Die Kurve allein "
                "braucht die Querbeschleunigung ganz oder nahezu auf, für den Spurwechsel bleibt zu wenig. Weg {0} m, "
                "Differenz zum Weg {1} m sind kein verlässliches Ergebnis."},
    MessageText{1349, MessageKind::warning,
                "Es ist weder eine Gierwinkeländerung noch ein Weg eingegeben. Bitte eines von beiden eingeben."},
    MessageText{1350, MessageKind::warning,
                "Die Länge des Spurwechsels ist nach 1000 Näherungsschritten noch nicht auf 0,01 m genau. Die "
                "Ergebnisse sind nicht verlässlich."},
    MessageText{1402, MessageKind::warning,
                "Das Fahrzeug hat vor der Kollision (ab Phase {0}) keine Reaktionsphase. Als Reaktionspunkt gilt der "
                "Anfang der frühesten Phase."},
    MessageText{1403, MessageKind::warning,
                "Das Fahrzeug hat vor der Kollision (ab Phase {0}) keine Phasen. Geschwindigkeit, Weg und Zeit "
                "bleiben, wie sie eingegeben sind."},
    MessageText{
        1404, MessageKind::warning,
        "Fahrzeug, Phase {0}: Die Bremsverzögerung ist nicht größer als 0. Bitte eine Bremsverzögerung eingeben."},
    MessageText{1405, MessageKind::warning,
                "Fahrzeug, Phase {0}: Die zulässige Anfangsgeschwindigkeit ist nicht größer als 0. Bitte eine "
                "zulässige Anfangsgeschwindigkeit eingeben."},
    MessageText{1406, MessageKind::warning,
                "Unfallgegner, Phase {1}: Er kommt mit dieser Verzögerung zum Stillstand, bevor er seine "
                "Fehlräumstrecke zurückgelegt hat; zeitlich wird der Konfliktbereich so nicht frei. Gerechnet wird mit "
                "der Endgeschwindigkeit 0."},
    MessageText{
        1407, MessageKind::warning,
        "Unfallgegner, Phase {1}: Verzögerung und Fehlbremsstrecke haben verschiedene Vorzeichen; daraus ergibt sich "
        "keine Kollisionsgeschwindigkeit. Bitte eines von beiden ändern oder die Kollisionsgeschwindigkeit eingeben."},
    MessageText{
        1408, MessageKind::warning,
        "Fahrzeug, Phase {0}, und Unfallgegner, Phase {1}: Nicht für jede der Größen Höchstgeschwindigkeit, "
        "Reaktionspunkt und Bremsverzögerung ließ sich der Wert finden, mit dem die Kollision gerade vermieden wird. "
        "Wo er fehlt, steht der eingegebene oder der letzte gesuchte Wert; er ist keine Grenze der Vermeidbarkeit."},
    MessageText{1409, MessageKind::warning,
                "Der Unfallgegner hat vor der Kollision (ab Phase {1}) keine Phasen. Kollisionsgeschwindigkeit und "
                "Verzögerung bleiben, wie sie eingegeben sind."},
    MessageText{1410, MessageKind::warning,
                "Unfallgegner, Phase {1}: Er steht und verzögert nicht; ob er quer zum Fahrzeug den Konfliktbereich "
                "rechtzeitig räumt, ist nicht zu berechnen. Die Richtung ist jetzt „entgegen“. Bitte "
                "Kollisionsgeschwindigkeit oder Verzögerung eingeben."},
    MessageText{1411, MessageKind::warning,
                "Unfallgegner, Phase {1}: Fehlbremsstrecke, Kollisionsgeschwindigkeit und Verzögerung passen nicht "
                "zueinander. Gerechnet wird mit Kollisionsgeschwindigkeit und Verzögerung."},
    MessageText{1412, MessageKind::warning,
                "Unfallgegner, Phase {1}: Von einem entgegenkommenden Unfallgegner wird die Verzögerung oder die "
                "Fehlbremsstrecke gebraucht; beide sind 0."},
    MessageText{1413, MessageKind::warning,
                "Unfallgegner, Phase {1}: Er kommt mit dieser Verzögerung zum Stillstand, bevor er seine "
                "Fehlräumstrecke zurückgelegt hat. Gerechnet wird mit der Endgeschwindigkeit 0."},
    MessageText{1414, MessageKind::warning,
                "Unfallgegner, Phase {1}: Seine Verzögerung ist negativ. Für einen entgegenkommenden Unfallgegner, der "
                "beschleunigt, ist die Vermeidbarkeit nicht zu berechnen."},
    MessageText{1415, MessageKind::warning,
                "Fahrzeug, Phase {0}: Die zulässige Anfangsgeschwindigkeit liegt nicht unter der tatsächlichen."},
    MessageText{1416, MessageKind::warning,
                "Fahrzeug, Phase {0}: Weg und Zeit vom Reaktionspunkt bis zur Kollision passen nicht zu den "
                "Geschwindigkeiten."},
    MessageText{1417, MessageKind::warning,
                "Fahrzeug, Phase {0}, und Unfallgegner, Phase {1}: Der Verschwindepunkt liegt vor dem Reaktionspunkt "
                "des Fahrzeugs."},
    MessageText{1418, MessageKind::question,
                "Fahrzeug, Phase {0}, und Unfallgegner, Phase {1}: Soll beim Übertragen auch die Bewegung des "
                "Unfallgegners ergänzt werden?"},
    MessageText{1419, MessageKind::information,
                "Fahrzeug, Phase {0}, und Unfallgegner, Phase {1}: Mit der zulässigen Anfangsgeschwindigkeit erreicht "
                "das Fahrzeug den Konfliktpunkt erst, wenn der Unfallgegner seine Fehlräumstrecke zurückgelegt hat. "
                "Die Kollision ist damit zeitlich vermieden; als Endgeschwindigkeit steht 0."},
    MessageText{1420, MessageKind::question,
                "Die Datei ist beschädigt. Vor dem Schaden sind {0} Punkte gelesen. Sollen sie verwendet werden?"},
    MessageText{
        1421, MessageKind::question,
        "Die Datei „{0}“ gibt es schon, mit anderem Inhalt. Soll sie durch die umgewandelte Spur ersetzt werden? "
        "Ohne sie geht der Import aus dem Speicher weiter."},
    MessageText{
        1443, MessageKind::warning,
        "Mit diesen Werten gibt es kein lineares Modell, das denselben Weg in derselben Zeit fährt. Die Verzögerung "
        "bei Spurbeginn muss kleiner als die Vollbremsverzögerung sein, das Anstiegsverhalten größer als 0 und die "
        "Spur dafür lang genug; sonst hilft eine größere Verzögerung des linearen Modells."},
    MessageText{1980, MessageKind::confirmation,
                "Das ganze Video wird von Anfang an Bild für Bild analysiert; die bisher gefundenen Objekte entfallen. "
                "Das kann lange dauern und lässt sich mit Esc abbrechen."},
    MessageText{30202, MessageKind::information, "Video erfolgreich analysiert"},
};

std::string ArgText(const MessageArg& arg)
{
    if (const auto* number = std::get_if<double>(&arg))
        return base::FormatNumber(*number);
    if (const auto* integer = std::get_if<std::int64_t>(&arg))
        return std::to_string(*integer);
    return std::get<std::string>(arg);
}

} // namespace

std::span<const MessageText> MessageTable()
{
    return kMessages;
}

framework::ShownMessage FormatMessage(UINT number, std::span<const MessageArg> args)
{
    framework::ShownMessage message;
    message.number = number;
    for (const MessageArg& arg : args)
        message.args.push_back(ArgText(arg));
    const auto entry = std::find_if(kMessages.begin(), kMessages.end(),
                                    [number](const MessageText& text) { return text.number == number; });
    if (entry == kMessages.end()) {
        message.kind = framework::MessageKind::warning;
        message.text = "Meldung " + std::to_string(number);
        for (const std::string& arg : message.args)
            message.text += " · " + arg;
        return message;
    }
    message.kind = entry->kind;
    // One pass, so that braces inside an argument stay what they are.
    const std::string_view pattern = entry->text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool slot = pattern[i] == '{' && i + 2 < pattern.size() && pattern[i + 2] == '}';
        const std::size_t index = slot ? static_cast<std::size_t>(pattern[i + 1] - '0') : message.args.size();
        if (index < message.args.size()) {
            message.text += message.args[index];
            i += 2;
        } else {
            message.text.push_back(pattern[i]);
        }
    }
    return message;
}

} // namespace krn

FehlerRet FehlerMeldungArgs(CWnd* owner, UINT messageId, std::span<const MessageArg> args)
{
    auto* thread = framework::UiThread::Current();
    if (thread == nullptr)
        return fehlerNein;
    const framework::UiThread::Scope scope(*thread);
    const framework::Window* window = owner == nullptr ? nullptr : framework::WindowOf(*owner);
    return static_cast<FehlerRet>(thread->Front().ShowMessage(window, krn::FormatMessage(messageId, args)));
}
