#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace zelk {

inline QImage plain(int width, int height, const QColor &color = Qt::red) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

inline QByteArray encoded(const QImage &image, const char *format = "PNG") {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 100);
    return bytes;
}

inline QByteArray picture(int width, int height, const QColor &color = Qt::red) {
    return encoded(plain(width, height, color));
}

// A JPEG that is stored as `image` and says that it is to be turned to the right.
inline QByteArray turnedRight(const QImage &image) {
    QByteArray bytes = encoded(image, "JPEG");
    const QByteArray orientation("\xff\xe1\x00\x22" // a segment of 34 bytes
                                 "Exif\0\0"
                                 "MM\0\x2a\0\0\0\x08" // big endian, the directory at 8
                                 "\0\x01"
                                 "\x01\x12\0\x03\0\0\0\x01\0\x06\0\0" // orientation 6
                                 "\0\0\0\0",
                                 36);
    bytes.insert(2, orientation);
    return bytes;
}

// A picture whose file header promises 60,000 by 60,000 pixels.
inline QByteArray hugeBitmap() {
    QByteArray bytes = encoded(plain(4, 4), "BMP");
    const QByteArray side("\x60\xea\0\0", 4);
    bytes.replace(18, 4, side);
    bytes.replace(22, 4, side);
    return bytes;
}

} // namespace zelk
