#include "ImageView.h"

#include <QPainter>
#include <QtMath>

namespace orvel {

ImageView::ImageView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ImageView::setImage(const QImage &image)
{
    image_ = image;
    updateGeometry();
    update();
}

void ImageView::setPadding(const QMargins &padding)
{
    padding_ = padding;
    updateGeometry();
}

QSize ImageView::sizeHint() const
{
    const QSizeF size = image_.deviceIndependentSize();
    return QSize(qCeil(size.width()), qCeil(size.height())).grownBy(padding_);
}

QRectF ImageView::imageRect() const
{
    const QSizeF size = image_.deviceIndependentSize();
    const QRectF inside = QRectF(rect()).marginsRemoved(QMarginsF(padding_));
    return {inside.center() - QPointF(size.width() / 2, size.height() / 2), size};
}

void ImageView::paintEvent(QPaintEvent *)
{
    if (image_.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(imageRect(), image_);
}

} // namespace orvel
