#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QFont>

namespace orvel {

class TightLabel;

// A borderless button showing a symbol, a title, or both side by side. With a fixed hit area
// (icon buttons) it lights a rounded background under the pointer; a title button brightens
// its text instead. It dims while pressed and shows a ring when reached with the keyboard.
class SymbolButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit SymbolButton(QWidget *parent = nullptr);

    // An empty symbol or title leaves that part out.
    void setContent(const QString &symbol, qreal symbolPoints, const QString &title, const QFont &font,
                    const QColor &color);
    void setOpacity(qreal opacity);
    // A fixed hit area with the content centred in it.
    void setHitSize(const QSize &size);

    QString symbol() const;
    qreal opacity() const { return opacity_; }
    TightLabel *label() const { return label_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void refreshLabel();

    TightLabel *label_;
    QString symbol_;
    qreal symbolPoints_ = 0;
    QString title_;
    QFont font_;
    QColor color_;
    qreal opacity_ = 1;
    bool fixedHit_ = false;
    bool keyboardFocus_ = false;
};

} // namespace orvel
