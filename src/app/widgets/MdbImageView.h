#pragma once

#include <QImage>
#include <QPoint>
#include <QWidget>

namespace vellum {

class TOrbBlobData;

/// The bottom pane's picture view: draws the blob's picture scaled to fit on a light background;
/// dragging drags the blob's temporary file, a double click opens it (openBlobAsFile).
class MdbImageView : public QWidget {
    Q_OBJECT
public:
    explicit MdbImageView(QWidget *parent = nullptr);

    /// Shows a blob's picture (decoded here); nullptr shows nothing.
    void setBlob(const TOrbBlobData *blob);
    const TOrbBlobData *currentBlob() const { return m_blob; }
    const QImage &image() const { return m_image; }

signals:
    /// A double click: open the shown blob with the default application.
    void openBlobAsFile();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    const TOrbBlobData *m_blob = nullptr;
    QImage m_image;
    QPoint m_pressAt;
};

} // namespace vellum
