#pragma once

// Shared set-up of the widget tests: a private XDG_DATA_HOME and XDG_CONFIG_HOME (recent
// documents and settings), the offscreen platform, the application's own set-up, and copies of
// fixture files in a temporary folder.

#include "app/support/applicationSetup.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/RecentDocuments.h"
#include "mdb/InProcessReader.h"
#include "model/TOrbMDBFile.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <functional>
#include <memory>

namespace vellum::test {

/// The reader the widget tests open files with: libmdb in the test's own process.
inline std::shared_ptr<FileReader> inProcessReader()
{
    static const auto reader = std::make_shared<InProcessReader>();
    return reader;
}

/// A main window over a cleared recent-documents list and settings, reading with `reader`;
/// alerts go to `onAlert`. Not yet shown.
inline std::unique_ptr<VellumAppDelegate> freshWindow(
    std::function<void(const QString &, const QString &)> onAlert = [](const QString &, const QString &) {},
    std::shared_ptr<FileReader> reader = inProcessReader())
{
    RecentDocuments().clear();
    QSettings().clear();
    auto window = std::make_unique<VellumAppDelegate>(VellumAppDelegate::Options{false, nullptr, std::move(reader)});
    window->setAlertHandler(std::move(onAlert));
    return window;
}

/// Copies a fixture from tests/data into `folder` under `name` (the fixture's own name when
/// empty) and answers the copy's path.
inline QString copyFixture(const QString &fixture, const QString &folder, const QString &name = QString())
{
    const QString target = folder + "/" + (name.isEmpty() ? fixture : name);
    QFile::remove(target);
    if (!QFile::copy(QStringLiteral(VELLUM_TEST_DATA) + "/" + fixture, target))
        return {};
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    return target;
}

} // namespace vellum::test

/// main() of a widget test: everything the user owns is redirected to a temporary folder.
#define VELLUM_GUI_TEST_MAIN(TestClass)                                                                                \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        QTemporaryDir home;                                                                                            \
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path() + "/data"));                                            \
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path() + "/config"));                                        \
        qputenv("TMPDIR", QFile::encodeName(home.path()));                                                             \
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))                                                            \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                                                   \
        QApplication application(argc, argv);                                                                          \
        vellum::setUpApplication();                                                                                    \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
