#include "SettingsForm.h"

#include "Symbols.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QPainter>
#include <QPainterPath>

namespace orvel::SettingsForm {

namespace {

const char *toneProperty = "orvelTone";
const char *symbolProperty = "orvelSymbol";
const char *symbolPointsProperty = "orvelSymbolPoints";
const char *fixedColorProperty = "orvelFixedColor";

constexpr int cardRadius = 8;
constexpr int rowHorizontalPadding = 12;
constexpr int rowVerticalPadding = 8;

QColor toneColor(Tone tone, Appearance appearance)
{
    switch (tone) {
    case Tone::primary:
        return ViewStyle::primary(appearance);
    case Tone::secondary:
        return ViewStyle::secondary(appearance);
    case Tone::tertiary:
        return ViewStyle::tertiary(appearance);
    case Tone::accent:
        return ViewStyle::accent(appearance);
    }
    return ViewStyle::primary(appearance);
}

QColor hairline(Appearance appearance)
{
    return ViewStyle::faded(ViewStyle::primary(appearance), 0.1);
}

// Symbols are pictures, so a change of tone draws them again.
void paintLabel(QLabel *label, const QColor &color)
{
    const QString name = label->property(symbolProperty).toString();
    if (name.isEmpty()) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, color);
        label->setPalette(palette);
        return;
    }
    const qreal points = label->property(symbolPointsProperty).toReal();
    label->setPixmap(QPixmap::fromImage(Symbols::image(name, points, color, label->devicePixelRatioF())));
}

} // namespace

QLabel *label(const QString &text, Tone tone, qreal points, QFont::Weight weight)
{
    auto *label = new QLabel(text);
    label->setFont(ViewStyle::font(points, weight));
    label->setTextFormat(Qt::PlainText);
    setTone(label, tone);
    return label;
}

QLabel *caption(const QString &text)
{
    QLabel *note = label(text, Tone::secondary, 11);
    note->setWordWrap(true);
    return note;
}

QLabel *symbol(const QString &name, Tone tone, qreal points)
{
    auto *label = new QLabel;
    label->setProperty(symbolProperty, name);
    label->setProperty(symbolPointsProperty, points);
    label->setAlignment(Qt::AlignCenter);
    setTone(label, tone);
    return label;
}

void setTone(QLabel *label, Tone tone)
{
    label->setProperty(toneProperty, static_cast<int>(tone));
    paintLabel(label, toneColor(tone, Colors::current()));
}

void setSymbolColor(QLabel *label, const QColor &color)
{
    label->setProperty(fixedColorProperty, color);
    paintLabel(label, color);
}

void applyAppearance(QWidget *root, Appearance appearance)
{
    root->setPalette(ViewStyle::palette(appearance));
    root->setStyleSheet(ViewStyle::fieldStyleSheet(appearance));
    for (QLabel *label : root->findChildren<QLabel *>()) {
        const QVariant fixed = label->property(fixedColorProperty);
        if (fixed.isValid()) {
            paintLabel(label, fixed.value<QColor>());
            continue;
        }
        const QVariant tone = label->property(toneProperty);
        if (tone.isValid())
            paintLabel(label, toneColor(static_cast<Tone>(tone.toInt()), appearance));
    }
    root->update();
}

// The card paints its own rounded background and the hairlines between visible rows.
class Section::Card : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        const Appearance appearance = Colors::current();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath shape;
        shape.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cardRadius, cardRadius);
        painter.fillPath(shape, ViewStyle::controlBackground(appearance));
        painter.setPen(QPen(hairline(appearance), 1));
        painter.drawPath(shape);

        bool first = true;
        for (const QWidget *child : findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (!child->isVisible())
                continue;
            if (!first) {
                const qreal y = child->geometry().top() + 0.5;
                painter.drawLine(QPointF(rowHorizontalPadding, y), QPointF(width() - rowHorizontalPadding, y));
            }
            first = false;
        }
    }
};

