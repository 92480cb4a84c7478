#include "app/ui/look/SourceArtwork.h"

#include "app/tray/TrayImage.h"
#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Theme.h"

#include <QPainter>

SourceArtwork::SourceArtwork(const QImage &image, int size, QWidget *parent)
    : QWidget(parent)
    , m_image(image)
{
    setFixedSize(size, size);
    AccessibleComponent::hide(this);
}

void SourceArtwork::paintEvent(QPaintEvent *)
{
    if (m_image.isNull())
        return;
    const qreal side = width();
    const QSizeF box(side * 22 / 24, side * 18 / 24);
    const QRectF target(QPointF((side - box.width()) / 2, (side - box.height()) / 2), box);
    if (!TrayImage::isTemplate(m_image)) {
        QRectF fitted(QPointF(), m_image.deviceIndependentSize().scaled(box, Qt::KeepAspectRatio));
        fitted.moveCenter(target.center());
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(fitted, m_image);
        return;
    }
    const qreal ratio = devicePixelRatioF();
    QImage glyph(qCeil(box.width() * ratio), qCeil(box.height() * ratio), QImage::Format_ARGB32_Premultiplied);
    glyph.fill(Qt::transparent);
    {
        QPainter shape(&glyph);
        shape.setRenderHint(QPainter::SmoothPixmapTransform);
        shape.drawImage(QRectF(glyph.rect()), m_image);
        shape.setCompositionMode(QPainter::CompositionMode_SourceIn);
        shape.fillRect(glyph.rect(), Theme::of(this).primary);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, glyph);
}
