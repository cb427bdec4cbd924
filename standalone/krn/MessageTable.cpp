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
    MessageText{1000, framework::MessageKind::warning, "Die Berechnung ist mit diesen Werten nicht möglich."},
    MessageText{1001, framework::MessageKind::warning,
                "{0}: „{1}“ ist keine Zahl. Zulässig sind Werte von {2} bis {3}."},
    MessageText{1002, framework::MessageKind::warning,
                "{0}: Der Wert {1} liegt außerhalb des zulässigen Bereichs von {2} bis {3}."},
    MessageText{1003, framework::MessageKind::warning, "{0}: „{1}“ steht nicht zur Wahl."},
    MessageText{1004, framework::MessageKind::warning,
                "Die Datei „{0}“ gibt es nicht, oder sie ist keine gewöhnliche Datei."},
    MessageText{1005, framework::MessageKind::question,
                "Die Datei „{0}“ gibt es schon. Soll sie überschrieben werden?"},
    MessageText{1052, framework::MessageKind::question, "Sollen alle Eingaben gelöscht werden?"},
    MessageText{1201, framework::MessageKind::warning, "Die Verzögerung ist 0. Bitte eine Verzögerung eingeben."},
    MessageText{
        1202, framework::MessageKind::warning,
        "Es ist weder eine Geschwindigkeit noch ein Weg eingegeben. Bitte zwei der Größen Anfangsgeschwindigkeit, "
        "Endgeschwindigkeit, Gesamtweg und Bremsweg angeben."},
    MessageText{
        1203, framework::MessageKind::warning,
        "Es ergibt sich keine Bremszeit: Der gegebene Weg passt nicht zu Geschwindigkeit und Verzögerung. Ist er "
        "länger als der Weg bis zum Stillstand, hilft ein kürzerer Weg, eine höhere Geschwindigkeit oder eine "
        "kleinere Verzögerung."},
    MessageText{1204, framework::MessageKind::warning,
                "Der Gesamtweg ist kürzer als Reaktions- und Schwellweg zusammen. Bitte einen längeren Gesamtweg, eine "
                "kleinere Anfangsgeschwindigkeit oder kürzere Dauern eingeben."},
    MessageText{1443, framework::MessageKind::warning,
                "Mit diesen Werten gibt es kein lineares Modell, das denselben Weg in derselben Zeit fährt. Die "
                "Verzögerung bei "
                "Spurbeginn muss kleiner als die Vollbremsverzögerung sein, das Anstiegsverhalten größer als 0 und die "
                "Spur dafür "
                "lang genug; sonst hilft eine größere Verzögerung des linearen Modells."},
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
