// Draws the program's icon at the sizes a desktop asks for and writes them as PNG files,
// plus a Windows .ico holding them all:
//   make_icons OUTDIR   ->  quilletpro-16.png … quilletpro-256.png, quilletpro.ico
// The committed files under resources/icons are its output; run it again after changing
// the drawing. Shapes only, no text, so the result does not depend on installed fonts.
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QtEndian>
#include <cstdio>

namespace {

constexpr int kSizes[] = {16, 24, 32, 48, 64, 128, 256};

QImage drawIcon(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 256.0, size / 256.0);

    // A blue tile.
    QLinearGradient tile(0, 0, 0, 256);
    tile.setColorAt(0, QColor(0x2f, 0x80, 0xd8));
    tile.setColorAt(1, QColor(0x1c, 0x4f, 0x9c));
    p.setPen(Qt::NoPen);
    p.setBrush(tile);
    p.drawRoundedRect(QRectF(8, 8, 240, 240), 44, 44);

    // Two sheets of paper, the front one with a folded corner and three lines of text.
    p.setBrush(QColor(255, 255, 255, 110));
    p.drawRoundedRect(QRectF(78, 40, 118, 150), 10, 10);
    QPainterPath sheet;
    sheet.moveTo(54, 66);
    sheet.lineTo(138, 66);
    sheet.lineTo(172, 100);
    sheet.lineTo(172, 216);
    sheet.lineTo(54, 216);
    sheet.closeSubpath();
    p.setBrush(Qt::white);
    p.drawPath(sheet);
    p.setBrush(QColor(0xc9, 0xd9, 0xef));
    QPainterPath fold;
    fold.moveTo(138, 66);
    fold.lineTo(138, 100);
    fold.lineTo(172, 100);
    fold.closeSubpath();
    p.drawPath(fold);
    p.setPen(QPen(QColor(0x9a, 0xb3, 0xd6), 10, Qt::SolidLine, Qt::RoundCap));
    for (int y : {130, 158, 186})
        p.drawLine(QPointF(74, y), QPointF(y == 186 ? 118 : 150, y));

    // A quill across the corner: the renaming pen.
    p.setPen(Qt::NoPen);
    QPainterPath quill;
    quill.moveTo(226, 60);
    quill.cubicTo(196, 78, 150, 140, 122, 196);
    quill.lineTo(134, 200);
    quill.cubicTo(170, 150, 214, 96, 226, 60);
    p.setBrush(QColor(0xf6, 0xc3, 0x44));
    p.drawPath(quill);
    p.setPen(QPen(QColor(0x7a, 0x4b, 0x12), 6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(126, 197), QPointF(114, 222));
    return image;
}

QByteArray png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// An .ico file whose images are PNG data, which Windows reads since Vista.
QByteArray ico(const QList<QByteArray>& images, const QList<int>& sizes)
{
    QByteArray out;
    auto u16 = [&out](quint16 v) { out.append(char(v & 0xff)).append(char(v >> 8)); };
    auto u32 = [&](quint32 v) {
        u16(quint16(v & 0xffff));
        u16(quint16(v >> 16));
    };
    u16(0);
    u16(1);
    u16(quint16(images.size()));
    quint32 offset = 6 + 16 * quint32(images.size());
    for (qsizetype i = 0; i < images.size(); ++i) {
        out.append(char(sizes[i] >= 256 ? 0 : sizes[i])).append(char(sizes[i] >= 256 ? 0 : sizes[i]));
        out.append(char(0)).append(char(0));
        u16(1);
        u16(32);
        u32(quint32(images[i].size()));
        u32(offset);
        offset += quint32(images[i].size());
    }
    for (const QByteArray& image : images)
        out.append(image);
    return out;
}

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

}  // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fputs("usage: make_icons OUTDIR\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QList<QByteArray> images;
    QList<int> sizes;
    for (int size : kSizes) {
        const QByteArray bytes = png(drawIcon(size));
        if (!write(QStringLiteral("%1/quilletpro-%2.png").arg(folder).arg(size), bytes))
            return 1;
        images.append(bytes);
        sizes.append(size);
    }
    return write(folder + QStringLiteral("/quilletpro.ico"), ico(images, sizes)) ? 0 : 1;
}
