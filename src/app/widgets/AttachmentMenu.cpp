#include "app/widgets/AttachmentMenu.h"

#include "app/support/desktopServices.h"
#include "app/support/qtStrings.h"
#include "model/TOrbComplexValue.h"
#include "model/fileExtensions.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>

namespace vellum {
namespace {

QString askForSavePath(QWidget *parent, const QString &proposed)
{
    return QFileDialog::getSaveFileName(parent, localizedQ("Save Attachment"), proposed);
}

} // namespace

AttachmentMenu::AttachmentMenu(const TOrbComplexValue &value, QWidget *parent)
    : QMenu(parent), m_value(value), m_saveTarget(askForSavePath)
{
    const auto &attachments = m_value.attachments();
    for (int i = 0; i < static_cast<int>(attachments.size()); ++i) {
        const auto &attachment = attachments[static_cast<std::size_t>(i)];
        const QString name = toQString(attachment.fileName);
        const TOrbBlobData *data = attachment.data.get();
        QAction *open = addAction(fileIconForExtension(toQString(attachment.fileType)), localizedQ("Open %1").arg(name),
                                  this, [data] { openBlobIfSafe(*data); });
        open->setEnabled(data->isImage() || isSafeFileExtension(data->fileExtension()));
        addAction(localizedQ("Save %1…").arg(name), this, [this, i] { saveAttachment(i); });
        if (i + 1 < static_cast<int>(attachments.size()))
            addSeparator();
    }
}

bool AttachmentMenu::saveAttachment(int index)
{
    const auto &attachments = m_value.attachments();
    if (index < 0 || static_cast<std::size_t>(index) >= attachments.size())
        return false;
    const auto &attachment = attachments[static_cast<std::size_t>(index)];
    const QString proposed = QDir::home().filePath(toQString(attachment.fileName).replace(QLatin1Char('/'), '_'));
    const QString path = m_saveTarget(parentWidget(), proposed);
    if (path.isEmpty())
        return false;
    QFile file(path);
    const auto &data = attachment.data->data();
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
        file.write(reinterpret_cast<const char *>(data.data()), static_cast<qint64>(data.size())) ==
            static_cast<qint64>(data.size()) &&
        file.flush()) {
        file.close();
        return true;
    }
    if (parentWidget())
        QMessageBox::warning(parentWidget(), localizedQ("Save Attachment"),
                             localizedQ("The file could not be saved: %1").arg(file.errorString()));
    return false;
}

} // namespace vellum
