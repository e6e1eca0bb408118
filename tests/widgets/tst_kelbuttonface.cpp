#include "testmain.h"

#include <kelbuttonface.h>

/// Where the icon and the text of a button stand, in numbers.
class tst_KelButtonFace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconSize_data();
    void iconSize();
    void layout_data();
    void layout();
};

static const QSize Text(41, 15);
static const QSize NoText(-1, -1);

void tst_KelButtonFace::iconSize_data()
{
    QTest::addColumn<QSize>("button");
    QTest::addColumn<QSize>("icon");
    QTest::addColumn<QSize>("text");
    QTest::addColumn<int>("style");
    QTest::addColumn<QSize>("result");

    const auto row = [](const char *name, QSize button, QSize icon, QSize text, int style, QSize result) {
        QTest::newRow(name) << button << icon << text << style << result;
    };
    row("an icon that fits stays", {100, 60}, {32, 32}, Text, Qt::ToolButtonTextUnderIcon, {32, 32});
    row("never enlarged", {500, 500}, {16, 16}, NoText, Qt::ToolButtonIconOnly, {16, 16});
    row("exactly the room is not scaled", {100, 60}, {86, 50}, NoText, Qt::ToolButtonIconOnly, {86, 50});
    row("a pixel too wide", {100, 60}, {87, 50}, NoText, Qt::ToolButtonIconOnly, {86, 49});
    row("a pixel too high", {100, 60}, {50, 51}, NoText, Qt::ToolButtonIconOnly, {49, 50});
    row("text beside takes width", {100, 60}, {46, 46}, Text, Qt::ToolButtonTextBesideIcon, {45, 45});
    row("text beside takes no height", {100, 60}, {45, 50}, Text, Qt::ToolButtonTextBesideIcon, {45, 50});
    row("text under takes height", {100, 60}, {36, 36}, Text, Qt::ToolButtonTextUnderIcon, {35, 35});
    row("text under takes no width", {100, 60}, {86, 35}, Text, Qt::ToolButtonTextUnderIcon, {86, 35});
    row("style's own takes neither", {100, 60}, {86, 50}, Text, Qt::ToolButtonFollowStyle, {86, 50});
    row("proportions stay", {60, 60}, {64, 32}, NoText, Qt::ToolButtonIconOnly, {50, 25});
    row("half a pixel rounds up", {35, 100}, {40, 10}, NoText, Qt::ToolButtonIconOnly, {28, 7});
    row("no room, no icon", {40, 30}, {32, 32}, Text, Qt::ToolButtonTextBesideIcon, {0, 0});
    row("a tiny button", {2, 2}, {32, 32}, NoText, Qt::ToolButtonIconOnly, {0, 0});
}

void tst_KelButtonFace::iconSize()
{
    QFETCH(QSize, button);
    QFETCH(QSize, icon);
    QFETCH(QSize, text);
    QFETCH(int, style);
    QFETCH(QSize, result);

    QCOMPARE(buttonIconSize(button, icon, text, static_cast<Qt::ToolButtonStyle>(style)), result);
}

void tst_KelButtonFace::layout_data()
{
    QTest::addColumn<QSize>("button");
    QTest::addColumn<QSize>("icon");
    QTest::addColumn<QSize>("text");
    QTest::addColumn<int>("style");
    QTest::addColumn<QPoint>("iconAt");
    QTest::addColumn<QRect>("textRect");
    QTest::addColumn<int>("alignment");

    const auto row = [](const char *name, QSize button, QSize icon, QSize text, int style, QPoint iconAt,
                        QRect textRect, int alignment) {
        QTest::newRow(name) << button << icon << text << style << iconAt << textRect << alignment;
    };
    const int under = Qt::AlignHCenter | Qt::AlignTop;
    const int beside = Qt::AlignCenter;
    row("icon only", {100, 60}, {32, 32}, Text, Qt::ToolButtonIconOnly, {34, 14}, QRect(), beside);
    row("no text", {101, 61}, {32, 32}, NoText, Qt::ToolButtonTextUnderIcon, {34, 14}, QRect(), beside);
    row("text under", {100, 60}, {32, 32}, Text, Qt::ToolButtonTextUnderIcon, {34, 2}, {0, 42, 100, 18}, under);
    row("style's own is text under", {100, 60}, {32, 32}, Text, Qt::ToolButtonFollowStyle, {34, 2}, {0, 42, 100, 18},
        under);
    row("text under, small", {40, 30}, {8, 8}, Text, Qt::ToolButtonTextUnderIcon, {16, -1}, {0, 15, 40, 15}, under);
    row("text under, large", {301, 200}, {64, 64}, Text, Qt::ToolButtonTextUnderIcon, {118, 56}, {0, 128, 301, 72},
        under);
    row("text beside", {100, 60}, {32, 32}, Text, Qt::ToolButtonTextBesideIcon, {9, 14}, {49, 0, 41, 60}, beside);
    row("text beside, no room", {40, 30}, {0, 0}, Text, Qt::ToolButtonTextBesideIcon, {-4, 15}, {4, 0, 41, 30}, beside);
    row("text beside, large", {300, 201}, {64, 64}, Text, Qt::ToolButtonTextBesideIcon, {93, 68}, {165, 0, 41, 201},
        beside);
}

void tst_KelButtonFace::layout()
{
    QFETCH(QSize, button);
    QFETCH(QSize, icon);
    QFETCH(QSize, text);
    QFETCH(int, style);
    QFETCH(QPoint, iconAt);
    QFETCH(QRect, textRect);
    QFETCH(int, alignment);

    const ButtonFace face = layoutButtonFace(button, icon, text, static_cast<Qt::ToolButtonStyle>(style));
    QCOMPARE(face.icon, QRect(iconAt, icon));
    QCOMPARE(face.text, textRect);
    QCOMPARE(int(face.textAlignment), alignment);
}

KEL_TEST_MAIN(tst_KelButtonFace)
#include "tst_kelbuttonface.moc"
