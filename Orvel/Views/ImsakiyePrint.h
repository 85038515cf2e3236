#pragma once

#include "Imsakiye.h"
#include "ImsakiyeMode.h"
#include "TimesSource.h"

#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QPainter;
class QPrinter;
class QWidget;

namespace orvel {

// What goes on paper: the page shown in the window.
struct ImsakiyeSheet {
    ImsakiyeMode mode = ImsakiyeMode::month;
    QString title;
    QString place; // "İstanbul, Üsküdar · Diyanet İşleri Başkanlığı"
    std::vector<Imsakiye::Row> rows;
    TimesSource source = TimesSource::online;
    QStringList notices;

    bool operator==(const ImsakiyeSheet &) const = default;
};

// The timetable on one A4 portrait page, printed or saved as a PDF: the title, the place and
// method, the table with the window's notes and highlighting, and a footer. A whole month or
// Ramadan fits; rows get shorter as there are more of them.
namespace ImsakiyePrint {

// How the user is asked where the PDF goes and which printer prints. The window's own open the
// desktop's dialogs; tests answer without any.
struct Dialogs {
    // The chosen file, or an empty string when the user cancelled.
    std::function<QString(QWidget *parent, const QString &suggestedPath)> pdfPath;
    // False when the user cancelled; the printer is set up as chosen otherwise.
    std::function<bool(QPrinter &printer, QWidget *parent)> choosePrinter;
    // The chosen calendar file, or an empty string when the user cancelled.
    std::function<QString(QWidget *parent, const QString &suggestedPath)> calendarPath;

    static Dialogs system();
};

// Draws the sheet on the painter's device inside `area` (device units), `unit` device units to
// the point.
void paint(QPainter &painter, const QRectF &area, qreal unit, const ImsakiyeSheet &sheet);
// False when the file could not be written.
bool writePdf(const ImsakiyeSheet &sheet, const QString &path);
// False when the printer could not start.
bool print(const ImsakiyeSheet &sheet, QPrinter &printer);
// "İmsakiye Mart 2026.pdf" in the documents folder.
QString suggestedPath(const ImsakiyeSheet &sheet);
// The same name for the calendar file: "İmsakiye Mart 2026.ics".
QString suggestedCalendarPath(const ImsakiyeSheet &sheet);

} // namespace ImsakiyePrint

} // namespace orvel
