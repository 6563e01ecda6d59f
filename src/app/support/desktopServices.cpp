#include "app/support/desktopServices.h"

#include "app/support/qtStrings.h"
#include "model/TOrbBlobData.h"
#include "model/fileExtensions.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QDrag>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHash>
#include <QMimeData>
#include <QMimeDatabase>
#include <QPixmap>
#include <QUrl>
#include <QWidget>

namespace vellum {

bool openWithDefaultApplication(const QString &path)
{
    if (path.isEmpty())
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void revealInFileManager(const QString &path)
{
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                                       "org.freedesktop.FileManager1", "ShowItems");
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

QIcon fileIconForExtension(const QString &extension)
{
    static QHash<QString, QIcon> cache;
    const auto found = cache.constFind(extension);
    if (found != cache.constEnd())
        return *found;
    const QString sample = extension.isEmpty() ? QStringLiteral("file") : QStringLiteral("file.") + extension;
    const QMimeType mime = QMimeDatabase().mimeTypeForFile(sample, QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(mime.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(mime.genericIconName());
    if (icon.isNull())
        icon = QFileIconProvider().icon(QFileIconProvider::File);
    cache.insert(extension, icon);
    return icon;
}

void dragBlobFile(QWidget *source, const TOrbBlobData &blob, const QPixmap &pixmap)
{
    const QString path = toQString(blob.createTempFile());
    if (path.isEmpty())
        return;
    auto *mime = new QMimeData;
    mime->setUrls({QUrl::fromLocalFile(path)});
    auto *drag = new QDrag(source);
    drag->setMimeData(mime);
    if (!pixmap.isNull())
        drag->setPixmap(pixmap);
    drag->exec(Qt::CopyAction);
}

bool openBlobIfSafe(const TOrbBlobData &blob)
{
    if (!blob.isImage() && !isSafeFileExtension(blob.fileExtension()))
        return false;
    return openWithDefaultApplication(toQString(blob.createTempFile()));
}

} // namespace vellum
