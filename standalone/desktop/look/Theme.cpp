// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Theme.h"

#include "desktop/look/Style.h"
#include "drawing/DiagramColor.h"
#include "drawing/FontMetrics.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

constexpr double kPlainPoints = 9.75; // 13 px at 96 dots per inch
constexpr const char* kFamily = "Noto Sans";
constexpr const char* kSignsFamily = "Noto Sans Math"; // for what the other does not have

// In dark drawings white becomes the darkest and black the lightest shade.
constexpr float kDarkest = 0.13F;
constexpr float kLightest = 0.93F;
constexpr float kPastel = 0.6F;
constexpr double kBright = 0.5;
constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr float kTint = 0.025F; // more of red would look like a refused entry

const SchemeColors& LightColors()
{
    static const SchemeColors colors{
        .desk = QColor(0xDF, 0xE4, 0xEB),
        .window = QColor(0xF1, 0xF3, 0xF6),
        .surface = QColor(0xFA, 0xFB, 0xFC),
        .field = QColor(0xFF, 0xFF, 0xFF),
        .border = QColor(0xB9, 0xC2, 0xCE),
        .line = QColor(0xD9, 0xDF, 0xE7),
        .hover = QColor(0xE6, 0xEC, 0xF4),
        .text = QColor(0x1C, 0x25, 0x30),
        .muted = QColor(0x5D, 0x69, 0x78),
        .accent = QColor(0x1F, 0x5F, 0xA8),
        .onAccent = QColor(0xFF, 0xFF, 0xFF),
        .selection = QColor(0xCF, 0xE1, 0xF6),
        .result = QColor(0xE4, 0xEC, 0xF5),
        .resultText = QColor(0x0F, 0x37, 0x66),
        .danger = QColor(0xC0, 0x2B, 0x22),
        .dangerSoft = QColor(0xFD, 0xEC, 0xEA),
    };
    return colors;
}

const SchemeColors& DarkColors()
{
    static const SchemeColors colors{
        .desk = QColor(0x12, 0x16, 0x1B),
        .window = QColor(0x1C, 0x21, 0x28),
        .surface = QColor(0x22, 0x28, 0x30),
        .field = QColor(0x17, 0x1B, 0x21),
        .border = QColor(0x4A, 0x55, 0x63),
        .line = QColor(0x35, 0x3D, 0x48),
        .hover = QColor(0x2E, 0x37, 0x42),
        .text = QColor(0xE6, 0xEA, 0xEF),
        .muted = QColor(0x9D, 0xA9, 0xB8),
        .accent = QColor(0x6C, 0xAB, 0xF2),
        .onAccent = QColor(0x0D, 0x1B, 0x2B),
        .selection = QColor(0x2B, 0x4A, 0x6E),
        .result = QColor(0x2A, 0x38, 0x49),
        .resultText = QColor(0xC9, 0xE0, 0xFA),
        .danger = QColor(0xFF, 0x8A, 0x80),
        .dangerSoft = QColor(0x45, 0x23, 0x24),
    };
    return colors;
}

struct State {
    Scheme scheme = Scheme::light;
    double fontScale = 1.0;
    bool fontsLoaded = false;
};

State& Now()
{
    static State state;
    return state;
}

/// The program brings its fonts along, so that text has the same width everywhere.
void LoadFonts()
{
    if (std::exchange(Now().fontsLoaded, true))
        return;
    using drawing::FontFace;
    for (const FontFace face : {FontFace::regular, FontFace::bold, FontFace::math}) {
        const auto file = drawing::FontFile(face);
        QFontDatabase::addApplicationFontFromData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), static_cast<qsizetype>(file.size())));
    }
}

