#pragma once

#include "Colors.h"
#include "ImsakiyeMode.h"

#include <QWidget>

namespace orvel {

// The headings over the timetable's columns: "Tarih", "Hicri" (or "Ramazan"), the six prayers,
// and in Ramadan "Sahur" and "İftar" under İmsak and Akşam. It stands over the rows wherever the
// list puts them.
class ImsakiyeHeader : public QWidget {
    Q_OBJECT

public:
    static constexpr int verticalPadding = 8;

    explicit ImsakiyeHeader(QWidget *parent = nullptr);

    void setContent(ImsakiyeMode mode, Appearance appearance);
    // Where a row lies, in this widget's coordinates.
    void setRowSpan(qreal left, qreal right);

    ImsakiyeMode mode() const { return mode_; }
    // The headings, top line then second lines, for tests and screen readers.
    QStringList headings() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int lineCount() const;

    ImsakiyeMode mode_ = ImsakiyeMode::month;
    Appearance appearance_ = Appearance::light;
    qreal rowLeft_ = 0;
    qreal rowRight_ = 0;
};

} // namespace orvel
