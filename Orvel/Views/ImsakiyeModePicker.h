#pragma once

#include "Colors.h"
#include "ImsakiyeMode.h"

#include <QWidget>

namespace orvel {

// The timetable's page picker: "Hafta", "Ay" and "Ramazan" as segments of one control, the
// chosen one raised. Clicks and, while it has focus, the arrow keys choose.
class ImsakiyeModePicker : public QWidget {
    Q_OBJECT

public:
    static constexpr int pickerWidth = 230;
    static constexpr int pickerHeight = 24;

    explicit ImsakiyeModePicker(QWidget *parent = nullptr);

    ImsakiyeMode mode() const { return mode_; }
    // Shows the mode without telling anyone.
    void setMode(ImsakiyeMode mode);
    void setAppearance(Appearance appearance);
    // The segment's area, in this widget's coordinates.
    QRect segmentRect(ImsakiyeMode mode) const;

    QSize sizeHint() const override;

signals:
    // The user chose a mode other than the one shown.
    void modeChosen(ImsakiyeMode mode);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void choose(ImsakiyeMode mode);
    int segmentAt(const QPoint &position) const;

    ImsakiyeMode mode_ = ImsakiyeMode::month;
    Appearance appearance_ = Appearance::light;
    int hovered_ = -1;
    bool keyboardFocus_ = false;
};

} // namespace orvel
