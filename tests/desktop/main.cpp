// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation's tests need an application object for their whole life, and never touch the user's own files.
#include "desktop/look/Theme.h"
#include "tests/support/NothingLeftBehind.h"

#include <QApplication>
#include <QLocale>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A test that starts this program again chooses the folders itself.
    constexpr const char* kMark = "TAVELIN_TEST_FOLDERS";
    std::unique_ptr<QTemporaryDir> home;
    if (!qEnvironmentVariableIsSet(kMark)) {
        home = std::make_unique<QTemporaryDir>();
        for (const char* folder :
             {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            qputenv(folder, home->path().toUtf8());
        testing::AddGlobalTestEnvironment(new test::NothingLeftBehind);
    }
    qputenv(kMark, "1");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QApplication application(argc, argv);
    desktop::ApplyTheme(desktop::Scheme::light);
    return RUN_ALL_TESTS();
}
