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
constexpr const char* kScreens = "screens";
constexpr const char* kDark = "dark";
constexpr const char* kMasks = "masks";
constexpr const char* kTabs = "tabs";

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
    loaded.layout = {file.value(kGeometry).toByteArray(), file.value(kDocks).toByteArray()};
    file.beginGroup(kScreens);
    for (const QString& size : file.childGroups())
        loaded.ofScreen[size] = {file.value(size + QLatin1Char('/') + QLatin1String(kGeometry)).toByteArray(),
                                 file.value(size + QLatin1Char('/') + QLatin1String(kDocks)).toByteArray()};
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
    file.setValue(kGeometry, layout.geometry);
    file.setValue(kDocks, layout.docks);
    for (auto screen = ofScreen.begin(); screen != ofScreen.end(); ++screen) {
        const QString group = QStringLiteral("%1/%2/").arg(QLatin1String(kScreens), screen.key());
        file.setValue(group + QLatin1String(kGeometry), screen->geometry);
        file.setValue(group + QLatin1String(kDocks), screen->docks);
    }
    file.sync();
    return file.status() == QSettings::NoError;
}

} // namespace desktop
