#pragma once

class QColor;
class QIcon;
class QMessageBox;
class QWidget;
class QString;

namespace vellum {

/// Qt sets the process locale from the environment; libmdb formats numbers (and the exporters
/// read them) with the C conventions, so LC_NUMERIC and LC_TIME go back to "C". Call after the
/// QApplication exists.
void configureProcessLocale();

/// Connects the core's localized() to Qt's translator (context "Vellum").
void installLocalizer();

/// Installs the QImage-based image probe behind TOrbBlobData::isImage: a blob is a picture
/// when Qt's image readers decode it. Call before files are opened.
void installImageProbe();

/// Everything above, the "Load Library Error" window of the SQLite loader, plus the application's names (QSettings) and
/// window icon; `main` and the GUI tests call it once after making the QApplication.
void setUpApplication();

/// Paints the background of a bar (jump bar, button strip): a light vertical gradient from
/// `top` to `bottom` and a grey line along the lower edge.
void paintBarBackground(QWidget *bar, const QColor &top, const QColor &bottom);

/// Widens an alert so that the window manager's title bar can show its whole title (a message
/// box otherwise sizes itself by its text alone). Call after its texts are set.
void fitAlertToTitle(QMessageBox *alert);

/// One of the application's own icons by its image name ("back_32x32", "FileList_Table" …).
QIcon namedIcon(const char *name);

} // namespace vellum
