#include "ImsakiyeModePicker.h"

#include "ViewStyle.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal labelPoints = 12;
constexpr qreal trackRadius = 7;
constexpr qreal thumbInset = 2;
constexpr qreal thumbRadius = 5.5;
constexpr int segmentCount = static_cast<int>(ImsakiyeMode::allCases.size());

QColor trackColor(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(255, 255, 255, 26) : QColor(0, 0, 0, 18);
}

QColor thumbColor(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(255, 255, 255, 56) : QColor(255, 255, 255);
}

QColor dividerColor(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(255, 255, 255, 30) : QColor(0, 0, 0, 30);
}

} // namespace

ImsakiyeModePicker::ImsakiyeModePicker(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(pickerWidth, pickerHeight);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(QStringLiteral("Görünüm"));
}

void ImsakiyeModePicker::setMode(ImsakiyeMode mode)
{
    if (mode == mode_)
        return;
    mode_ = mode;
    setAccessibleDescription(ViewStyle::text(mode.label()));
    update();
}

void ImsakiyeModePicker::setAppearance(Appearance appearance)
{
    if (appearance == appearance_)
        return;
    appearance_ = appearance;
    update();
}

QRect ImsakiyeModePicker::segmentRect(ImsakiyeMode mode) const
{
    const int index = static_cast<int>(mode);
    const int left = width() * index / segmentCount;
    const int right = width() * (index + 1) / segmentCount;
    return {left, 0, right - left, height()};
}

QSize ImsakiyeModePicker::sizeHint() const
{
    return {pickerWidth, pickerHeight};
}

int ImsakiyeModePicker::segmentAt(const QPoint &position) const
{
    for (const ImsakiyeMode::Value mode : ImsakiyeMode::allCases) {
        if (segmentRect(mode).contains(position))
            return static_cast<int>(mode);
    }
    return -1;
}

void ImsakiyeModePicker::choose(ImsakiyeMode mode)
{
    if (mode == mode_)
        return;
    setMode(mode);
    emit modeChosen(mode);
}

bool ImsakiyeModePicker::event(QEvent *event)
{
    // While it has focus, the arrows move between segments rather than page the timetable.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Left || key == Qt::Key_Right) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::Leave) {
        hovered_ = -1;
        update();
    }
    return QWidget::event(event);
}

void ImsakiyeModePicker::mouseMoveEvent(QMouseEvent *event)
{
    const int segment = segmentAt(event->position().toPoint());
    if (segment != hovered_) {
        hovered_ = segment;
        update();
    }
}

void ImsakiyeModePicker::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int segment = segmentAt(event->position().toPoint());
    if (segment >= 0)
        choose(ImsakiyeMode::allCases[static_cast<size_t>(segment)]);
}

void ImsakiyeModePicker::keyPressEvent(QKeyEvent *event)
{
    const int index = static_cast<int>(mode_);
    if (event->key() == Qt::Key_Left && index > 0)
        choose(ImsakiyeMode::allCases[static_cast<size_t>(index - 1)]);
    else if (event->key() == Qt::Key_Right && index + 1 < segmentCount)
        choose(ImsakiyeMode::allCases[static_cast<size_t>(index + 1)]);
    else
        QWidget::keyPressEvent(event);
}

void ImsakiyeModePicker::focusInEvent(QFocusEvent *event)
{
    keyboardFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void ImsakiyeModePicker::focusOutEvent(QFocusEvent *event)
{
    keyboardFocus_ = false;
    QWidget::focusOutEvent(event);
    update();
}

void ImsakiyeModePicker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(trackColor(appearance_));
    painter.drawRoundedRect(track, trackRadius, trackRadius);

    const int chosen = static_cast<int>(mode_);
    // Hairlines between segments that are neither chosen nor beside the chosen one.
    painter.setPen(QPen(dividerColor(appearance_), 1));
    for (int i = 1; i < segmentCount; ++i) {
        if (i == chosen || i == chosen + 1)
            continue;
        const qreal x = segmentRect(ImsakiyeMode::allCases[static_cast<size_t>(i)]).left() + 0.5;
        painter.drawLine(QPointF(x, 6), QPointF(x, height() - 6));
    }

    const QRectF thumb = QRectF(segmentRect(mode_)).adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
    if (appearance_ == Appearance::light) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 22));
        painter.drawRoundedRect(thumb.translated(0, 0.75), thumbRadius, thumbRadius);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(thumbColor(appearance_));
    painter.drawRoundedRect(thumb, thumbRadius, thumbRadius);

    if (hovered_ >= 0 && hovered_ != chosen) {
        const QRectF area = QRectF(segmentRect(ImsakiyeMode::allCases[static_cast<size_t>(hovered_)]))
                                .adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
        painter.setBrush(ViewStyle::faded(ViewStyle::primary(appearance_), 0.06));
        painter.drawRoundedRect(area, thumbRadius, thumbRadius);
    }

    for (const ImsakiyeMode::Value value : ImsakiyeMode::allCases) {
        const ImsakiyeMode mode(value);
        const QFont font = ViewStyle::font(labelPoints, mode == mode_ ? QFont::DemiBold : QFont::Normal);
        painter.setFont(font);
        painter.setPen(mode == mode_ ? ViewStyle::primary(appearance_) : ViewStyle::secondary(appearance_));
        painter.drawText(segmentRect(mode), Qt::AlignCenter, ViewStyle::text(mode.label()));
    }

    if (hasFocus() && keyboardFocus_) {
        QColor ring = ViewStyle::accent(appearance_);
        ring.setAlphaF(0.7f);
        painter.setPen(QPen(ring, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track, trackRadius, trackRadius);
    }
}

} // namespace orvel
