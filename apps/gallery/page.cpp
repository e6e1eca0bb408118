#include "page.h"

#include "palettes.h"

#include <QEventLoop>
#include <QGridLayout>
#include <QLabel>
#include <QMetaProperty>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

constexpr int Margin = 12;
constexpr int Gap = 10;
constexpr int WideWidget = 300; // pixels; from there on its pictures stand in two lines
constexpr int SheetColumns = 3;
constexpr int LookMs = 250; // much longer than the step of an animation
constexpr int PatienceLooks = 40;

/// One picture of a variant, and where it stands in the rows of a narrow and of a wide widget.
struct Cell {
    const char *name;
    double factor;
    bool enabled;
    QPoint inOneLine;
    QPoint inTwoLines;
};
const Cell Cells[] = {
    {"small", 0.5, true, {1, 0}, {1, 0}},
    {"normal", 1.0, true, {2, 0}, {1, 1}},
    {"large", 1.25, true, {3, 0}, {2, 0}},
    {"disabled", 1.0, false, {4, 0}, {2, 1}},
};

/// A widget on its page, and how an error names it.
struct Exhibit {
    QWidget *widget = nullptr;
    QString name;
};

/// One palette's share of a page.
struct Board {
    QWidget *widget = nullptr;
    QGridLayout *grid = nullptr;
};

Board addBoard(QWidget &page, const GalleryPalette &palette)
{
    Board board;
    board.widget = new QWidget(&page);
    board.widget->setPalette(palette.palette);
    board.widget->setAutoFillBackground(true);
    board.grid = new QGridLayout(board.widget);
    board.grid->setContentsMargins(Margin, Margin, Margin, Margin);
    board.grid->setSpacing(Gap);
    page.layout()->addWidget(board.widget);
    return board;
}

void addText(const Board &board, const QString &text, int row, int column)
{
    board.grid->addWidget(new QLabel(text, board.widget), row, column, Qt::AlignCenter);
}

QSize sizeOf(const QSize &usual, double factor, bool upright)
{
    const QSize size(qRound(usual.width() * factor), qRound(usual.height() * factor));
    return upright ? size.transposed() : size;
}

/// Puts a widget at its place. No layout makes a widget smaller than it says it can be, so neither does a page.
Exhibit addExhibit(const Board &board, const KelWidgetInfo &info, const GalleryVariant &variant, double factor, int row,
                   int column)
{
    QWidget *widget = info.create(board.widget);
    variant.apply(*widget);
    widget->setFixedSize(sizeOf(info.firstSize, factor, variant.upright).expandedTo(widget->minimumSizeHint()));
    board.grid->addWidget(widget, row, column, Qt::AlignCenter);
    return {widget, QStringLiteral("%1 (%2)").arg(info.className, variant.caption)};
}

/// The values that animations move, of every widget on \a page.
QVariantList movingValues(const QWidget &page)
{
    QVariantList values;
    for (const QWidget *widget : page.findChildren<QWidget *>()) {
        const QMetaObject *meta = widget->metaObject();
        for (int i = 0; i < meta->propertyCount(); ++i) {
            if (qstrncmp(meta->property(i).name(), "h__", 3) == 0)
                values << meta->property(i).read(widget);
        }
    }
    return values;
}

/// Lets time pass until nothing on \a page moves between two looks.
void settle(const QWidget &page)
{
    QVariantList before;
    for (int i = 0; i < PatienceLooks; ++i) {
        const QVariantList now = movingValues(page);
        if (i > 0 && now == before)
            return;
        before = now;
        QEventLoop loop;
        QTimer next;
        QObject::connect(&next, &QTimer::timeout, &loop, &QEventLoop::quit);
        next.start(LookMs);
        loop.exec();
    }
}

bool isOneColor(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0))
                return false;
        }
    }
    return true;
}

QImage paint(QWidget &page, const QVector<Exhibit> &exhibits)
{
    page.setAttribute(Qt::WA_DontShowOnScreen);
    page.show();
    settle(page);

    QImage image = page.grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (const Exhibit &exhibit : exhibits) {
        const QRect place(exhibit.widget->mapTo(&page, QPoint()), exhibit.widget->size());
        if (!exhibit.widget->isVisible() || isOneColor(image.copy(place)))
            throw GalleryError(exhibit.name.toStdString() + ": nothing is painted");
    }
    return image;
}

/// An empty page whose boards will stand below each other.
void layOut(QWidget &page)
{
    auto *boards = new QVBoxLayout(&page);
    boards->setContentsMargins(0, 0, 0, 0);
    boards->setSpacing(0);
    boards->setSizeConstraint(QLayout::SetFixedSize);
}

void addHeads(const Board &board, const QString &palette, bool wide)
{
    addText(board, palette, 0, 0);
    if (wide) {
        addText(board, QStringLiteral("small, normal below"), 0, 1);
        addText(board, QStringLiteral("large, disabled below"), 0, 2);
        return;
    }
    for (const Cell &cell : Cells)
        addText(board, QString::fromLatin1(cell.name), 0, cell.inOneLine.x());
}

QVector<Exhibit> addVariant(const Board &board, const KelWidgetInfo &info, const GalleryVariant &variant, int row,
                            bool wide)
{
    addText(board, variant.caption, row, 0);
    QVector<Exhibit> exhibits;
    for (const Cell &cell : Cells) {
        const QPoint place = wide ? cell.inTwoLines : cell.inOneLine;
        exhibits << addExhibit(board, info, variant, cell.factor, row + place.y(), place.x());
        exhibits.last().widget->setEnabled(cell.enabled);
    }
    return exhibits;
}

} // namespace

QImage galleryPage(const KelWidgetInfo &info, const QVector<GalleryVariant> &variants)
{
    const bool wide = info.firstSize.width() >= WideWidget;
    QWidget page;
    layOut(page);
    QVector<Exhibit> exhibits;
    for (const GalleryPalette &palette : galleryPalettes()) {
        const Board board = addBoard(page, palette);
        addHeads(board, palette.name, wide);
        for (const GalleryVariant &variant : variants)
            exhibits << addVariant(board, info, variant, board.grid->rowCount(), wide);
    }
    return paint(page, exhibits);
}

QImage gallerySheet(const QVector<KelWidgetInfo> &list)
{
    QWidget page;
    layOut(page);
    QVector<Exhibit> exhibits;
    for (const GalleryPalette &palette : galleryPalettes()) {
        const Board board = addBoard(page, palette);
        for (int i = 0; i < list.size(); ++i) {
            const int row = i / SheetColumns * 2;
            const int column = i % SheetColumns;
            const GalleryVariant variant = galleryVariants(list.at(i).className).first();
            exhibits << addExhibit(board, list.at(i), variant, 1.0, row, column);
            addText(board, list.at(i).className, row + 1, column);
        }
    }
    return paint(page, exhibits);
}
