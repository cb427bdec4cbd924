// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// tavelin-cli: every mask without a display.
#include "cli/ExitCode.h"
#include "cli/Platform.h"
#include "cli/Verbs.h"

#include <cstdio>

namespace
{

constexpr const char* kUsage =
    R"(Aufruf:
  tavelin-cli masks [--json]                       alle Masken
  tavelin-cli describe NUMMER [--json]             Felder einer Maske
  tavelin-cli eval [NAME WERT…] [--json]           eine Funktion berechnen; ohne NAME: alle Funktionen
  tavelin-cli eval VideoIndex VIDEO | VideoSpeeds JSON [--json]
                                                   Bilder eines Videos; Geschwindigkeiten aus Kästen oder Klicks
  tavelin-cli case new|show|check DATEI [--json]   Falldatei anlegen, zeigen, prüfen
  tavelin-cli case set DATEI NAME=TEXT …           Angaben des Falls: title, date, place, author
  tavelin-cli mask NUMMER [OPTION…] [AKTION…]      eine Maske bedienen; gibt ihren Zustand als JSON aus
  tavelin-cli batch [OPTION…]                      JSON-Zeilen von der Standardeingabe rechnen

Optionen von mask:
  --case DATEI           Fall (sonst: ein Fall mit zwei Pkw)
  --save DATEI           Fall danach speichern
  --force                auch über eine Datei, die inzwischen jemand geändert hat
  --save-refused         auch speichern, wenn eine Eingabe nicht angenommen wurde
  --progress             auf der Fehlerausgabe sagen, wie weit eine lange Rechnung ist
Optionen von mask, describe und batch:
  --transfer on|off      „Daten übertragen“
  --units metric|imperial
  --config DATEI         Einstellungen aus dieser Datei
Optionen von batch:
  --jobs N               Zahl der Rechenprozesse (sonst: so viele wie Prozessorkerne)
  --line-timeout S       Zeitgrenze je Zeile in Sekunden (sonst: 60)

Aktionen, der Reihe nach:
  ID=TEXT                Text eingeben und abschließen
  ID+  ID-               ein Schritt mit dem Drehknopf
  press:ID               Knopf, Ankreuzfeld oder Auswahlknopf drücken
  select:ID=INDEX        Eintrag einer Liste oder Zeile einer Tabelle wählen, ab 0
  select:ID=VON,BIS      Zeilen einer Tabelle wählen, ab 0
  cell:ID=ZEILE,SPALTE,TEXT         in eine Zelle einer Tabelle eingeben, ab 0 gezählt
  click:ID=X,Y           in ein Zeichenfeld klicken, in den Bildpunkten seines Bilds (draw:ID)
  drag:ID=X1,Y1,X2,Y2    im Zeichenfeld ziehen; wie bei click: auch mit ,Shift+Ctrl+Right dahinter
  wheel:ID=X,Y,RASTEN    das Mausrad im Zeichenfeld drehen
  key:ID=TASTE           Taste für ein Zeichenfeld oder die Maske: Left, PageUp, Shift+Left, a …
  answer:N=B             die nächste Meldung N mit Knopf B beantworten (6 ja, 7 nein)
  file:PFAD              Antwort auf die nächste Dateiauswahl (sonst: abgebrochen)
  send:MSG,WPARAM,LPARAM Nachricht an die Maske
  host:geo=V host:wz=V host:upa=V   Änderung von Fahrzeug V melden
  range:ID=VON,BIS       Bereich in einem Diagramm wählen
  place:ART=X,Y,WINKEL,B,H          Objekt setzen (cm, Grad)
  draw:ID=DATEI          Zeichenfeld ID, oder mit der Nummer der Maske den ganzen Dialog, als .svg, .png, .pdf
  protocol:DATEI         Protokoll der Maske als .html oder .odt
  rows:NUMMER=DATEI      alle Zeilen, die Maske NUMMER aus einer Datei gelesen hat, als Text mit Kommas
  state                  Zustand an dieser Stelle ausgeben

Ende mit 0 (fertig), 1 (die Maske hat eine Eingabe abgelehnt), 2 (falscher Aufruf), 3 (Datei nicht les- oder schreibbar).
)";

struct Verb {
    std::string_view name;
    int (*run)(const std::vector<std::string>& arguments);
};

constexpr Verb kVerbs[] = {
    {"masks", cli::MasksVerb}, {"describe", cli::DescribeVerb}, {"eval", cli::EvalVerb},
    {"case", cli::CaseVerb},   {"mask", cli::MaskVerb},         {"batch", cli::BatchVerb},
};

int RunVerb(std::vector<std::string> arguments)
{
    if (arguments.empty()) {
        std::fputs(kUsage, stderr);
        return cli::exitUsage;
    }
    const std::string name = arguments.front();
    arguments.erase(arguments.begin());
    if (name == "help" || name == "--help" || name == "-h") {
        cli::Print(kUsage);
        return cli::exitDone;
    }
    for (const Verb& verb : kVerbs)
        if (verb.name == name)
            return verb.run(arguments);
    return cli::Complain(cli::exitUsage, "„" + name + "“ gibt es nicht; „tavelin-cli help“ zeigt, was es gibt");
}

} // namespace

int main(int argc, char** argv)
{
    cli::PrepareStreams();
    const int code = RunVerb(cli::Arguments(argc, argv));
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return cli::Complain(cli::exitFile, "die Ausgabe konnte nicht geschrieben werden");
    return code;
}
