// Container and stream information through MediaInfoLib, fed the file's bytes as it asks for
// them: headers only (ParseSpeed 0), and never more than a few megabytes of a file.
#include "metadata/Readers.h"

#include <QHash>
#include <cmath>
#include <vector>

#ifndef UNICODE
#define UNICODE  // the library is built with wide strings
#endif
#include <MediaInfo/MediaInfo.h>

#include "metadata/ByteSource.h"

namespace qp::metadata {

namespace {

using MediaInfoLib::MediaInfo;
using MediaInfoLib::stream_t;

constexpr std::size_t kPiece = 64 * 1024;
// Headers only: beyond this the library has seen what it reads at ParseSpeed 0.
constexpr std::uint64_t kMostRead = 8ull << 20;

QString text(const MediaInfoLib::String& value) { return QString::fromStdWString(value).trimmed(); }

// The library's status bit for "finished".
constexpr std::size_t kFinalized = 0x08;

bool parse(MediaInfo& info, const ByteSource& source)
{
    info.Option(L"ParseSpeed", L"0");
    const std::uint64_t size = source.size();
    info.Open_Buffer_Init(size, 0);
    std::vector<unsigned char> piece(kPiece);
    std::uint64_t offset = 0;
    std::uint64_t read = 0;
    while (read < kMostRead) {
        const std::int64_t got = source.readAt(offset, piece.data(), piece.size());
        if (got <= 0)
            break;
        read += std::uint64_t(got);
        offset += std::uint64_t(got);
        if (info.Open_Buffer_Continue(piece.data(), std::size_t(got)) & kFinalized)
            break;
        const std::uint64_t jump = info.Open_Buffer_Continue_GoTo_Get();
        if (jump != std::uint64_t(-1)) {
            offset = jump;
            info.Open_Buffer_Init(size, offset);
        }
    }
    info.Open_Buffer_Finalize();
    return info.Count_Get(MediaInfoLib::Stream_General) > 0
           && !text(info.Get(MediaInfoLib::Stream_General, 0, L"Format")).isEmpty();
}

const QHash<QString, stream_t>& streamKinds()
{
    static const QHash<QString, stream_t> kinds = {
        {"general", MediaInfoLib::Stream_General}, {"video", MediaInfoLib::Stream_Video},
        {"audio", MediaInfoLib::Stream_Audio},     {"text", MediaInfoLib::Stream_Text},
        {"other", MediaInfoLib::Stream_Other},     {"image", MediaInfoLib::Stream_Image},
        {"menu", MediaInfoLib::Stream_Menu},
    };
    return kinds;
}

// "Video;Width" (the first video stream's width); nothing for a malformed query.
QString query(MediaInfo& info, const QString& key)
{
    const qsizetype semicolon = key.indexOf(u';');
    if (semicolon < 0)
        return {};
    const auto kind = streamKinds().constFind(key.left(semicolon).trimmed().toLower());
    const QString parameter = key.mid(semicolon + 1).trimmed();
    if (kind == streamKinds().constEnd() || parameter.isEmpty())
        return {};
    return text(info.Get(*kind, 0, parameter.toStdWString()));
}

void everyParameter(MediaInfo& info, QHash<QString, QString>& out)
{
    static const char* const kNames[] = {"General", "Video", "Audio", "Text", "Other", "Image", "Menu"};
    for (int k = MediaInfoLib::Stream_General; k < MediaInfoLib::Stream_Max; ++k) {
        const auto kind = stream_t(k);
        if (info.Count_Get(kind) == 0)
            continue;
        const std::size_t count = info.Count_Get(kind, 0);
        for (std::size_t i = 0; i < count; ++i) {
            const QString name = text(info.Get(kind, 0, i, MediaInfoLib::Info_Name));
            const QString value = text(info.Get(kind, 0, i, MediaInfoLib::Info_Text));
            if (!name.isEmpty() && !value.isEmpty())
                out.insert(QLatin1String(kNames[k]) + u';' + name, value);
        }
    }
}

QString hoursMinutesSeconds(qint64 ms)
{
    const qint64 seconds = (ms + 500) / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg((seconds / 60) % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

class MediaFields {
public:
    MediaFields(MediaInfo& info, FamilyFields& out, LegacyEncoding legacy) : m_info(info), m_out(out), m_legacy(legacy) {}

    QString get(stream_t kind, const wchar_t* parameter) const { return text(m_info.Get(kind, 0, parameter)); }
    void textField(const char* name, stream_t kind, const wchar_t* parameter)
    {
        m_out.setText(QLatin1String(name), repairLatin1(get(kind, parameter), m_legacy));
    }
    // Numbers as the library gives them ("1920", "29.970", "128000").
    void numberField(const char* name, stream_t kind, const wchar_t* parameter, double divisor = 1)
    {
        bool ok = false;
        const double value = get(kind, parameter).toDouble(&ok);
        if (ok)
            m_out.set(QLatin1String(name), FieldValue::number(divisor == 1 ? value : std::round(value / divisor)));
    }
    void momentField(const char* name, const wchar_t* parameter)
    {
        const Moment moment = parseMoment(get(MediaInfoLib::Stream_General, parameter));
        if (moment.isValid())
            m_out.set(QLatin1String(name), FieldValue::moment(moment));
    }
    void count(const char* name, stream_t kind)
    {
        m_out.set(QLatin1String(name), FieldValue::number(double(m_info.Count_Get(kind))));
    }

private:
    MediaInfo& m_info;
    FamilyFields& m_out;
    LegacyEncoding m_legacy;
};

void fill(MediaInfo& info, FamilyFields& out, const ReadRequest& request)
{
    using namespace MediaInfoLib;
    MediaFields f(info, out, request.legacy);
    f.textField("FORMAT", Stream_General, L"Format");
    bool ok = false;
    const double duration = f.get(Stream_General, L"Duration").toDouble(&ok);
    if (ok && duration > 0) {
        out.set(QStringLiteral("DURATION"), FieldValue::number(std::round(duration)));
        out.set(QStringLiteral("DURATIONTEXT"), FieldValue::text(hoursMinutesSeconds(qint64(duration))));
    }
    f.numberField("OVERALLBITRATE", Stream_General, L"OverallBitRate", 1000);
    f.momentField("ENCODEDDATE", L"Encoded_Date");
    f.momentField("RECORDEDDATE", L"Recorded_Date");
    f.textField("TITLE", Stream_General, L"Title");
    f.numberField("WIDTH", Stream_Video, L"Width");
    f.numberField("HEIGHT", Stream_Video, L"Height");
    f.numberField("FRAMERATE", Stream_Video, L"FrameRate");
    f.textField("ASPECT", Stream_Video, L"DisplayAspectRatio/String");
    f.textField("VCODEC", Stream_Video, L"Format");
    f.numberField("BITDEPTH", Stream_Video, L"BitDepth");
    f.textField("HDR", Stream_Video, L"HDR_Format");
    f.numberField("ROTATION", Stream_Video, L"Rotation");
    f.textField("ACODEC", Stream_Audio, L"Format");
    f.numberField("CHANNELS", Stream_Audio, L"Channels");
    f.numberField("SAMPLERATE", Stream_Audio, L"SamplingRate");
    f.numberField("ABITRATE", Stream_Audio, L"BitRate", 1000);
    f.textField("LANGUAGE", Stream_Audio, L"Language");
    f.count("VIDEOCOUNT", Stream_Video);
    f.count("AUDIOCOUNT", Stream_Audio);
    f.count("TEXTCOUNT", Stream_Text);
    out.everyKey = request.everyKey;
    if (request.everyKey) {
        everyParameter(info, out.keys);
        return;
    }
    for (const QString& key : request.keys) {
        out.keysAsked.insert(key);
        const QString value = query(info, key);
        if (!value.isEmpty())
            out.keys.insert(key, value);
    }
}

class MediaReader : public FieldReader {
public:
    QChar family() const override { return u'C'; }

    bool accepts(const ContentType& type) const override
    {
        const QString& mime = type.mime;
        return mime.startsWith(QLatin1String("audio/")) || mime.startsWith(QLatin1String("video/"))
               || mime == QLatin1String("application/ogg") || mime == QLatin1String("application/vnd.ms-asf")
               || mime == QLatin1String("application/vnd.rn-realmedia") || mime == QLatin1String("application/x-matroska")
               || mime == QLatin1String("application/octet-stream");
    }

    FamilyFields read(const ByteSource& source, const ContentType& type, const ReadRequest& request) override
    {
        FamilyFields out;
        MediaInfo info;
        if (!parse(info, source)) {
            // A generic type that the library does not know either is simply not media.
            out.status = type.mime == QLatin1String("application/octet-stream") ? ReadStatus::NotThisKind
                                                                                   : ReadStatus::Broken;
            return out;
        }
        fill(info, out, request);
        out.status = ReadStatus::Ok;
        return out;
    }
};

}  // namespace

std::unique_ptr<FieldReader> makeMediaReader() { return std::make_unique<MediaReader>(); }

}  // namespace qp::metadata
