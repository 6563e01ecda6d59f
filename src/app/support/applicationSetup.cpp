#include "app/support/applicationSetup.h"

#include "app/support/loadLibraryErrorWindow.h"

#include "model/TOrbBlobData.h"
#include "util/localized.h"

#include <QApplication>
#include <QBuffer>
#include <QFontMetrics>
#include <QGridLayout>
#include <QIcon>
#include <QImageReader>
#include <QMessageBox>
#include <QPainter>
#include <QWidget>

#include <clocale>

static void initVellumResources()
{
    Q_INIT_RESOURCE(vellum);
}

namespace vellum {

namespace {

std::string translateWithQt(const char *english)
{
    if (!english)
        return {};
    return QCoreApplication::translate("Vellum", english).toStdString();
}

/// A picture is what Qt's image readers can decode; reading from any thread is safe.
bool qimageProbe(const std::uint8_t *data, std::size_t length)
{
    if (!data || length == 0)
        return false;
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(length));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return false;
    return !reader.read().isNull();
}

} // namespace

void configureProcessLocale()
{
    std::setlocale(LC_NUMERIC, "C");
    std::setlocale(LC_TIME, "C");
}

void installLocalizer()
{
    setLocalizeFunction(&translateWithQt);
}

void installImageProbe()
{
    TOrbBlobData::setImageProbe(&qimageProbe);
}

void setUpApplication()
{
    initVellumResources();
    QCoreApplication::setOrganizationName("Vellum");
    QCoreApplication::setApplicationName("Vellum");
    // No display name: Qt would append " — Vellum" to every window title shown by the window
    // manager, and the application name already answers where a display name is asked for.
    QGuiApplication::setDesktopFileName("vellum");
    QApplication::setWindowIcon(namedIcon("vellum"));
    configureProcessLocale();
    installLocalizer();
    installImageProbe();
    installLoadLibraryErrorWindow();
}

void paintBarBackground(QWidget *bar, const QColor &top, const QColor &bottom)
{
    QPainter painter(bar);
    QLinearGradient gradient(0, 0, 0, bar->height());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(bar->rect(), gradient);
    painter.setPen(QColor(0xb4, 0xb4, 0xb4));
    painter.drawLine(0, bar->height() - 1, bar->width(), bar->height() - 1);
}

void fitAlertToTitle(QMessageBox *alert)
{
    auto *grid = qobject_cast<QGridLayout *>(alert->layout());
    if (!grid)
        return;
    // Room for the title text plus the title bar's icon and buttons.
    constexpr int kTitleBarControls = 160;
    const QFont titleFont = QApplication::font("QMdiSubWindowTitleBar");
    const int wanted = QFontMetrics(titleFont).horizontalAdvance(alert->windowTitle()) + kTitleBarControls;
    grid->addItem(new QSpacerItem(wanted, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                  grid->columnCount());
}

QIcon namedIcon(const char *name)
{
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

} // namespace vellum
