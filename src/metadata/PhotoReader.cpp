// EXIF, IPTC and XMP of photos through Exiv2, over a read-only view of the file's bytes.
// EXIF text and IPTC without a character-set record are decoded through LegacyText; the
// Windows XP tags are UTF-16.
#include "metadata/Readers.h"

#include <QHash>
#include <cmath>
#include <cstring>
#include <vector>

// Exiv2 0.27 hands images out in std::auto_ptr, which C++17 deprecated.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <exiv2/exiv2.hpp>

#include "metadata/ByteSource.h"

namespace qp::metadata {

namespace {

// A whole file is held in memory only where Exiv2 parses TIFF-based formats (raw files)
// from one block; beyond this it is not read.
constexpr std::uint64_t kLargestMapped = 512ull << 20;

// Exiv2's view of a ByteSource: reads and seeks as its memory I/O does, writes nothing.
class SourceIo : public Exiv2::BasicIo {
public:
    explicit SourceIo(const ByteSource& source) : m_source(source), m_size(source.size()) {}

    int open() override
    {
        m_position = 0;
        m_eof = false;
        return 0;
    }
    int close() override { return 0; }
    long write(const Exiv2::byte*, long) override { return 0; }
    long write(Exiv2::BasicIo&) override { return 0; }
    int putb(Exiv2::byte) override { return EOF; }
    Exiv2::DataBuf read(long count) override
    {
        // A corrupt length cannot ask for more memory than the file has bytes.
        const long available = long(std::min<std::uint64_t>(m_size - std::min(m_position, m_size), 0x7FFFFFFF));
        Exiv2::DataBuf buffer(std::max(0L, std::min(count, available)));
        const long got = read(buffer.pData_, buffer.size_);
        buffer.size_ = got;
        if (count > available)
            m_eof = true;
        return buffer;
    }
    long read(Exiv2::byte* buffer, long count) override
    {
        if (count <= 0)
            return 0;
        const std::int64_t got = m_position < m_size ? m_source.readAt(m_position, buffer, std::size_t(count)) : 0;
        if (got < 0) {
            m_error = 1;
            return 0;
        }
        m_position += std::uint64_t(got);
        if (got < count)
            m_eof = true;
        return long(got);
    }
    int getb() override
    {
        Exiv2::byte b = 0;
        return read(&b, 1) == 1 ? b : EOF;
    }
    void transfer(Exiv2::BasicIo&) override { throw Exiv2::Error(Exiv2::kerFunctionNotSupported, "transfer"); }
    int seek(long offset, Position from) override
    {
        const std::int64_t base = from == beg ? 0 : from == cur ? std::int64_t(m_position) : std::int64_t(m_size);
        const std::int64_t target = base + offset;
        if (target < 0)
            return 1;
        if (std::uint64_t(target) > m_size) {
            m_eof = true;
            return 1;
        }
        m_position = std::uint64_t(target);
        m_eof = false;
        return 0;
    }
    Exiv2::byte* mmap(bool writeable) override
    {
        if (writeable || m_size > kLargestMapped)
            throw Exiv2::Error(Exiv2::kerFailedToMapFileForReadWrite, m_source.name().toStdString(), "", "");
        if (m_mapped.empty()) {
            m_mapped.resize(std::size_t(m_size));
            if (m_size && m_source.readAt(0, m_mapped.data(), m_mapped.size()) != std::int64_t(m_size))
                throw Exiv2::Error(Exiv2::kerFailedToReadImageData);
        }
        return m_mapped.data();
    }
    int munmap() override
    {
        std::vector<Exiv2::byte>().swap(m_mapped);
        return 0;
    }
    long tell() const override { return long(m_position); }
    size_t size() const override { return size_t(m_size); }
    bool isopen() const override { return true; }
    int error() const override { return m_error; }
    bool eof() const override { return m_eof; }
    std::string path() const override { return m_source.name().toStdString(); }

private:
    const ByteSource& m_source;
    std::uint64_t m_size;
    std::uint64_t m_position = 0;
    bool m_eof = false;
    int m_error = 0;
    std::vector<Exiv2::byte> m_mapped;
};

QString fromStd(const std::string& text) { return QString::fromStdString(text); }

// The raw bytes of a value (an ASCII value ends with its NUL).
QByteArray rawBytes(const Exiv2::Value& value)
{
    QByteArray bytes(qsizetype(value.size()), '\0');
    if (!bytes.isEmpty())
        value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
    const qsizetype nul = bytes.indexOf('\0');
    return nul >= 0 ? bytes.left(nul) : bytes;
}

QString utf16Le(const Exiv2::Value& value)
{
    QByteArray bytes(qsizetype(value.size()), '\0');
    if (!bytes.isEmpty())
        value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
    QString text;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
        const char16_t unit = char16_t(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
        if (unit == 0)
            break;
        text += QChar(unit);
    }
    return text;
}

// One photo's metadata, looked up by Exiv2 key.
class Photo {
public:
    Photo(Exiv2::Image& image, LegacyEncoding legacy) : m_image(image), m_legacy(legacy)
    {
        for (const Exiv2::Exifdatum& d : image.exifData())
            m_exif.insert(QByteArray::fromStdString(d.key()), &d);
        for (const Exiv2::Xmpdatum& d : image.xmpData())
            m_xmp.insert(QByteArray::fromStdString(d.key()), &d);
        const Exiv2::IptcData& iptc = image.iptcData();
        const auto charset = iptc.findKey(Exiv2::IptcKey("Iptc.Envelope.CharacterSet"));
        m_iptcUtf8 = charset != iptc.end() && charset->toString() == "\x1b%G";
    }

