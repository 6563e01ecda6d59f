#include "app/support/loadLibraryErrorWindow.h"

#include "app/support/qtStrings.h"
#include "sql/sqliteLibrary.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QMetaObject>
#include <QPlainTextEdit>
#include <QSemaphore>
#include <QStyle>
#include <QThread>
#include <QVBoxLayout>

#include <memory>

namespace vellum {

void showLoadLibraryError(const LoadLibraryError &error)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(toQString(error.title));
    dialog.setModal(true);
    auto *layout = new QVBoxLayout(&dialog);

    auto *top = new QHBoxLayout;
    auto *icon = new QLabel(&dialog);
    icon->setPixmap(dialog.style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    top->addWidget(icon);
    auto *message = new QLabel(toQString(error.message), &dialog);
    message->setWordWrap(true);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message->setFixedHeight(68); // room for the reason and a long library path
    message->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    top->addWidget(message, 1);
    layout->addLayout(top);

    auto *details = new QPlainTextEdit(toQString(error.details), &dialog);
    details->setReadOnly(true);
    details->setFont(QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont));
    details->setObjectName("loadLibraryErrorDetails");
    layout->addWidget(details, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    layout->addWidget(buttons);
    dialog.resize(460, 260);
    dialog.exec();
}

void installLoadLibraryErrorWindow()
{
    setLoadLibraryErrorHandler([](const LoadLibraryError &error) {
        QCoreApplication *application = QCoreApplication::instance();
        if (!application)
            return;
        if (QThread::currentThread() == application->thread())
            showLoadLibraryError(error);
        else {
            // The export worker waits until the window is dismissed, but not past the end of
            // the application (nothing would show the window any more).
            auto shown = std::make_shared<QSemaphore>(0);
            QMetaObject::invokeMethod(
                application,
                [error, shown] {
                    showLoadLibraryError(error);
                    shown->release();
                },
                Qt::QueuedConnection);
            while (!shown->tryAcquire(1, 50))
                if (QCoreApplication::closingDown())
                    return;
        }
    });
}

} // namespace vellum
