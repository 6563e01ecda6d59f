#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vellum {

/// The five pane flags of the main window.
enum class PaneFlag { FileTreeShown, TextViewShown, InformationViewShown, JumpBarShown, NumRowsShown };

/// The user defaults of the application, each key declared once with its default: the pane
/// flags, the export folder and the toolbar and window layout. A key that was never written
/// answers its default.
class SettingsStore {
public:
    /// The key of a pane flag ("fileTreeShown" …).
    static const char *key(PaneFlag flag);
    /// The default of a pane flag: file list, information view and row counts shown; text
    /// view and jump bar hidden.
    static bool defaultValue(PaneFlag flag);

    static bool paneFlag(PaneFlag flag);
    static void setPaneFlag(PaneFlag flag, bool value);

    /// "exportFilePath": the last export folder; "" when none was stored.
    static QString exportFilePath();
    static void setExportFilePath(const QString &path);
    /// "exportLossless": the wizard's lossless check box as last used; off when never stored.
    static bool exportLossless();
    static void setExportLossless(bool lossless);

    /// The toolbar's layout, saved under its identifier "VellumToolbar".
    static QByteArray toolbarState();
    static void setToolbarState(const QByteArray &state);
    /// The toolbar items the user took off the toolbar (identifiers); none by default.
    static QStringList hiddenToolbarItems();
    static void setHiddenToolbarItems(const QStringList &identifiers);
    static QByteArray windowGeometry();
    static void setWindowGeometry(const QByteArray &geometry);

    /// Writes pending changes to disk.
    static void flush();
};

} // namespace vellum
