#include "ImsakiyePrint.h"

#include "ViewStyle.h"

#include <QDir>
#include <QFileDialog>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

#include <algorithm>

namespace orvel::ImsakiyePrint {

namespace {

// Page geometry, in points.
const QMarginsF margins(40, 36, 40, 30);
constexpr int pdfResolution = 1200;
constexpr qreal kickerPoints = 8.5;
constexpr qreal titlePoints = 18;
constexpr qreal placePoints = 10.5;
constexpr qreal headingPoints = 8.5;
constexpr qreal rowPoints = 10;
constexpr qreal notePoints = 7;
constexpr qreal footerPoints = 7.5;
constexpr qreal titleGap = 4;
constexpr qreal tableGap = 16;
constexpr qreal headingGap = 5;
constexpr qreal footerGap = 10;
constexpr qreal maxRowHeight = 24;
constexpr qreal cellPadding = 6;
constexpr qreal dateWidth = 90;
constexpr qreal hijriWidth = 96;
constexpr qreal cornerRadius = 3;
constexpr qreal todayFill = 0.13;
constexpr qreal highlightBand = 0.06;
constexpr Appearance paper = Appearance::light;

const QColor stripe(0, 0, 0, 10);
const QColor hairline(0, 0, 0, 60);

QString fromStd(const std::string &text)
{
    return QString::fromStdString(text);
}

// A font at a size in real points: the device turns points into its own units.
QFont fontAt(const QString &family, qreal points, QFont::Weight weight = QFont::Normal)
{
    QFont font(family);
    font.setPointSizeF(points);
    font.setWeight(weight);
    return font;
}

struct Fonts {
    QString text = ViewStyle::font(10).family();
    QString digits = ViewStyle::digitsFont(10).family();
};

// Everything below works in device units; `u` turns points into them.
class Page {
public:
    Page(QPainter &painter, const QRectF &area, qreal unit)
        : painter_(painter)
        , area_(area)
        , u_(unit)
    {
    }

    qreal u(qreal points) const { return points * u_; }

    QFontMetricsF metrics(const QFont &font) const { return QFontMetricsF(font, painter_.device()); }

    qreal lineHeight(const QFont &font) const
    {
        const QFontMetricsF m = metrics(font);
        return m.ascent() + m.descent();
    }

    void text(const QPointF &baseline, const QString &text, const QFont &font, const QColor &color)
    {
        painter_.setFont(font);
        painter_.setPen(color);
        painter_.drawText(baseline, text);
    }

    void centred(qreal centreX, qreal baseline, const QString &text, const QFont &font, const QColor &color)
    {
        this->text(QPointF(centreX - metrics(font).horizontalAdvance(text) / 2, baseline), text, font, color);
    }

    void fill(const QRectF &rect, const QColor &color, qreal radius = 0)
    {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(color);
        if (radius > 0)
            painter_.drawRoundedRect(rect, radius, radius);
        else
            painter_.drawRect(rect);
    }

    void rule(qreal y, const QColor &color)
    {
        fill(QRectF(area_.left(), y, area_.width(), u(0.5)), color);
    }