    const Exiv2::Exifdatum* exif(const char* key) const { return m_exif.value(QByteArray(key), nullptr); }
    const Exiv2::Xmpdatum* xmp(const char* key) const { return m_xmp.value(QByteArray(key), nullptr); }

    QString exifText(const char* key) const
    {
        const Exiv2::Exifdatum* d = exif(key);
        if (!d)
            return {};
        if (d->typeId() == Exiv2::asciiString || d->typeId() == Exiv2::undefined)
            return decodeLegacy(rawBytes(d->value()), m_legacy).trimmed();
        return fromStd(d->toString()).trimmed();
    }
    QString xpText(const char* key) const
    {
        const Exiv2::Exifdatum* d = exif(key);
        return d ? utf16Le(d->value()).trimmed() : QString();
    }
    QString xmpText(const char* key) const
    {
        const Exiv2::Xmpdatum* d = xmp(key);
        if (!d)
            return {};
        if (d->typeId() == Exiv2::langAlt)
            return fromStd(static_cast<const Exiv2::LangAltValue&>(d->value()).toString("x-default")).trimmed();
        return fromStd(d->toString()).trimmed();
    }
    QStringList iptcTexts(const char* key) const
    {
        QStringList texts;
        const std::string wanted(key);
        for (const Exiv2::Iptcdatum& d : m_image.iptcData()) {
            if (d.key() != wanted)
                continue;
            const QByteArray bytes = rawBytes(d.value());
            texts.append((m_iptcUtf8 ? QString::fromUtf8(bytes) : decodeLegacy(bytes, m_legacy)).trimmed());
        }
        return texts;
    }
    // A rational value as a fraction; the denominator is 0 when there is none.
    std::pair<qint64, qint64> rational(const char* key, long n = 0) const
    {
        const Exiv2::Exifdatum* d = exif(key);
        if (!d || d->count() <= n)
            return {0, 0};
        const Exiv2::Rational r = d->toRational(n);
        return {r.first, r.second};
    }
    std::optional<double> number(const char* key, long n = 0) const
    {
        const Exiv2::Exifdatum* d = exif(key);
        if (!d || d->count() <= n)
            return std::nullopt;
        const float value = d->toFloat(n);
        return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
    }
    // Every key and its value, for listings and for tags that name a key.
    QString anyKey(const QString& key) const;
    void everyKey(QHash<QString, QString>& out) const;

private:
    QString printed(const Exiv2::Exifdatum& d) const
    {
        if (d.typeId() == Exiv2::asciiString)
            return decodeLegacy(rawBytes(d.value()), m_legacy).trimmed();
        if (d.key().rfind("Exif.Image.XP", 0) == 0)
            return utf16Le(d.value()).trimmed();
        return fromStd(d.print(&m_image.exifData())).trimmed();
    }

