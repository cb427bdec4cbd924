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
constexpr const char* kDark = "dark";

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
    const QSettings file(path, QSettings::IniFormat);
    loaded.scheme = file.value(kScheme).toString() == QLatin1String(kDark) ? Scheme::dark : Scheme::light;
    const double scale = file.value(kFontScale, 1.0).toDouble();
    if (scale >= kSmallestFontScale && scale <= kLargestFontScale)
        loaded.fontScale = scale;
    loaded.geometry = file.value(kGeometry).toByteArray();
    loaded.docks = file.value(kDocks).toByteArray();
    return loaded;
}

bool Preferences::Save(const QString& path) const
{
    if (path.isEmpty())
        return false;
    QSettings file(path, QSettings::IniFormat);
    file.setValue(kScheme, scheme == Scheme::dark ? QString::fromLatin1(kDark) : QStringLiteral("light"));
    file.setValue(kFontScale, fontScale);
    file.setValue(kGeometry, geometry);
    file.setValue(kDocks, docks);
    file.sync();
    return file.status() == QSettings::NoError;
}

} // namespace desktop
