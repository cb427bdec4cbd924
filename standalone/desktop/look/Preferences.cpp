// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Preferences.h"

#include "casefile/Settings.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace desktop
{
namespace
{

constexpr const char* kScheme = "scheme";
constexpr const char* kFontScale = "fontScale";
constexpr const char* kGeometry = "geometry";
constexpr const char* kDocks = "docks";
constexpr const char* kTornOff = "tornOff";
constexpr const char* kScreens = "screens";
constexpr const char* kDark = "dark";
constexpr const char* kMasks = "masks";
constexpr const char* kTabs = "tabs";

/// `group` is empty or ends in a slash.
Preferences::Layout LayoutOf(QSettings& file, const QString& group)
{
    Preferences::Layout layout{file.value(group + QLatin1String(kGeometry)).toByteArray(),
                               file.value(group + QLatin1String(kDocks)).toByteArray(),
                               {}};
    file.beginGroup(group + QLatin1String(kTornOff));
    for (const QString& number : file.childKeys())
        if (const UINT dialog = number.toUInt(); dialog != 0)
            layout.tornOff[dialog] = file.value(number).toByteArray();
    file.endGroup();
    return layout;
}

void KeepLayout(QSettings& file, const QString& group, const Preferences::Layout& layout)
{
    file.setValue(group + QLatin1String(kGeometry), layout.geometry);
    file.setValue(group + QLatin1String(kDocks), layout.docks);
    file.remove(group + QLatin1String(kTornOff));
    for (auto mask = layout.tornOff.begin(); mask != layout.tornOff.end(); ++mask)
        file.setValue(QStringLiteral("%1%2/%3").arg(group, QLatin1String(kTornOff)).arg(mask.key()), *mask);
}

} // namespace

QString PreferencesPath()
{
    const QString settings = QString::fromStdString(casefile::DefaultSettingsPath());
    return settings.isEmpty() ? QString() : QFileInfo(settings).dir().filePath(QStringLiteral("desktop.ini"));
}

Preferences Preferences::Load(const QString& path)
{
    Preferences loaded;
    if (path.isEmpty())
        return loaded;
    QSettings file(path, QSettings::IniFormat);
    loaded.scheme = file.value(kScheme).toString() == QLatin1String(kDark) ? Scheme::dark : Scheme::light;
    const double scale = file.value(kFontScale, 1.0).toDouble();
    if (scale >= kSmallestFontScale && scale <= kLargestFontScale)
        loaded.fontScale = scale;
    loaded.tabs = file.value(kMasks).toString() == QLatin1String(kTabs);
    loaded.layout = LayoutOf(file, {});
    file.beginGroup(kScreens);
    for (const QString& size : file.childGroups())
        loaded.ofScreen[size] = LayoutOf(file, size + QLatin1Char('/'));
    return loaded;
}

bool Preferences::Save(const QString& path) const
{
    if (path.isEmpty())
        return false;
    QSettings file(path, QSettings::IniFormat);
    file.setValue(kScheme, scheme == Scheme::dark ? QString::fromLatin1(kDark) : QStringLiteral("light"));
    file.setValue(kFontScale, fontScale);
    file.setValue(kMasks, tabs ? QString::fromLatin1(kTabs) : QStringLiteral("windows"));
    KeepLayout(file, {}, layout);
    for (auto screen = ofScreen.begin(); screen != ofScreen.end(); ++screen)
        KeepLayout(file, QStringLiteral("%1/%2/").arg(QLatin1String(kScreens), screen.key()), *screen);
    file.sync();
    return file.status() == QSettings::NoError;
}

} // namespace desktop