    Exiv2::Image& m_image;
    LegacyEncoding m_legacy;
    QHash<QByteArray, const Exiv2::Exifdatum*> m_exif;
    QHash<QByteArray, const Exiv2::Xmpdatum*> m_xmp;
    bool m_iptcUtf8 = false;
};

QString Photo::anyKey(const QString& key) const
{
    const QByteArray name = key.trimmed().toLatin1();
    if (name.startsWith("Exif.")) {
        const Exiv2::Exifdatum* d = m_exif.value(name, nullptr);
        return d ? printed(*d) : QString();
    }
    if (name.startsWith("Xmp."))
        return xmpText(name.constData());
    if (name.startsWith("Iptc."))
        return iptcTexts(name.constData()).join(QStringLiteral(", "));
    return {};
}

void Photo::everyKey(QHash<QString, QString>& out) const
{
    for (auto it = m_exif.constBegin(); it != m_exif.constEnd(); ++it) {
        // Maker notes and thumbnails are long binary runs, not something to name a file by.
        if (it.value()->size() <= 256 || it.value()->typeId() == Exiv2::asciiString)
            out.insert(QString::fromLatin1(it.key()), printed(*it.value()));
    }
    for (auto it = m_xmp.constBegin(); it != m_xmp.constEnd(); ++it)
        out.insert(QString::fromLatin1(it.key()), xmpText(it.key().constData()));
    for (const Exiv2::Iptcdatum& d : m_image.iptcData()) {
        const QString key = fromStd(d.key());
        if (!out.contains(key))
            out.insert(key, iptcTexts(d.key().c_str()).join(QStringLiteral(", ")));
    }
}

Moment exifMoment(const Photo& photo, const char* date, const char* subseconds, const char* offset)
{
    Moment moment = parseMoment(photo.exifText(date));
    if (!moment.isValid() || !moment.time.isValid())
        return moment;
    const QString fraction = photo.exifText(subseconds).trimmed();
    if (!fraction.isEmpty() && fraction.front().isDigit()) {
        const int ms = (fraction + QStringLiteral("00")).left(3).toInt();
        moment.time = moment.time.addMSecs(ms);
        moment.subseconds = true;
    }
    const Moment zone = parseMoment(QStringLiteral("2000-01-01T00:00:00") + photo.exifText(offset).trimmed());
    if (zone.offsetMinutes)
        moment.offsetMinutes = zone.offsetMinutes;
    return moment;
}

void addMoment(FamilyFields& out, const char* name, const Moment& moment)
{
    if (moment.isValid())
        out.set(QLatin1String(name), FieldValue::moment(moment));
}

// "31°14′05.20″N": prime marks, which file names can hold, where quotes would not do.
QString degreesText(double value, QChar positive, QChar negative)
{
    const double a = std::abs(value);
    int degrees = int(a);
    int minutes = int((a - degrees) * 60);
    double seconds = ((a - degrees) * 60 - minutes) * 60;
    if (seconds >= 59.995) {
        seconds = 0;
        if (++minutes == 60) {
            minutes = 0;
            ++degrees;
        }
    }
    return QStringLiteral("%1°%2′%3″%4")
        .arg(degrees)
        .arg(minutes, 2, 10, QLatin1Char('0'))
        .arg(seconds, 5, 'f', 2, QLatin1Char('0'))
        .arg(value < 0 ? negative : positive);
}

std::optional<double> gpsDegrees(const Photo& photo, const char* key, const char* refKey, char negativeRef)
{
    const Exiv2::Exifdatum* d = photo.exif(key);
    if (!d || d->count() < 3)
        return std::nullopt;
    double total = 0;
    double scale = 1;
    for (long i = 0; i < 3; ++i, scale *= 60) {
        const Exiv2::Rational r = d->toRational(i);
        if (r.second == 0)
            return std::nullopt;
        total += double(r.first) / double(r.second) / scale;
    }
    const QString ref = photo.exifText(refKey);
    return !ref.isEmpty() && ref.front() == QLatin1Char(negativeRef) ? -total : total;
}

void addGps(FamilyFields& out, const Photo& photo)
{
    if (const auto lat = gpsDegrees(photo, "Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef", 'S')) {
        out.set(QStringLiteral("GPSLATITUDE"), FieldValue::number(*lat));
        out.set(QStringLiteral("GPSLATITUDEDMS"), FieldValue::text(degreesText(*lat, u'N', u'S')));
    }
    if (const auto lon = gpsDegrees(photo, "Exif.GPSInfo.GPSLongitude", "Exif.GPSInfo.GPSLongitudeRef", 'W')) {
        out.set(QStringLiteral("GPSLONGITUDE"), FieldValue::number(*lon));
        out.set(QStringLiteral("GPSLONGITUDEDMS"), FieldValue::text(degreesText(*lon, u'E', u'W')));
    }
    const auto [num, den] = photo.rational("Exif.GPSInfo.GPSAltitude");
    if (den != 0) {
        const Exiv2::Exifdatum* ref = photo.exif("Exif.GPSInfo.GPSAltitudeRef");
        const bool below = ref && ref->count() > 0 && ref->toLong(0) == 1;
        out.set(QStringLiteral("GPSALTITUDE"), FieldValue::number((below ? -1.0 : 1.0) * double(num) / double(den)));
    }
}

void addCamera(FamilyFields& out, const Photo& photo, const Exiv2::ExifData& exif)
{
    out.setText(QStringLiteral("MAKE"), photo.exifText("Exif.Image.Make"));
    out.setText(QStringLiteral("MODEL"), photo.exifText("Exif.Image.Model"));
    QString lens = photo.exifText("Exif.Photo.LensModel");
    if (lens.isEmpty()) {
        const auto it = Exiv2::lensName(exif);
        if (it != exif.end())
            lens = fromStd(it->print(&exif)).trimmed();
    }
    // Maker notes name an unknown lens by its number in brackets ("(65535)"); that is no name.
    if (!lens.startsWith(u'('))
        out.setText(QStringLiteral("LENS"), lens);
    const auto iso = Exiv2::isoSpeed(exif);
    if (iso != exif.end() && iso->count() > 0 && iso->toLong(0) > 0)
        out.set(QStringLiteral("ISO"), FieldValue::number(double(iso->toLong(0))));
    if (const auto [n, d] = photo.rational("Exif.Photo.FNumber"); d > 0 && n > 0)
        out.set(QStringLiteral("FNUMBER"), FieldValue::text(QStringLiteral("f/") + numberText(double(n) / double(d), 1)));
    if (const auto [n, d] = photo.rational("Exif.Photo.ExposureTime"); d > 0 && n > 0)
        out.set(QStringLiteral("EXPOSURE"), FieldValue::fraction(n, d));
    if (const auto [n, d] = photo.rational("Exif.Photo.FocalLength"); d > 0 && n > 0)
        out.set(QStringLiteral("FOCAL"), FieldValue::number(std::round(double(n) / double(d) * 10) / 10));
    if (const auto focal35 = photo.number("Exif.Photo.FocalLengthIn35mmFilm"); focal35 && *focal35 > 0)
        out.set(QStringLiteral("FOCAL35"), FieldValue::number(*focal35));
    if (const auto flash = photo.number("Exif.Photo.Flash"))
        out.set(QStringLiteral("FLASH"), FieldValue::number((int(*flash) & 1) ? 1 : 0));
    if (const auto orientation = photo.number("Exif.Image.Orientation"); orientation && *orientation >= 1)
        out.set(QStringLiteral("ORIENTATION"), FieldValue::number(*orientation));
}

void addDescriptions(FamilyFields& out, const Photo& photo)
{
    out.setText(QStringLiteral("ARTIST"), photo.exifText("Exif.Image.Artist"));
    out.setText(QStringLiteral("COPYRIGHT"), photo.exifText("Exif.Image.Copyright"));
    out.setText(QStringLiteral("DESCRIPTION"), photo.exifText("Exif.Image.ImageDescription"));
    const std::pair<const char*, const char*> xp[] = {{"XPTITLE", "Exif.Image.XPTitle"},
                                                      {"XPCOMMENT", "Exif.Image.XPComment"},
                                                      {"XPAUTHOR", "Exif.Image.XPAuthor"},
                                                      {"XPKEYWORDS", "Exif.Image.XPKeywords"},
                                                      {"XPSUBJECT", "Exif.Image.XPSubject"}};
    for (const auto& [name, key] : xp)
        out.setText(QLatin1String(name), photo.xpText(key));
    QString rating = photo.exifText("Exif.Image.Rating");
    if (rating.isEmpty())
        rating = photo.xmpText("Xmp.xmp.Rating");
    if (!rating.isEmpty())
        out.set(QStringLiteral("RATING"), FieldValue::number(rating.toDouble()));
    const std::pair<const char*, const char*> iptc[] = {{"BYLINE", "Iptc.Application2.Byline"},
                                                        {"CAPTION", "Iptc.Application2.Caption"},
                                                        {"CITY", "Iptc.Application2.City"},
                                                        {"COUNTRY", "Iptc.Application2.CountryName"}};
    for (const auto& [name, key] : iptc)
        out.setText(QLatin1String(name), photo.iptcTexts(key).join(QStringLiteral(", ")));
    const QStringList keywords = photo.iptcTexts("Iptc.Application2.Keywords");
    if (!keywords.isEmpty())
        out.set(QStringLiteral("KEYWORDS"), FieldValue::list(keywords));
}

class PhotoReader : public FieldReader {
public:
    PhotoReader()
    {
        static const bool ready = [] {
            Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
            Exiv2::XmpParser::initialize();
            Exiv2::enableBMFF(true);
            return true;
        }();
        (void)ready;
    }

