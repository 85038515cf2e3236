#pragma once

#include <QWidget>

class QLabel;

namespace orvel {

// The "Hakkında" tab: the icon, the name, the version and where the times come from.
class AboutView : public QWidget {
    Q_OBJECT

public:
    explicit AboutView(QWidget *parent = nullptr);

    // "Sürüm " and the application's version, "1.0" when it has none.
    static QString versionText(const QString &version);


private:
    QLabel *version_ = nullptr;
};

} // namespace orvel
