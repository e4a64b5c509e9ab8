// A tool of the build: draws an SVG as a square PNG of a given size.
//   zelk_draw_icon drawing.svg 48 picture.png

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv) {
    if (argc != 4) {
        std::fputs("usage: zelk_draw_icon DRAWING SIZE PICTURE\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    const int size = QByteArray(argv[2]).toInt();
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    if (!drawing.isValid() || picture.isNull()) {
        std::fprintf(stderr, "%s can't be drawn at %s px\n", argv[1], argv[2]);
        return EXIT_FAILURE;
    }
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!picture.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "%s can't be written\n", argv[3]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
