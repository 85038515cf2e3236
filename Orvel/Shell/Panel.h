#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

namespace orvel {

// The panel that opens from the status item: a frameless window under the item that closes when
// it loses focus or on Escape. Where the desktop has no status items it is an ordinary window.
// Its content brings its own keyboard shortcuts.
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
    QWidget *content() const { return content_; }

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

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyMode();
    void dismiss();

    void ensureContent();

    QWidget *content_ = nullptr;
    std::function<QWidget *()> makeContent_;
    Mode mode_ = Mode::popup;
    bool placedOnce_ = false;
    bool dismissing_ = false;
    // A click on the status item first takes focus from the panel, which closes it; the click
    // itself must then not open it again.
    QElapsedTimer closedByFocusLoss_;
};

} // namespace orvel
