#pragma once

#include <QColor>
#include <QFont>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

namespace orvel {

// One line: an optional icon (a symbol or a small capsule) then text, side by side, 4 points
// apart, the icon centred on the text's capital letters. The text is made of runs that share a
// baseline, so one label can mix sizes and weights ("2 sa 15 dk"). Repaints only when what it
// shows changes.
class TightLabel : public QWidget {
    Q_OBJECT

public:
    static constexpr qreal spacing = 4;

    struct Run {
        QString text;
        QFont font;
        QColor color;
        qreal trailingSpace = 0; // points after the run

        bool operator==(const Run &) const = default;
    };

    explicit TightLabel(QWidget *parent = nullptr);

    void setSymbol(const QString &name, qreal pointSize, const QColor &color);
    void setCapsule(const QSizeF &size, const QColor &color);
    void clearIcon();
    void setText(const QString &text, const QFont &font, const QColor &color);
    void setRuns(const std::vector<Run> &runs);
    // Where there is less room than the text needs, it first shrinks down to this scale.
    void setMinimumScale(qreal scale);
    // Where it still does not fit, the end is replaced by "…".
    void setElides(bool elides);
    // Where a one-run text does not fit even at the minimum scale, it breaks onto further
    // lines at its natural size instead: between words, or only after `separator` when given.
    void setWraps(bool wraps, const QString &separator = {});
    void setOpacity(qreal opacity);

    const std::vector<Run> &runs() const { return runs_; }
    QString text() const;
    QString symbol() const { return icon_.kind == Icon::Kind::symbol ? icon_.name : QString(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    // The lines the text takes in a content width (one line unless it wraps).
    QStringList lines(qreal width) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Icon {
        enum class Kind { none, symbol, capsule };
        Kind kind = Kind::none;
        QString name;
        qreal pointSize = 0;
        QSizeF size;
        QColor color;

        bool operator==(const Icon &) const = default;
    };

    // Positions of the parts at a text scale, relative to the content's top-left corner.
    struct Metrics {
        QSizeF size;
        QSizeF iconSize;
        qreal iconTop = 0;
        qreal textLeft = 0;
        qreal textWidth = 0;
        qreal baseline = 0;
    };

    Metrics measure(qreal scale) const;
    QFont scaled(const QFont &font, qreal scale) const;
    void setIcon(const Icon &icon);
    void contentChanged();
    void fitWrappedHeight();
    void paintIcon(QPainter &painter, const Metrics &metrics, const QPointF &topLeft) const;
    bool wrapsAt(qreal width) const;
    QStringList wrapPieces() const;
    void paintWrapped(QPainter &painter, const QRectF &area, const Metrics &metrics) const;

    Icon icon_;
    std::vector<Run> runs_;
    qreal minimumScale_ = 1;
    bool elides_ = false;
    bool wraps_ = false;
    QString wrapSeparator_;
    qreal opacity_ = 1;
};

} // namespace orvel
