// Writes the plain images the metadata samples start from: plain.jpg and plain.png, made
// with QImage, without any metadata.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 2)
        return 2;
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QPainter(&image).fillRect(8, 8, 24, 16, Qt::yellow);
    const QString folder = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    return image.save(folder + QStringLiteral("plain.jpg"), "JPG") && image.save(folder + QStringLiteral("plain.png"), "PNG")
               ? 0
               : 1;
}
