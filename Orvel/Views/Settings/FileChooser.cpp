#include "FileChooser.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace orvel::FileChooser {

namespace {

struct NextAnswer {
    bool set = false;
    std::optional<QString> path;
};

NextAnswer &nextAnswer()
{
    static NextAnswer answer;
    return answer;
}

} // namespace

std::optional<QString> audioFile(QWidget *parent)
{
    if (nextAnswer().set)
        return std::exchange(nextAnswer(), {}).path;

    QFileDialog dialog(parent, QStringLiteral("Vakit girdiğinde çalınacak ses dosyasını seçin"),
                       QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setLabelText(QFileDialog::Accept, QStringLiteral("Seç"));
    dialog.setMimeTypeFilters({QStringLiteral("audio/mpeg"), QStringLiteral("audio/mp4"), QStringLiteral("audio/x-wav"),
                               QStringLiteral("audio/x-aiff"), QStringLiteral("audio/ogg"), QStringLiteral("audio/flac")});
    // One filter for every sound first, so that no type has to be picked before the file.
    QStringList filters = dialog.nameFilters();
    filters.prepend(QStringLiteral("Ses dosyaları (*.mp3 *.m4a *.aac *.wav *.aif *.aiff *.ogg *.oga *.opus *.flac)"));
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.first());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

void setNextAnswer(std::optional<QString> answer)
{
    nextAnswer() = {true, std::move(answer)};
}

} // namespace orvel::FileChooser
