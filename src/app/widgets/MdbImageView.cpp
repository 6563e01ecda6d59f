#include "app/widgets/MdbImageView.h"

#include "app/support/desktopServices.h"
#include "model/TOrbBlobData.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace vellum {

MdbImageView::MdbImageView(QWidget *parent) : QWidget(parent)
{
    setMinimumHeight(40);
}

void MdbImageView::setBlob(const TOrbBlobData *blob)
{
    m_blob = blob;
    m_image = QImage();
    if (blob && !blob->data().empty())
        m_image.loadFromData(blob->data().data(), static_cast<int>(blob->data().size()));
    update();
}

void MdbImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xf4, 0xf4, 0xf4));
    if (m_image.isNull())
        return;
    const QSize area = rect().adjusted(6, 6, -6, -6).size();
    QSize size = m_image.size();
    bool upscaled = false;
    if (size.width() > area.width() || size.height() > area.height()) {
        size.scale(area, Qt::KeepAspectRatio);
    } else if (size.width() * 4 <= area.width() && size.height() * 4 <= area.height()) {
        // Tiny pictures (icons, a few pixels) are enlarged by whole steps so that they can be seen.
        const int factor =
            std::min({area.width() / std::max(1, size.width()), area.height() / std::max(1, size.height()), 16});
        size *= factor;
        upscaled = true;
    }
    const QRect target(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !upscaled);
    painter.drawImage(target, m_image);
}

void MdbImageView::mousePressEvent(QMouseEvent *event)
{
    m_pressAt = event->position().toPoint();
    QWidget::mousePressEvent(event);
}

void MdbImageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_blob || !(event->buttons() & Qt::LeftButton) ||
        (event->position().toPoint() - m_pressAt).manhattanLength() < QApplication::startDragDistance())
        return;
    dragBlobFile(this, *m_blob,
                 m_image.isNull()
                     ? QPixmap()
                     : QPixmap::fromImage(m_image.scaled(64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void MdbImageView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_blob)
        emit openBlobAsFile();
}

} // namespace vellum
