#pragma once

#include <QImage>
#include <QWidget>

namespace orvel {

// A picture at its device-independent size, drawn as it is. A QLabel brings a pixmap down to its
// own screen's pixel ratio first, so a picture drawn for a 2x screen came out of a 1x window (and
// of every snapshot) scaled up and blurred.
class ImageView : public QWidget {
public:
    explicit ImageView(QWidget *parent = nullptr);

    void setImage(const QImage &image);
    const QImage &image() const { return image_; }
    // Space around the picture, inside the widget.
    void setPadding(const QMargins &padding);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    // The picture's place inside the widget.
    QRectF imageRect() const;

private:
    QImage image_;
    QMargins padding_;
};

} // namespace orvel