Section::Section(const QString &title, const QString &footer, QWidget *parent)
    : QWidget(parent)
    , card_(new Card)
    , rows_(new QVBoxLayout(card_))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    if (!title.isEmpty()) {
        QLabel *heading = label(title, Tone::secondary, 11.5, QFont::DemiBold);
        heading->setContentsMargins(rowHorizontalPadding / 2, 0, 0, 0);
        column->addWidget(heading);
    }
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    column->addWidget(card_);
    if (!footer.isEmpty()) {
        footer_ = caption(footer);
        footer_->setContentsMargins(rowHorizontalPadding / 2, 0, rowHorizontalPadding / 2, 0);
        column->addWidget(footer_);
    }
}

QWidget *Section::addRow(QWidget *row)
{
    row->setContentsMargins(rowHorizontalPadding, rowVerticalPadding, rowHorizontalPadding, rowVerticalPadding);
    rows_->addWidget(row);
    return row;
}

QWidget *row(const QString &title, QWidget *control, const QString &captionText)
{
    auto *widget = new QWidget;
    auto *line = new QHBoxLayout(widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(12);
    auto *titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(label(title));
    if (!captionText.isEmpty())
        titles->addWidget(caption(captionText));
    line->addLayout(titles, 1);
    if (control)
        line->addWidget(control, 0, Qt::AlignVCenter);
    return widget;
}

QWidget *rowOf(std::initializer_list<QWidget *> widgets, int spacing)
{
    auto *widget = new QWidget;
    auto *line = new QHBoxLayout(widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing);
    for (QWidget *child : widgets) {
        if (child)
            line->addWidget(child);
        else
            line->addStretch(1);
    }
    return widget;
}

Switch::Switch(const QString &accessibleName, QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAccessibleName(accessibleName);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

QSize Switch::sizeHint() const
{
    return {34, 20};
}

void Switch::paintEvent(QPaintEvent *)
{
    const Appearance appearance = Colors::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal radius = track.height() / 2;
    QColor fill = isChecked() ? ViewStyle::accent(appearance) : ViewStyle::faded(ViewStyle::primary(appearance), 0.18);
    if (!isEnabled())
        fill = ViewStyle::faded(fill, 0.45);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, radius, radius);

    const qreal knob = track.height() - 4;
    const qreal x = isChecked() ? track.right() - 2 - knob : track.left() + 2;
    painter.setBrush(isEnabled() ? QColor(Qt::white) : QColor(245, 245, 245));
    painter.drawEllipse(QRectF(x, track.top() + 2, knob, knob));
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ViewStyle::faded(ViewStyle::accent(appearance), 0.5), 2));
        painter.drawRoundedRect(track.adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
    }
}

Chip::Chip(const QString &title, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(title);
    setAccessibleName(title);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

void Chip::setOn(bool on)
{
    if (on == on_)
        return;
    on_ = on;
    // Screen readers hear the state as a checked button.
    setCheckable(true);
    setChecked(on);
    setCheckable(false);
    updateGeometry();
    update();
}

QFont Chip::font() const
{
    return ViewStyle::font(12, on_ ? QFont::Medium : QFont::Normal);
}

QSize Chip::sizeHint() const
{
    // Sized for the wider, medium weight so that turning on does not shift the row.
    const QFontMetrics metrics(ViewStyle::font(12, QFont::Medium));
    return {metrics.horizontalAdvance(text()) + 2 * 10 + 2, metrics.height() + 2 * 3 + 2};
}

void Chip::paintEvent(QPaintEvent *)
{
    const Appearance appearance = Colors::current();
    const QColor accent = ViewStyle::accent(appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF capsule = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = capsule.height() / 2;
    painter.setBrush(on_ ? ViewStyle::faded(accent, 0.13) : QColor(Qt::transparent));
    painter.setPen(QPen(on_ ? ViewStyle::faded(accent, 0.4) : ViewStyle::faded(ViewStyle::primary(appearance), 0.15), 1));
    painter.drawRoundedRect(capsule, radius, radius);
    painter.setFont(font());
    painter.setPen(on_ ? accent : ViewStyle::secondary(appearance));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ViewStyle::faded(accent, 0.6), 1.5));
        painter.drawRoundedRect(capsule, radius, radius);
    }
}

} // namespace orvel::SettingsForm