    QChar family() const override { return u'D'; }

    bool accepts(const ContentType& type) const override
    {
        return type.mime.startsWith(QLatin1String("image/")) || type.mime == QLatin1String("application/octet-stream");
    }

    FamilyFields read(const ByteSource& source, const ContentType&, const ReadRequest& request) override
    {
        FamilyFields out;
        try {
            Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new SourceIo(source)));
            if (!image.get()) {
                out.status = ReadStatus::NotThisKind;
                return out;
            }
            image->readMetadata();
            fill(out, *image, request);
            out.status = ReadStatus::Ok;
        } catch (const Exiv2::AnyError& error) {
            // No image type knows the content: not a photo. Anything else: a broken one.
            out = FamilyFields();
            out.status = error.code() == Exiv2::kerFileContainsUnknownImageType ? ReadStatus::NotThisKind
                                                                                  : ReadStatus::Broken;
        } catch (const std::exception&) {
            out = FamilyFields();
            out.status = ReadStatus::Broken;
        }
        return out;
    }

private:
    static void fill(FamilyFields& out, Exiv2::Image& image, const ReadRequest& request)
    {
        const Photo photo(image, request.legacy);
        addMoment(out, "DATEORIGINAL",
                  exifMoment(photo, "Exif.Photo.DateTimeOriginal", "Exif.Photo.SubSecTimeOriginal", "Exif.Photo.OffsetTimeOriginal"));
        addMoment(out, "DATEDIGITIZED",
                  exifMoment(photo, "Exif.Photo.DateTimeDigitized", "Exif.Photo.SubSecTimeDigitized", "Exif.Photo.OffsetTimeDigitized"));
        addMoment(out, "XMPCREATEDATE", parseMoment(photo.xmpText("Xmp.xmp.CreateDate")));
        addCamera(out, photo, image.exifData());
        if (image.pixelWidth() > 0 && image.pixelHeight() > 0) {
            out.set(QStringLiteral("WIDTH"), FieldValue::number(image.pixelWidth()));
            out.set(QStringLiteral("HEIGHT"), FieldValue::number(image.pixelHeight()));
        }
        addDescriptions(out, photo);
        addGps(out, photo);
        out.everyKey = request.everyKey;
        if (request.everyKey) {
            photo.everyKey(out.keys);
        } else {
            for (const QString& key : request.keys) {
                out.keysAsked.insert(key);
                const QString value = photo.anyKey(key);
                if (!value.isEmpty())
                    out.keys.insert(key, value);
            }
        }
    }
};

}  // namespace

std::unique_ptr<FieldReader> makePhotoReader() { return std::make_unique<PhotoReader>(); }

}  // namespace qp::metadata

#pragma GCC diagnostic pop
