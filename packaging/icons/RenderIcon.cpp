/// Draws an SVG into a square PNG: `render-icon <svg> <pixels> <png>`. Runs while Talvo is built, so
/// that the sizes never differ from the drawing; needs no display.

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("render-icon <svg> <pixels> <png>\n", stderr);
        return 2;
    }

    QSvgRenderer drawing(arguments.at(1));
    const int pixels = arguments.at(2).toInt();
    if (!drawing.isValid() || pixels <= 0) {
        std::fprintf(stderr, "%s: no drawing, or no size\n", qPrintable(arguments.at(1)));
        return 1;
    }
    QImage image(pixels, pixels, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        drawing.render(&painter);
    }

    QImageWriter writer(arguments.at(3), QByteArrayLiteral("png"));
    writer.setCompression(100);
    if (!writer.write(image)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(arguments.at(3)),
                     qPrintable(writer.errorString()));
        return 1;
    }
    return 0;
}
