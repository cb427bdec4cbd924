// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/CommandLine.h"

#include "base/NumberText.h"

#include <QCommandLineParser>

namespace desktop
{
namespace
{

constexpr double kSmallestScale = 0.5;
constexpr double kLargestScale = 4.0;
constexpr int kSmallestSide = 100; // pixels
constexpr int kLargestSide = 10000;

/// Qt knows the reason in English; its German texts come with the application object.
QString ReasonFor(const QCommandLineParser& parser, const QStringList& arguments)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty())
        return arguments.last() + QStringLiteral(": dahinter fehlt der Wert");
    return (unknown.first().size() > 1 ? QStringLiteral("--") : QStringLiteral("-")) + unknown.first() +
           QStringLiteral(": unbekannt");
}

/// The first word is the case unless an option named one; with --shot and --bench the others are masks.
void TakeWords(CommandLine& line, const QStringList& words)
{
    for (const QString& word : words) {
        bool isNumber = false;
        const UINT number = word.toUInt(&isNumber);
        if (isNumber && line.DrawsOnly())
            line.numbers.push_back(number);
        else if (line.casePath.isEmpty())
            line.casePath = word;
        else if (line.error.isEmpty())
            line.error = word + QStringLiteral(": unbekannt");
    }
}

} // namespace

CommandLine ReadCommandLine(std::span<char* const> arguments)
{
    QStringList words{QStringLiteral("tavelin")}; // the parser takes the first for the program's name
    for (const char* argument : arguments)
        words << QString::fromLocal8Bit(argument);

    const QCommandLineOption shot(QStringLiteral("shot"), {}, QStringLiteral("ORDNER"));
    const QCommandLineOption casePath(QStringLiteral("case"), {}, QStringLiteral("FALLDATEI"));
    const QCommandLineOption scale(QStringLiteral("scale"), {}, QStringLiteral("FAKTOR"));
    const QCommandLineOption scheme(QStringLiteral("scheme"), {}, QStringLiteral("NAME"));
    const QCommandLineOption example(QStringLiteral("example"), {}, QStringLiteral("NAME"));
    const QCommandLineOption size(QStringLiteral("size"), {}, QStringLiteral("BREITExHÖHE"));
    const QCommandLineOption bench(QStringLiteral("bench"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    QCommandLineParser parser;
    parser.addOptions({shot, casePath, scale, scheme, size, example, bench, help});

    CommandLine line;
    if (!parser.parse(words)) {
        line.error = ReasonFor(parser, words);
        return line;
    }
    line.shotFolder = parser.value(shot);
    line.casePath = parser.value(casePath);
    line.example = parser.value(example);
    line.bench = parser.isSet(bench);
    line.help = parser.isSet(help);
    if (parser.isSet(scale)) {
        const auto factor = base::ParseNumber(parser.value(scale).toStdString());
        if (!factor || *factor < kSmallestScale || *factor > kLargestScale)
            line.error = QStringLiteral("--scale: eine Zahl von 0,5 bis 4 ist gefragt");
        line.scale = factor.value_or(0.0);
    }
    if (parser.isSet(scheme)) {
        const QString name = parser.value(scheme);
        line.dark = name == QLatin1String("dunkel") || name == QLatin1String("dark");
        if (!line.dark && name != QLatin1String("hell") && name != QLatin1String("light"))
            line.error = QStringLiteral("--scheme: gefragt ist „hell“ oder „dunkel“, nicht „%1“").arg(name);
    }
    if (parser.isSet(size)) {
        const QStringList sides = parser.value(size).split(QLatin1Char('x'));
        line.size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
        if (line.size.width() < kSmallestSide || line.size.width() > kLargestSide ||
            line.size.height() < kSmallestSide || line.size.height() > kLargestSide)
            line.error = QStringLiteral("--size: gefragt sind Breite und Höhe, zum Beispiel 1366x768");
    }
    TakeWords(line, parser.positionalArguments());
    if (line.error.isEmpty() && !line.example.isEmpty() && !line.casePath.isEmpty())
        line.error = QStringLiteral("--example: entweder ein Beispiel oder eine Falldatei");
    return line;
}

} // namespace desktop
