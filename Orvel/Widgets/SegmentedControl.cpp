#include "SegmentedControl.h"

#include "ViewStyle.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace orvel {

namespace {

constexpr qreal labelPoints = 12;
constexpr qreal trackRadius = 7;
constexpr qreal thumbInset = 2;
constexpr qreal thumbRadius = 5.5;
constexpr int segmentPadding = 24;

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

SegmentedControl::SegmentedControl(const QStringList &titles, const QString &accessibleName, QWidget *parent)
    : QWidget(parent)
    , titles_(titles)
{
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SegmentedControl::setCurrent(int index)
{
    if (index == current_)
        return;
    current_ = index;
    setAccessibleDescription(index >= 0 && index < count() ? titles_.at(index) : QString());
    update();
}

void SegmentedControl::setAppearance(Appearance appearance)
{
    if (appearance == appearance_)
        return;
    appearance_ = appearance;
    update();
}

QRect SegmentedControl::segmentRect(int index) const
{
    const int left = width() * index / count();
    const int right = width() * (index + 1) / count();
    return {left, 0, right - left, height()};
}

QSize SegmentedControl::sizeHint() const
{
    // Equal segments, each wide enough for the longest title in the chosen weight.
    const QFontMetrics metrics(ViewStyle::font(labelPoints, QFont::DemiBold));
    int widest = 0;
    for (const QString &title : titles_)
        widest = std::max(widest, metrics.horizontalAdvance(title));
    return {count() * (widest + segmentPadding), defaultHeight};
}

int SegmentedControl::segmentAt(const QPoint &position) const
{
    for (int index = 0; index < count(); ++index) {
        if (segmentRect(index).contains(position))
            return index;
    }
    return -1;
}

void SegmentedControl::choose(int index)
{
    if (index == current_)
        return;
    setCurrent(index);
    emit chosen(index);
}

bool SegmentedControl::event(QEvent *event)
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

void SegmentedControl::mouseMoveEvent(QMouseEvent *event)
{
    const int segment = segmentAt(event->position().toPoint());
    if (segment != hovered_) {
        hovered_ = segment;
        update();
    }
}

void SegmentedControl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int segment = segmentAt(event->position().toPoint());
    if (segment >= 0)
        choose(segment);
}

void SegmentedControl::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Left && current_ > 0)
        choose(current_ - 1);
    else if (event->key() == Qt::Key_Right && current_ + 1 < count())
        choose(current_ + 1);
    else
        QWidget::keyPressEvent(event);
}

void SegmentedControl::focusInEvent(QFocusEvent *event)
{
    keyboardFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void SegmentedControl::focusOutEvent(QFocusEvent *event)
{
    keyboardFocus_ = false;
    QWidget::focusOutEvent(event);
    update();
}

void SegmentedControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(trackColor(appearance_));
    painter.drawRoundedRect(track, trackRadius, trackRadius);

    const int chosen = current_;
    // Hairlines between segments that are neither chosen nor beside the chosen one.
    painter.setPen(QPen(dividerColor(appearance_), 1));
    for (int i = 1; i < count(); ++i) {
        if (i == chosen || i == chosen + 1)
            continue;
        const qreal x = segmentRect(i).left() + 0.5;
        painter.drawLine(QPointF(x, 6), QPointF(x, height() - 6));
    }

    const QRectF thumb = QRectF(segmentRect(chosen)).adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
    if (chosen >= 0 && appearance_ == Appearance::light) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 22));
        painter.drawRoundedRect(thumb.translated(0, 0.75), thumbRadius, thumbRadius);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(chosen >= 0 ? thumbColor(appearance_) : QColor(Qt::transparent));
    painter.drawRoundedRect(thumb, thumbRadius, thumbRadius);

    if (hovered_ >= 0 && hovered_ != chosen) {
        const QRectF area = QRectF(segmentRect(hovered_))
                                .adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
        painter.setBrush(ViewStyle::faded(ViewStyle::primary(appearance_), 0.06));
        painter.drawRoundedRect(area, thumbRadius, thumbRadius);
    }

    for (int index = 0; index < count(); ++index) {
        painter.setFont(ViewStyle::font(labelPoints, index == chosen ? QFont::DemiBold : QFont::Normal));
        painter.setPen(index == chosen ? ViewStyle::primary(appearance_) : ViewStyle::secondary(appearance_));
        painter.drawText(segmentRect(index), Qt::AlignCenter, titles_.at(index));
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
