#pragma once

#include "Colors.h"

#include <QStringList>
#include <QWidget>

namespace orvel {

// One choice among a few titles, as equal segments of one control with the chosen one raised
// (the timetable's pages, the status item's styles). Clicks and, while it has focus, the arrow
// keys choose.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    static constexpr int defaultHeight = 24;

    SegmentedControl(const QStringList &titles, const QString &accessibleName, QWidget *parent = nullptr);

    int current() const { return current_; }
    // Shows the choice without telling anyone.
    void setCurrent(int index);
    void setAppearance(Appearance appearance);
    // The segment's area, in this widget's coordinates.
    QRect segmentRect(int index) const;

    QSize sizeHint() const override;

signals:
    // The user chose a segment other than the one shown.
    void chosen(int index);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void choose(int index);
    int segmentAt(const QPoint &position) const;
    int count() const { return static_cast<int>(titles_.size()); }

    QStringList titles_;
    int current_ = -1;
    Appearance appearance_ = Appearance::light;
    int hovered_ = -1;
    bool keyboardFocus_ = false;
};

} // namespace orvel
