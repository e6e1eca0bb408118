// kel_screen_picture OUT.png [DEED ...] PROGRAM [ARGUMENTS]: starts the program, waits until what it shows stands
// still, does the deeds and waits again, saves a picture of the screen and ends the program. A deed is a press at a
// point of the screen (click=X,Y) or what is typed (type=TEXT); xdotool does it. Between deeds some time may pass
// (wait=MS); where that comes last, the picture is taken even if something still moves.

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>

#include <cstdio>
#include <cstring>

namespace
{

constexpr int GrabPeriodMs = 500;
constexpr int StillGrabs = 6; ///< That many pictures alike, and nothing more is to be expected.
constexpr int MaxGrabs = 240;
constexpr int DeedMs = 1000;  ///< Time for the program to follow a press.
constexpr int MinColors = 64; ///< An empty screen or window has fewer.

QImage grabScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

bool hasContent(const QImage &picture)
{
    QVector<QRgb> colors;
    for (int y = 0; y < picture.height(); y += 2) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if (!colors.contains(line[x]))
                colors << line[x];
            if (colors.size() >= MinColors)
                return true;
        }
    }
    return false;
}

/// \a picture without the empty rows above the program's window, where a title bar would be.
QImage withoutEmptyTop(const QImage &picture)
{
    const QVector<QRgb> empty(picture.width(), qRgb(0, 0, 0));
    const auto bytes = size_t(picture.width()) * sizeof(QRgb);
    int top = 0;
    while (top < picture.height() - 1 && std::memcmp(picture.constScanLine(top), empty.constData(), bytes) == 0)
        ++top;
    return picture.copy(0, top, picture.width(), picture.height() - top);
}

/// The screen when it stands still; null when \a program ends or the screen never does.
QImage waitForPicture(QProcess &program)
{
    QImage last;
    int still = 0;
    for (int i = 0; i < MaxGrabs && program.state() != QProcess::NotRunning; ++i) {
        if (program.waitForFinished(GrabPeriodMs))
            break;
        const QImage picture = grabScreen();
        still = picture == last ? still + 1 : 0;
        last = picture;
        if (still >= StillGrabs && hasContent(picture))
            return picture;
    }
    return QImage();
}

QStringList xdotoolArguments(const QString &deed)
{
    const QString what = deed.section(QLatin1Char('='), 1);
    if (deed.startsWith(QLatin1String("type=")))
        return {QStringLiteral("type"), what};
    return {QStringLiteral("mousemove"), what.section(QLatin1Char(','), 0, 0), what.section(QLatin1Char(','), 1),
            QStringLiteral("click"), QStringLiteral("1")};
}

bool isWait(const QString &deed)
{
    return deed.startsWith(QLatin1String("wait="));
}

bool isDeed(const QString &argument)
{
    return argument.startsWith(QLatin1String("click=")) || argument.startsWith(QLatin1String("type=")) ||
           isWait(argument);
}

/// The screen after all \a deeds; null when one of them cannot be done, or as above. Between deeds the screen need
/// not stand still: where text is typed a cursor blinks.
QImage pictureAfter(const QStringList &deeds, QProcess &program)
{
    const QImage before = waitForPicture(program);
    if (before.isNull() || deeds.isEmpty())
        return before;
    for (const QString &deed : deeds) {
        if (isWait(deed)) {
            program.waitForFinished(deed.section(QLatin1Char('='), 1).toInt());
            continue;
        }
        if (QProcess::execute(QStringLiteral("xdotool"), xdotoolArguments(deed)) != 0)
            return QImage();
        program.waitForFinished(DeedMs);
    }
    return isWait(deeds.last()) ? grabScreen() : waitForPicture(program);
}

int fail(const QString &what)
{
    std::fprintf(stderr, "kel_screen_picture: %s\n", qPrintable(what));
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication app(argc, argv);
    QStringList arguments = QGuiApplication::arguments().mid(1);
    if (arguments.size() < 2)
        return 2;
    const QString path = arguments.takeFirst();
    QStringList deeds;
    while (arguments.size() > 1 && isDeed(arguments.first()))
        deeds << arguments.takeFirst();
    const QString name = arguments.takeFirst();

    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(name, arguments);
    if (!program.waitForStarted())
        return fail(program.errorString());
    const QImage picture = pictureAfter(deeds, program);
    program.terminate();
    if (!program.waitForFinished(10000))
        program.kill();
    program.waitForFinished();
    if (picture.isNull())
        return fail(QStringLiteral("%1 showed nothing that stands still").arg(name));
    return withoutEmptyTop(picture).save(path) ? EXIT_SUCCESS : fail(QStringLiteral("%1 is not written").arg(path));
}
