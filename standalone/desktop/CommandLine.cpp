// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/CommandLine.h"

#include "base/NumberText.h"

namespace desktop
{
namespace
{

constexpr double kSmallestScale = 0.5;
constexpr double kLargestScale = 4.0;

} // namespace

CommandLine ReadCommandLine(std::span<char* const> arguments)
{
    CommandLine line;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const QString argument = QString::fromLocal8Bit(arguments[i]);
        const auto value = [&]() -> QString {
            if (i + 1 < arguments.size())
                return QString::fromLocal8Bit(arguments[++i]);
            line.error = argument + QStringLiteral(": dahinter fehlt der Wert");
            return {};
        };
        bool isNumber = false;
        const UINT number = argument.toUInt(&isNumber);
        if (argument == QLatin1String("--shot")) {
            line.shotFolder = value();
        } else if (argument == QLatin1String("--case")) {
            line.casePath = value();
        } else if (argument == QLatin1String("--scale")) {
            const auto scale = base::ParseNumber(value().toStdString());
            if (line.error.isEmpty() && (!scale || *scale < kSmallestScale || *scale > kLargestScale))
                line.error = QStringLiteral("--scale: eine Zahl von 0,5 bis 4 ist gefragt");
            line.scale = scale.value_or(0.0);
        } else if (argument == QLatin1String("--scheme")) {
            const QString name = value();
            line.dark = name == QLatin1String("dunkel") || name == QLatin1String("dark");
            if (line.error.isEmpty() && !line.dark && name != QLatin1String("hell") && name != QLatin1String("light"))
                line.error = QStringLiteral("--scheme: gefragt ist „hell“ oder „dunkel“, nicht „%1“").arg(name);
        } else if (argument == QLatin1String("--example")) {
            line.example = value();
        } else if (argument == QLatin1String("--bench")) {
            line.bench = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            line.help = true;
        } else if (isNumber && !line.shotFolder.isEmpty()) {
            line.numbers.push_back(number);
        } else if (!argument.startsWith(QLatin1Char('-')) && line.casePath.isEmpty()) {
            line.casePath = argument;
        } else {
            line.error = argument + QStringLiteral(": unbekannt");
        }
        if (!line.error.isEmpty())
            break;
    }
    if (line.error.isEmpty() && !line.example.isEmpty() && !line.casePath.isEmpty())
        line.error = QStringLiteral("--example: entweder ein Beispiel oder eine Falldatei");
    return line;
}

} // namespace desktop