    const QRectF &area() const { return area_; }

private:
    QPainter &painter_;
    QRectF area_;
    qreal u_;
};

struct Columns {
    qreal date = 0;
    qreal hijri = 0;
    std::array<QRectF, 6> times;
};

Columns columns(const Page &page)
{
    const QRectF area = page.area();
    Columns columns;
    columns.date = area.left() + page.u(cellPadding);
    columns.hijri = columns.date + page.u(dateWidth);
    const qreal timesLeft = columns.hijri + page.u(hijriWidth);
    const qreal width = (area.right() - page.u(cellPadding) - timesLeft) / 6;
    for (size_t i = 0; i < columns.times.size(); ++i)
        columns.times[i] = QRectF(timesLeft + static_cast<qreal>(i) * width, 0, width, 0);
    return columns;
}

// Baselines that centre a font's capitals on a line at centreY.
qreal baseline(const Page &page, const QFont &font, qreal centreY)
{
    return centreY + page.metrics(font).capHeight() / 2;
}

qreal drawHeading(Page &page, const Fonts &fonts, const ImsakiyeSheet &sheet, qreal top)
{
    const QFont kicker = fontAt(fonts.text, kickerPoints, QFont::DemiBold);
    const QFont title = fontAt(fonts.digits, titlePoints, QFont::DemiBold);
    const QFont place = fontAt(fonts.text, placePoints);
    qreal y = top + page.metrics(kicker).ascent();
    page.text(QPointF(page.area().left(), y), QStringLiteral("İMSAKİYE"), kicker, ViewStyle::accent(paper));
    y += page.metrics(kicker).descent() + page.u(titleGap) + page.metrics(title).ascent();
    page.text(QPointF(page.area().left(), y), sheet.title, title, ViewStyle::primary(paper));
    y += page.metrics(title).descent() + page.u(titleGap) + page.metrics(place).ascent();
    page.text(QPointF(page.area().left(), y), sheet.place, place, ViewStyle::secondary(paper));
    return y + page.metrics(place).descent();
}

qreal drawTableHeading(Page &page, const Fonts &fonts, const Columns &columns, ImsakiyeMode mode, qreal top)
{
    const QFont font = fontAt(fonts.text, headingPoints, QFont::DemiBold);
    const QColor secondary = ViewStyle::secondary(paper);
    const qreal line = page.lineHeight(font);
    const qreal first = top + page.metrics(font).ascent();
    page.text(QPointF(columns.date, first), QStringLiteral("Tarih"), font, secondary);
    page.text(QPointF(columns.hijri, first), ViewStyle::text(Imsakiye::hijriHeading(mode)), font, secondary);
    bool twoLines = false;
    for (const Prayer::Value prayer : Prayer::all) {
        const qreal centre = columns.times[static_cast<size_t>(prayer)].center().x();
        page.centred(centre, first, ViewStyle::text(Prayer(prayer).name()), font, secondary);
        if (const auto below = Imsakiye::secondHeading(mode, prayer)) {
            page.centred(centre, first + line, ViewStyle::text(*below), font, ViewStyle::accent(paper));
            twoLines = true;
        }
    }
    const qreal bottom = top + line * (twoLines ? 2 : 1) + page.u(headingGap);
    page.rule(bottom, hairline);
    return bottom + page.u(0.5);
}

void drawRow(Page &page, const Fonts &fonts, const Columns &columns, ImsakiyeMode mode, const Imsakiye::Row &row,
             const QRectF &band, bool striped)
{
    const QColor accent = ViewStyle::accent(paper);
    const QColor primary = ViewStyle::primary(paper);
    if (row.isToday)
        page.fill(band, ViewStyle::faded(accent, todayFill), page.u(cornerRadius));
    else if (striped)
        page.fill(band, stripe);

    const qreal centreY = band.center().y();
    const QFont date = fontAt(fonts.digits, rowPoints, row.isToday ? QFont::DemiBold : QFont::Normal);
    if (row.note) {
        const QFont note = fontAt(fonts.text, notePoints, QFont::DemiBold);
        const qreal block = page.lineHeight(date) + page.lineHeight(note);
        const qreal dateBaseline = centreY - block / 2 + page.metrics(date).ascent();
        page.text(QPointF(columns.date, dateBaseline), fromStd(row.date), date, primary);
        page.text(QPointF(columns.date, dateBaseline + page.metrics(date).descent() + page.metrics(note).ascent()),
                  fromStd(*row.note), note, accent);
    } else {
        page.text(QPointF(columns.date, baseline(page, date, centreY)), fromStd(row.date), date, primary);
    }
    const QFont hijri = fontAt(fonts.digits, rowPoints);
    page.text(QPointF(columns.hijri, baseline(page, hijri, centreY)), fromStd(row.hijri), hijri,
              ViewStyle::secondary(paper));

    for (const Prayer::Value prayer : Prayer::all) {
        const bool highlighted = Imsakiye::isHighlighted(mode, prayer);
        const QFont font = fontAt(fonts.digits, rowPoints, highlighted || row.isToday ? QFont::DemiBold : QFont::Normal);
        page.centred(columns.times[static_cast<size_t>(prayer)].center().x(), baseline(page, font, centreY),
                     fromStd(row.times[static_cast<size_t>(prayer)]), font, highlighted ? accent : primary);
    }
}

void drawFooter(Page &page, const Fonts &fonts, const ImsakiyeSheet &sheet)
{
    const QFont font = fontAt(fonts.text, footerPoints);
    const QColor color = ViewStyle::secondary(paper);
    const qreal baseline = page.area().bottom() - page.metrics(font).descent();
    QString notice = sheet.notices.join(QStringLiteral(" · "));
    if (const std::optional<std::string_view> note = Imsakiye::sourceNote(sheet.source))
        notice = ViewStyle::text(*note).mid(2) + QStringLiteral(" · ") + notice;
    page.rule(baseline - page.metrics(font).ascent() - page.u(footerGap / 2), hairline);
    page.text(QPointF(page.area().left(), baseline), notice, font, color);
    const QString signature = QStringLiteral("Orvel");
    page.text(QPointF(page.area().right() - page.metrics(font).horizontalAdvance(signature), baseline), signature, font,
              color);
}

QPageLayout a4Layout()
{
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, margins, QPageLayout::Point);
}

QString askForPdfPath(QWidget *parent, const QString &suggested)
{
    return QFileDialog::getSaveFileName(parent, QStringLiteral("PDF olarak kaydet"), suggested,
                                        QStringLiteral("PDF belgesi (*.pdf)"));
}

QString askForCalendarPath(QWidget *parent, const QString &suggested)
{
    return QFileDialog::getSaveFileName(parent, QStringLiteral("Takvime aktar"), suggested,
                                        QStringLiteral("iCalendar dosyası (*.ics)"));
}

bool askForPrinter(QPrinter &printer, QWidget *parent)
{
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Yazdır"));
    return dialog.exec() == QDialog::Accepted;
}

} // namespace