QPalette MakePalette(const SchemeColors& c)
{
    QPalette palette;
    palette.setColor(QPalette::Window, c.window);
    palette.setColor(QPalette::WindowText, c.text);
    palette.setColor(QPalette::Base, c.field);
    palette.setColor(QPalette::AlternateBase, c.surface);
    palette.setColor(QPalette::Text, c.text);
    palette.setColor(QPalette::Button, c.surface);
    palette.setColor(QPalette::ButtonText, c.text);
    palette.setColor(QPalette::BrightText, c.danger);
    palette.setColor(QPalette::ToolTipBase, c.surface);
    palette.setColor(QPalette::ToolTipText, c.text);
    palette.setColor(QPalette::PlaceholderText, c.muted);
    palette.setColor(QPalette::Highlight, c.selection);
    palette.setColor(QPalette::HighlightedText, c.text);
    palette.setColor(QPalette::Link, c.accent);
    palette.setColor(QPalette::LinkVisited, c.accent);
    palette.setColor(QPalette::Light, c.field);
    palette.setColor(QPalette::Midlight, c.line);
    palette.setColor(QPalette::Mid, c.border);
    palette.setColor(QPalette::Dark, c.muted);
    palette.setColor(QPalette::Shadow, c.border);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        QColor faded = c.muted;
        faded.setAlphaF(0.65F);
        palette.setColor(QPalette::Disabled, role, faded);
    }
    return palette;
}

} // namespace

void ApplyTheme(Scheme scheme, double fontScale)
{
    LoadFonts();
    Now().scheme = scheme;
    Now().fontScale = fontScale;
    const QFont font = TextFont();
    QApplication::setFont(font);
    QToolTip::setFont(TextFont(0.95));
    QApplication::setPalette(MakePalette(Colors()));
    QToolTip::setPalette(QApplication::palette());
    QApplication::setStyle(new Style); // the application owns it; also tells every widget to polish itself afresh
}

Scheme CurrentScheme()
{
    return Now().scheme;
}

double CurrentFontScale()
{
    return Now().fontScale;
}

const SchemeColors& Colors()
{
    return Now().scheme == Scheme::dark ? DarkColors() : LightColors();
}

QFont TextFont(double factor, bool bold)
{
    LoadFonts();
    QFont font(QStringList{QString::fromLatin1(kFamily), QString::fromLatin1(kSignsFamily)});
    font.setPointSizeF(kPlainPoints * Now().fontScale * factor);
    font.setBold(bold);
    // Without hinting a text is as wide at 100 % as at 250 %.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

int Spacing()
{
    return qRound(8.0 * Now().fontScale);
}

double CornerRadius()
{
    return 4.0 * Now().fontScale;
}

QColor FromColorRef(COLORREF color)
{
    return QColor(static_cast<int>(color & 0xFFU), static_cast<int>(color >> 8U & 0xFFU),
                  static_cast<int>(color >> 16U & 0xFFU));
}

COLORREF ToColorRef(const QColor& color)
{
    return RGB(static_cast<unsigned>(color.red()), static_cast<unsigned>(color.green()),
               static_cast<unsigned>(color.blue()));
}

namespace
{

/// 0..1, weighted as the eye does.
double Brightness(const QColor& color)
{
    return 0.2126 * color.redF() + 0.7152 * color.greenF() + 0.0722 * color.blueF();
}

/// On dark ground, light and dark exchanged.
QColor Exchanged(const QColor& paper)
{
    if (paper.hslSaturation() == 0) {
        const auto mix = [&](float black, float white) { return black + (white - black) * paper.lightnessF(); };
        const SchemeColors& c = Colors();
        return QColor::fromRgbF(mix(c.text.redF(), c.field.redF()), mix(c.text.greenF(), c.field.greenF()),
                                mix(c.text.blueF(), c.field.blueF()));
    }
    float hue = 0.0F;
    float saturation = 0.0F;
    float lightness = 0.0F;
    paper.getHslF(&hue, &saturation, &lightness);
    // A full colour that is bright enough means the same on dark ground: the area of a diagram stays its green.
    if (lightness < kPastel && Brightness(paper) > kBright)
        return paper;
    return QColor::fromHslF(std::max(hue, 0.0F), saturation, kLightest - (kLightest - kDarkest) * lightness);
}

} // namespace

QColor OnScreen(COLORREF color)
{
    const QColor paper = FromColorRef(color);
    if (Now().scheme == Scheme::light)
        return paper;
    const QColor shown = Exchanged(paper);
    // What is no line on paper is a ground: it may stay near the dark one.
    if (drawing::Contrast(color, kPaper) < kLeastContrast)
        return shown;
    return FromColorRef(drawing::Legible(ToColorRef(shown), ToColorRef(Colors().field), kLeastContrast));
}

QColor Tinted(const QColor& ground, const QColor& color)
{
    const auto mix = [](float a, float b) { return a + (b - a) * kTint; };
    return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                            mix(ground.blueF(), color.blueF()));
}

} // namespace desktop
