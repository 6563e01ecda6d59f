#include "app/support/SettingsStore.h"

#include <QSettings>

namespace vellum {

namespace {
constexpr const char *kExportFilePath = "exportFilePath";
constexpr const char *kExportLossless = "exportLossless";
constexpr const char *kToolbarState = "VellumToolbar";
constexpr const char *kWindowGeometry = "mainWindowGeometry";
constexpr const char *kHiddenToolbarItems = "VellumToolbarHiddenItems";
} // namespace

const char *SettingsStore::key(PaneFlag flag)
{
    switch (flag) {
    case PaneFlag::FileTreeShown:
        return "fileTreeShown";
    case PaneFlag::TextViewShown:
        return "textViewShown";
    case PaneFlag::InformationViewShown:
        return "informationViewShown";
    case PaneFlag::JumpBarShown:
        return "jumpBarShown";
    case PaneFlag::NumRowsShown:
        return "numRowsShown";
    }
    return "";
}

bool SettingsStore::defaultValue(PaneFlag flag)
{
    return flag == PaneFlag::FileTreeShown || flag == PaneFlag::InformationViewShown || flag == PaneFlag::NumRowsShown;
}

bool SettingsStore::paneFlag(PaneFlag flag)
{
    return QSettings().value(key(flag), defaultValue(flag)).toBool();
}

void SettingsStore::setPaneFlag(PaneFlag flag, bool value)
{
    QSettings().setValue(key(flag), value);
}

QString SettingsStore::exportFilePath()
{
    return QSettings().value(kExportFilePath).toString();
}

void SettingsStore::setExportFilePath(const QString &path)
{
    QSettings().setValue(kExportFilePath, path);
}

bool SettingsStore::exportLossless()
{
    return QSettings().value(kExportLossless, false).toBool();
}

void SettingsStore::setExportLossless(bool lossless)
{
    QSettings().setValue(kExportLossless, lossless);
}

QByteArray SettingsStore::toolbarState()
{
    return QSettings().value(kToolbarState).toByteArray();
}

void SettingsStore::setToolbarState(const QByteArray &state)
{
    QSettings().setValue(kToolbarState, state);
}

QStringList SettingsStore::hiddenToolbarItems()
{
    return QSettings().value(kHiddenToolbarItems).toStringList();
}

void SettingsStore::setHiddenToolbarItems(const QStringList &identifiers)
{
    QSettings().setValue(kHiddenToolbarItems, identifiers);
}

QByteArray SettingsStore::windowGeometry()
{
    return QSettings().value(kWindowGeometry).toByteArray();
}

void SettingsStore::setWindowGeometry(const QByteArray &geometry)
{
    QSettings().setValue(kWindowGeometry, geometry);
}

void SettingsStore::flush()
{
    QSettings().sync();
}

} // namespace vellum
