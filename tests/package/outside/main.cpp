#include <QApplication>
#include <colorarithmetic.h>
#include <names.h>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const bool sum = QColor(200, 0, 0) + QColor(200, 0, 0) == QColor(255, 0, 0);
    return sum && toCName(QStringLiteral("1st")) == QStringLiteral("_1st") ? 0 : 1;
}
