#include "Panel.h"

#include "ViewStyle.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

constexpr int anchorGap = 4;
constexpr int reopenGuardMs = 300;

bool placedByCompositor()
{
    return QGuiApplication::platformName() == QLatin1String("wayland");
}

QRect availableGeometry(const QRect &anchor)
{
    QScreen *screen = QGuiApplication::screenAt(anchor.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

} // namespace

Panel::Panel(QWidget *parent)
    : QWidget(parent)
{
    setWindowTitle(QStringLiteral("Orvel"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setAutoFillBackground(true);

    applyMode();
}

void Panel::setNotice(const QString &text)
{
    if (!notice_) {
        notice_ = new QLabel(this);
        notice_->setObjectName(QStringLiteral("panelNotice"));
        notice_->setWordWrap(true);
        notice_->setFont(ViewStyle::font(12));
        notice_->setTextInteractionFlags(Qt::TextSelectableByMouse);
        notice_->setContentsMargins(12, 10, 12, 10);
        notice_->setMaximumWidth(332);
        static_cast<QVBoxLayout *>(layout())->insertWidget(0, notice_);
    }
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty() && mode_ == Mode::window);
}

QString Panel::notice() const
{
    return notice_ ? notice_->text() : QString();
}

void Panel::setContent(QWidget *content)
{
    if (content_ == content)
        return;
    delete content_;
    content_ = content;
    if (content_)
        layout()->addWidget(content_);
}

void Panel::setContentFactory(std::function<QWidget *()> make)
{
    setContent(nullptr);
    makeContent_ = std::move(make);
}

void Panel::ensureContent()
{
    if (!content_ && makeContent_)
        setContent(makeContent_());
}

void Panel::setMode(Mode mode)
{
    if (mode_ == mode)
        return;
    mode_ = mode;
    applyMode();
}

void Panel::applyMode()
{
    const bool wasVisible = isVisible();
    if (mode_ == Mode::popup)
        setWindowFlags(popupFlags(QGuiApplication::platformName()));
    else
        setWindowFlags(Qt::Window);
    layout()->setContentsMargins(mode_ == Mode::popup ? QMargins(1, 1, 1, 1) : QMargins());
    if (notice_)
        notice_->setVisible(!notice_->text().isEmpty() && mode_ == Mode::window);
    if (wasVisible)
        show();
}

void Panel::toggle(const QRect &anchor)
{
    if (isVisible()) {
        dismiss();
        return;
    }
    if (closedByFocusLoss_.isValid() && closedByFocusLoss_.elapsed() < reopenGuardMs)
        return;
    showAt(anchor);
}

void Panel::showAt(const QRect &anchor)
{
    ensureContent();
    adjustSize();
    if (mode_ == Mode::popup || !placedOnce_) {
        const QRect available = availableGeometry(anchor);
        if (mode_ == Mode::popup && !placedByCompositor())
            move(placement(size(), anchor, available));
        else
            move(available.center() - QPoint(width() / 2, height() / 2));
        placedOnce_ = true;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void Panel::present(const QRect &anchor)
{
    if (!isVisible()) {
        showAt(anchor);
        return;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

Qt::WindowFlags Panel::popupFlags(const QString &platform)
{
    if (platform == QLatin1String("wayland"))
        return Qt::Window;
    if (platform == QLatin1String("xcb"))
        return Qt::Popup | Qt::FramelessWindowHint;
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
}

void Panel::hideEvent(QHideEvent *event)
{
    // A popup that Qt closed for a click outside it: that click may have been on the status item,
    // whose activation must then not open the panel again.
    if (!dismissing_ && mode_ == Mode::popup)
        closedByFocusLoss_.start();
    QWidget::hideEvent(event);
}

void Panel::dismiss()
{
    dismissing_ = true;
    hide();
    dismissing_ = false;
}

QPoint Panel::placement(const QSize &size, const QRect &anchor, const QRect &available)
{
    const bool below = anchor.center().y() < available.center().y();
    int x = anchor.center().x() - size.width() / 2;
    int y = below ? anchor.bottom() + 1 + anchorGap : anchor.top() - anchorGap - size.height();
    x = std::clamp(x, available.left(), std::max(available.left(), available.right() + 1 - size.width()));
    y = std::clamp(y, available.top(), std::max(available.top(), available.bottom() + 1 - size.height()));
    return {x, y};
}

bool Panel::event(QEvent *event)
{
    // Hiding the active window deactivates it too; only a loss of focus from outside counts.
    if (event->type() == QEvent::WindowDeactivate && mode_ == Mode::popup && isVisible() && !dismissing_) {
        dismiss();
        closedByFocusLoss_.start();
    }
    return QWidget::event(event);
}

void Panel::keyPressEvent(QKeyEvent *event)
{
    if (mode_ == Mode::popup && event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        dismiss();
        return;
    }
    QWidget::keyPressEvent(event);
}

void Panel::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (mode_ != Mode::popup)
        return;
    // Without a frame the panel needs an edge of its own against windows of the same colour.
    QPainter painter(this);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.18);
    painter.setPen(edge);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace orvel
