#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

class QLabel;

namespace orvel {

// The panel that opens from the status item: a frameless window under the item that closes on a
// click outside it (under X11 a real popup, which grabs the pointer, so that a click on the bare
// desktop closes it too), when it loses focus, or on Escape. On Wayland, where a program cannot
// place its windows, it is a normal window where the compositor puts it. Where the desktop has no
// status items it is an ordinary window. Its content brings its own keyboard shortcuts.
class Panel : public QWidget {
    Q_OBJECT

public:
    enum class Mode { popup, window };

    explicit Panel(QWidget *parent = nullptr);

    // Takes ownership; replaces any previous content.
    void setContent(QWidget *content);
    // The content is made by `make` when the panel first opens, so that starting costs nothing
    // for a panel that may never be opened.
    void setContentFactory(std::function<QWidget *()> make);
    // A line above the content while the panel is a window (how to bring the item into a panel
    // that shows none); empty hides it.
    void setNotice(const QString &text);
    QString notice() const;

    Mode mode() const { return mode_; }
    void setMode(Mode mode);

    // Opens under `anchor` (the status item, or the pointer), or closes when open.
    void toggle(const QRect &anchor);
    void showAt(const QRect &anchor);
    // Brings the panel forward: where it is when open, else under `anchor`.
    void present(const QRect &anchor);

    // Top-left corner for a panel of `size` under (or, near the bottom of the screen, above)
    // `anchor`, kept inside `available`.
    static QPoint placement(const QSize &size, const QRect &anchor, const QRect &available);
    // The window flags of the popup mode on a Qt platform ("xcb", "wayland", "offscreen", …).
    static Qt::WindowFlags popupFlags(const QString &platform);

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyMode();
    void dismiss();

    void ensureContent();

    QWidget *content_ = nullptr;
    QLabel *notice_ = nullptr;
    std::function<QWidget *()> makeContent_;
    Mode mode_ = Mode::popup;
    bool placedOnce_ = false;
    bool dismissing_ = false;
    // A click on the status item first takes focus from the panel, which closes it; the click
    // itself must then not open it again.
    QElapsedTimer closedByFocusLoss_;
};

} // namespace orvel
