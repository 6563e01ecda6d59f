#pragma once

#include <QIcon>
#include <QString>

class QPixmap;
class QWidget;

namespace vellum {

class TOrbBlobData;

/// Opens a file with the desktop's default application; false when the desktop refused.
bool openWithDefaultApplication(const QString &path);

/// Shows a file selected in the file manager (org.freedesktop.FileManager1.ShowItems over
/// D-Bus), or opens its folder when no file manager answers.
void revealInFileManager(const QString &path);

/// The desktop's icon for files with an extension (a generic file icon when unknown).
QIcon fileIconForExtension(const QString &extension);

/// Drags a blob's temporary file (made here) out of `source`, with `pixmap` under the pointer;
/// returns when the drag ends. Nothing happens when the file cannot be made.
void dragBlobFile(QWidget *source, const TOrbBlobData &blob, const QPixmap &pixmap);

/// Writes a blob to its temporary file and opens it, when it is a picture or its extension is
/// on the safe list; false when nothing was opened.
bool openBlobIfSafe(const TOrbBlobData &blob);

} // namespace vellum
