#pragma once

#include "Colors.h"

#include <QAbstractButton>
#include <QLabel>
#include <QString>
#include <QWidget>

class QVBoxLayout;

namespace orvel {

// The pieces the settings tabs are built from: grouped sections of rows on rounded cards, text in
// the desktop's hierarchy of tones, switches, segments and capsule chips. Colours follow
// Colors::current(), so a forced render is light or dark whatever the desktop.
namespace SettingsForm {

enum class Tone { primary, secondary, tertiary, accent };

// A label that keeps its tone when the appearance changes.
QLabel *label(const QString &text, Tone tone = Tone::primary, qreal points = 13, QFont::Weight weight = QFont::Normal);
// A caption under a control: smaller, secondary, wrapping.
QLabel *caption(const QString &text);
// A symbol drawn in a tone, as a label.
QLabel *symbol(const QString &name, Tone tone, qreal points = 13);
// Gives a label a tone, or an exact colour that never changes ("orange" of a warning).
void setTone(QLabel *label, Tone tone);
void setSymbolColor(QLabel *label, const QColor &color);

// Sets the appearance's palette on the root and the tones of every label under it.
void applyAppearance(QWidget *root, Appearance appearance);

// A title above a rounded card of rows, each row parted from the next by a hairline, and an
// optional footer under the card.
class Section : public QWidget {
    Q_OBJECT

public:
    explicit Section(const QString &title = QString(), const QString &footer = QString(), QWidget *parent = nullptr);

    // Adds a row to the card; the row may be hidden and shown later.
    QWidget *addRow(QWidget *row);

private:
    class Card;

    Card *card_;
    QVBoxLayout *rows_;
    QLabel *footer_ = nullptr;
};

// A row of a title (with an optional caption under it) on the left and controls on the right.
QWidget *row(const QString &title, QWidget *control, const QString &caption = QString());
// A row of widgets as given, left to right, with no title.
QWidget *rowOf(std::initializer_list<QWidget *> widgets, int spacing = 8);

// An on/off switch in the accent colour.
class Switch : public QAbstractButton {
    Q_OBJECT

public:
    explicit Switch(const QString &accessibleName, QWidget *parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// A capsule that is on (accent fill and border) or off (a faint border only).
class Chip : public QAbstractButton {
    Q_OBJECT

public:
    explicit Chip(const QString &title, QWidget *parent = nullptr);
    void setOn(bool on);
    bool isOn() const { return on_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont font() const;
    bool on_ = false;
};

} // namespace SettingsForm

} // namespace orvel
