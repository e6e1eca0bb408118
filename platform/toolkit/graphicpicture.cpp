// Pictures of a plot in files and on the clipboard.
#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QMessageBox>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <graphic.h>
#include <graphiclegend.h>
#include <graphicparts.h>
#include <graphicplot.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double MostPixels = 1 << 13; ///< Along a side of an image; a square of it takes 256 MiB.

/// The bytes of a file with the drawing that \a draw makes at \a size.
template <typename Draw>
QByteArray svgBytes(const QSize &size, int dotsPerInch, const QString &title, Draw draw)
{
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(dotsPerInch);
    generator.setTitle(title);
    QPainter painter(&generator);
    draw(painter);
    painter.end();
    return buffer.data();
}

QByteArray pngBytes(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? buffer.data() : QByteArray();
}

/// Empty, or why \a bytes could not become the file \a path, which then is what it was.
QString writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return QString();
    return Graphic::tr("%1 cannot be written: %2").arg(path, file.errorString());
}

} // namespace

bool Graphic::savePicture(const QString &path, QString *error)
{
    const QString ending = QFileInfo(path).suffix().toLower();
    QByteArray bytes;
    if (ending == QLatin1String("png")) {
        bytes = pngBytes(picture(devicePixelRatioF()));
    } else if (ending == QLatin1String("svg")) {
        const QSize size = m_parts->pictureSize();
        bytes = svgBytes(size, logicalDpiX(), windowTitle(), [this, size](QPainter &painter) {
            m_parts->drawPicture(painter, QRectF(QPointF(0.0, 0.0), size));
        });
    }
    const QString reason =
        bytes.isEmpty() ? tr("%1 is neither a PNG nor an SVG file.").arg(path) : writeFile(path, bytes);
    if (error)
        *error = reason;
    return reason.isEmpty();
}

QImage Graphic::picture(double scale)
{
    const QSize size = m_parts->pictureSize();
    const double most = MostPixels / std::max(size.width(), size.height());
    const double used = scale > 0.0 ? std::min(scale, most) : 1.0;
    QImage image(QSizeF(size * used).toSize().expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(used);
    image.fill(palette().color(QPalette::Window));
    QPainter painter(&image);
    m_parts->drawPicture(painter, QRectF(QPointF(0.0, 0.0), size));
    return image;
}

void Graphic::copyPicture()
{
    QGuiApplication::clipboard()->setImage(picture(devicePixelRatioF()));
}

QSize GraphicParts::pictureSize() const
{
    const int legendHeight = hasLegend ? legend->heightAt(plot->widget()->width()) : 0;
    return QSize(plot->widget()->width(), plot->widget()->height() + legendHeight)
        .expandedTo(graphic.minimumSizeHint());
}

void GraphicParts::drawPicture(QPainter &painter, const QRectF &rect)
{
    sync();
    painter.fillRect(rect, graphic.palette().color(QPalette::Window));
    double top = 0.0;
    if (hasLegend) {
        top = legend->heightAt(qRound(rect.width()));
        legend->draw(painter, QRectF(rect.topLeft(), QSizeF(rect.width(), top)));
    }
    plot->drawPicture(painter, rect.adjusted(0.0, top, 0.0, 0.0));
}

/// Does not block: the panel lives on while the person chooses.
void GraphicParts::askForFile()
{
    auto *dialog = new QFileDialog(&graphic, Graphic::tr("Save a picture"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({Graphic::tr("PNG picture (*.png)"), Graphic::tr("SVG drawing (*.svg)")});
    dialog->setDefaultSuffix(QStringLiteral("png"));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString &filter) {
        dialog->setDefaultSuffix(filter.contains(QLatin1String("svg")) ? QStringLiteral("svg") : QStringLiteral("png"));
    });
    Graphic &owner = graphic;
    QObject::connect(dialog, &QFileDialog::fileSelected, &graphic, [&owner](const QString &path) {
        QString reason;
        if (owner.savePicture(path, &reason))
            return;
        auto *message =
            new QMessageBox(QMessageBox::Warning, Graphic::tr("Save a picture"), reason, QMessageBox::Ok, &owner);
        message->setAttribute(Qt::WA_DeleteOnClose);
        message->open();
    });
    dialog->open();
}
