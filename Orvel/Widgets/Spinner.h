#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

namespace orvel {

// A small indeterminate progress indicator: spokes whose brightness turns round. It is drawn
// centred in whatever room it is given and turns only while on screen.
class Spinner : public QWidget {
    Q_OBJECT

public:
    static constexpr int diameter = 18;
    static constexpr int spokes = 12;

    explicit Spinner(QWidget *parent = nullptr);

    void setColor(const QColor &color);
    bool isSpinning() const { return timer_.isActive(); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QTimer timer_;
    QColor color_;
    int phase_ = 0;
};

} // namespace orvel