Dialogs Dialogs::system()
{
    return {askForPdfPath, askForPrinter, askForCalendarPath};
}

void paint(QPainter &painter, const QRectF &area, qreal unit, const ImsakiyeSheet &sheet)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    Page page(painter, area, unit);
    const Fonts fonts;
    const Columns columns = ImsakiyePrint::columns(page);

    const qreal headingBottom = drawHeading(page, fonts, sheet, area.top());
    const qreal tableTop = drawTableHeading(page, fonts, columns, sheet.mode, headingBottom + page.u(tableGap));
    const QFont footer = fontAt(fonts.text, footerPoints);
    const qreal tableBottom = area.bottom() - page.lineHeight(footer) - page.u(footerGap);

    if (!sheet.rows.empty()) {
        const qreal rowHeight = std::min(page.u(maxRowHeight), (tableBottom - tableTop) / static_cast<qreal>(sheet.rows.size()));
        // Sahur and iftar columns carry a faint band down the whole table.
        for (const Prayer::Value prayer : Prayer::all) {
            if (!Imsakiye::isHighlighted(sheet.mode, prayer))
                continue;
            const QRectF &column = columns.times[static_cast<size_t>(prayer)];
            page.fill(QRectF(column.left(), tableTop, column.width(), rowHeight * static_cast<qreal>(sheet.rows.size())),
                      ViewStyle::faded(ViewStyle::accent(paper), highlightBand));
        }
        for (size_t i = 0; i < sheet.rows.size(); ++i) {
            const QRectF band(area.left(), tableTop + static_cast<qreal>(i) * rowHeight, area.width(), rowHeight);
            drawRow(page, fonts, columns, sheet.mode, sheet.rows[i], band, i % 2 == 1);
        }
    }
    drawFooter(page, fonts, sheet);
    painter.restore();
}

bool writePdf(const ImsakiyeSheet &sheet, const QString &path)
{
    QPdfWriter writer(path);
    writer.setResolution(pdfResolution);
    writer.setPageLayout(a4Layout());
    writer.setTitle(QStringLiteral("İmsakiye ") + sheet.title);
    writer.setCreator(QStringLiteral("Orvel"));
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const QRect area = writer.pageLayout().paintRectPixels(writer.resolution());
    paint(painter, QRectF(QPointF(0, 0), area.size()), writer.resolution() / 72.0, sheet);
    return painter.end();
}

bool print(const ImsakiyeSheet &sheet, QPrinter &printer)
{
    printer.setPageLayout(a4Layout());
    printer.setDocName(QStringLiteral("İmsakiye ") + sheet.title);
    printer.setCreator(QStringLiteral("Orvel"));
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QRect area = printer.pageLayout().paintRectPixels(printer.resolution());
    paint(painter, QRectF(QPointF(0, 0), area.size()), printer.resolution() / 72.0, sheet);
    return painter.end();
}

QString suggestedPath(const ImsakiyeSheet &sheet)
{
    QString name = QStringLiteral("İmsakiye ") + sheet.title;
    // File names keep to one line and no folder separators.
    name.replace(u'/', u'-');
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(folder.isEmpty() ? QDir::homePath() : folder).filePath(name + QStringLiteral(".pdf"));
}

QString suggestedCalendarPath(const ImsakiyeSheet &sheet)
{
    QString path = suggestedPath(sheet);
    path.chop(static_cast<qsizetype>(std::string_view(".pdf").size()));
    return path + QStringLiteral(".ics");
}

} // namespace orvel::ImsakiyePrint
