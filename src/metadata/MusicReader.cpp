// Music tags and audio properties through TagLib, over a read-only stream of the file's
// bytes. Text that old taggers wrote in a legacy code page (ID3v1, ID3v2 frames marked as
// Latin-1, RIFF INFO) goes through LegacyText.
#include "metadata/Readers.h"

#include <QRegularExpression>
#include <algorithm>
#include <limits>

#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mp4file.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/tdebuglistener.h>
#include <taglib/tiostream.h>
#include <taglib/trueaudiofile.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>

#include "metadata/ByteSource.h"
#include "metadata/FieldCatalogue.h"

namespace qp::metadata {

namespace {

QString qstring(const TagLib::String& text) { return QString::fromStdWString(text.toWString()); }

TagLib::String tstring(const QString& text) { return TagLib::String(text.toStdWString()); }

// A read-only TagLib stream over a ByteSource: every write is refused.
class SourceStream : public TagLib::IOStream {
public:
    explicit SourceStream(const ByteSource& source) : m_source(source), m_name(source.name().toStdString()) {}

    TagLib::FileName name() const override { return m_name.c_str(); }
    TagLib::ByteVector readBlock(unsigned long length) override
    {
        const std::uint64_t size = m_source.size();
        const std::uint64_t left = m_position < size ? size - m_position : 0;
        const auto count = static_cast<unsigned int>(std::min<std::uint64_t>({length, left, 0x7FFFFFFFu}));
        TagLib::ByteVector bytes(count, 0);
        const std::int64_t got = count ? m_source.readAt(m_position, bytes.data(), count) : 0;
        bytes.resize(got > 0 ? static_cast<unsigned int>(got) : 0);
        m_position += bytes.size();
        return bytes;
    }
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override
    {
        const std::int64_t base = from == Beginning ? 0 : from == Current ? std::int64_t(m_position) : length();
        m_position = std::uint64_t(std::max<std::int64_t>(0, base + offset));
    }
    long tell() const override { return long(std::min<std::uint64_t>(m_position, std::numeric_limits<long>::max())); }
    long length() override { return long(std::min<std::uint64_t>(m_source.size(), std::numeric_limits<long>::max())); }
    void truncate(long) override {}

private:
    const ByteSource& m_source;
    std::string m_name;
    std::uint64_t m_position = 0;
};

// The three kinds of legacy text TagLib lets a program decode itself.
class LegacyHandlers : public TagLib::ID3v2::Latin1StringHandler,
                       public TagLib::ID3v1::StringHandler,
                       public TagLib::RIFF::Info::StringHandler {
public:
    LegacyEncoding encoding = LegacyEncoding::Automatic;

    TagLib::String parse(const TagLib::ByteVector& data) const override
    {
        // ID3v1 pads with NULs and spaces.
        QByteArrayView bytes(data.data(), qsizetype(data.size()));
        const qsizetype nul = bytes.indexOf('\0');
        if (nul >= 0)
            bytes = bytes.first(nul);
        return tstring(decodeLegacy(bytes, encoding));
    }
    TagLib::ByteVector render(const TagLib::String& text) const override { return text.data(TagLib::String::UTF8); }
};

class Silent : public TagLib::DebugListener {
public:
    void printMessage(const TagLib::String&) override {}
};

// TagLib keeps its string handlers and debug listener as globals: one set, installed once.
LegacyHandlers& legacyHandlers()
{
    static LegacyHandlers handlers;
    static Silent silent;
    static const bool installed = [] {
        TagLib::setDebugListener(&silent);
        TagLib::ID3v2::Tag::setLatin1StringHandler(&handlers);
        TagLib::ID3v1::Tag::setStringHandler(&handlers);
        TagLib::RIFF::Info::Tag::setStringHandler(&handlers);
        return true;
    }();
    (void)installed;
    return handlers;
}

enum class Kind { None, Mpeg, Flac, Vorbis, Opus, OggFlac, Speex, Mp4, Asf, Wav, Aiff, Ape, WavPack, Mpc, TrueAudio };

Kind kindOfMime(const QString& mime)
{
    static const QHash<QString, Kind> kinds = {
        {"audio/mpeg", Kind::Mpeg},       {"audio/flac", Kind::Flac},        {"audio/x-flac", Kind::Flac},
        {"audio/mp4", Kind::Mp4},         {"audio/x-m4a", Kind::Mp4},        {"video/mp4", Kind::Mp4},
        {"video/3gpp", Kind::Mp4},        {"video/quicktime", Kind::Mp4},
        {"video/x-ms-asf", Kind::Asf},    {"audio/x-ms-wma", Kind::Asf},     {"video/x-ms-wmv", Kind::Asf},
        {"application/vnd.ms-asf", Kind::Asf}, {"audio/x-wav", Kind::Wav},   {"audio/wav", Kind::Wav},
        {"audio/vnd.wave", Kind::Wav},    {"audio/x-aiff", Kind::Aiff},      {"audio/aiff", Kind::Aiff},
        {"audio/x-ape", Kind::Ape},       {"audio/x-wavpack", Kind::WavPack}, {"audio/x-musepack", Kind::Mpc},
        {"audio/x-tta", Kind::TrueAudio},
    };
    return kinds.value(mime, Kind::None);
}

bool isOgg(const QString& mime)
{
    return mime == QLatin1String("audio/ogg") || mime == QLatin1String("application/ogg")
           || mime == QLatin1String("audio/x-vorbis+ogg") || mime == QLatin1String("audio/opus");
}

// What libmagic calls generic is told apart by TagLib's own content checks; MPEG, whose
// frames can start anywhere, is tried last.
Kind kindOfStream(const QString& mime, TagLib::IOStream* stream)
{
    if (const Kind kind = kindOfMime(mime); kind != Kind::None)
        return kind;
    const bool ogg = isOgg(mime);
    if (!ogg && mime != QLatin1String("application/octet-stream"))
        return Kind::None;
    const std::pair<Kind, bool (*)(TagLib::IOStream*)> probes[] = {
        {Kind::Vorbis, &TagLib::Ogg::Vorbis::File::isSupported},
        {Kind::Opus, &TagLib::Ogg::Opus::File::isSupported},
        {Kind::OggFlac, &TagLib::Ogg::FLAC::File::isSupported},
        {Kind::Speex, &TagLib::Ogg::Speex::File::isSupported},
        {Kind::Flac, &TagLib::FLAC::File::isSupported},
        {Kind::Mp4, &TagLib::MP4::File::isSupported},
        {Kind::Asf, &TagLib::ASF::File::isSupported},
        {Kind::Wav, &TagLib::RIFF::WAV::File::isSupported},
        {Kind::Aiff, &TagLib::RIFF::AIFF::File::isSupported},
        {Kind::Ape, &TagLib::APE::File::isSupported},
        {Kind::WavPack, &TagLib::WavPack::File::isSupported},
        {Kind::Mpc, &TagLib::MPC::File::isSupported},
        {Kind::TrueAudio, &TagLib::TrueAudio::File::isSupported},
        {Kind::Mpeg, &TagLib::MPEG::File::isSupported},
    };
    for (const auto& [kind, supported] : probes) {
        if (ogg && kind == Kind::Flac)
            break;  // past the Ogg kinds
        stream->seek(0);
        if (supported(stream))
            return kind;
    }
    return Kind::None;
}

std::unique_ptr<TagLib::File> openAs(Kind kind, TagLib::IOStream* stream)
{
    using Style = TagLib::AudioProperties::ReadStyle;
    // Length and bitrate from the headers (and the Xing or VBRI header of an MP3), without
    // scanning the frames.
    constexpr Style style = TagLib::AudioProperties::Fast;
    TagLib::ID3v2::FrameFactory* frames = TagLib::ID3v2::FrameFactory::instance();
    stream->seek(0);
    switch (kind) {
    case Kind::Mpeg: return std::make_unique<TagLib::MPEG::File>(stream, frames, true, style);
    case Kind::Flac: return std::make_unique<TagLib::FLAC::File>(stream, frames, true, style);
    case Kind::Vorbis: return std::make_unique<TagLib::Ogg::Vorbis::File>(stream, true, style);
    case Kind::Opus: return std::make_unique<TagLib::Ogg::Opus::File>(stream, true, style);
    case Kind::OggFlac: return std::make_unique<TagLib::Ogg::FLAC::File>(stream, true, style);
    case Kind::Speex: return std::make_unique<TagLib::Ogg::Speex::File>(stream, true, style);
    case Kind::Mp4: return std::make_unique<TagLib::MP4::File>(stream, true, style);
    case Kind::Asf: return std::make_unique<TagLib::ASF::File>(stream, true, style);
    case Kind::Wav: return std::make_unique<TagLib::RIFF::WAV::File>(stream, true, style);
    case Kind::Aiff: return std::make_unique<TagLib::RIFF::AIFF::File>(stream, true, style);
    case Kind::Ape: return std::make_unique<TagLib::APE::File>(stream, true, style);
    case Kind::WavPack: return std::make_unique<TagLib::WavPack::File>(stream, true, style);
    case Kind::Mpc: return std::make_unique<TagLib::MPC::File>(stream, true, style);
    case Kind::TrueAudio: return std::make_unique<TagLib::TrueAudio::File>(stream, frames, true, style);
    case Kind::None: break;
    }
    return nullptr;
}

QString id3v2Name(const TagLib::ID3v2::Tag* tag)
{
    return QStringLiteral("ID3v2.%1").arg(tag->header()->majorVersion());
}

bool hasApic(TagLib::ID3v2::Tag* tag) { return tag && !tag->frameListMap()["APIC"].isEmpty(); }
bool hasApeCover(TagLib::APE::Tag* tag) { return tag && tag->itemListMap().contains("COVER ART (FRONT)"); }

struct Extras {
    QStringList tagTypes;
    bool cover = false;
    int bits = 0;
    // Tags read under the first one, whose fields fill in what it lacks (an MP3 with a
    // sparse ID3v2 tag and a full ID3v1 tag).
    std::vector<TagLib::Tag*> lesser;
};

template <typename File>
void noteId3v2(File& f, Extras& extras, bool present)
{
    if (!present)
        return;
    TagLib::ID3v2::Tag* tag = f.ID3v2Tag();
    extras.tagTypes.append(id3v2Name(tag));
    extras.cover = extras.cover || hasApic(tag);
}

Extras extrasOf(Kind kind, TagLib::File& file)
{
    Extras e;
    switch (kind) {
    case Kind::Mpeg: {
        auto& f = static_cast<TagLib::MPEG::File&>(file);
        if (f.hasID3v1Tag())
            e.tagTypes.append(QStringLiteral("ID3v1"));
        noteId3v2(f, e, f.hasID3v2Tag());
        if (f.hasAPETag())
            e.tagTypes.append(QStringLiteral("APE"));
        e.cover = e.cover || hasApeCover(f.APETag());
        if (f.hasAPETag())
            e.lesser.push_back(f.APETag());
        if (f.hasID3v1Tag())
            e.lesser.push_back(f.ID3v1Tag());
        break;
    }
    case Kind::Flac: {
        auto& f = static_cast<TagLib::FLAC::File&>(file);
        if (f.hasXiphComment())
            e.tagTypes.append(QStringLiteral("Xiph"));
        if (f.hasID3v1Tag())
            e.tagTypes.append(QStringLiteral("ID3v1"));
        noteId3v2(f, e, f.hasID3v2Tag());
        e.cover = e.cover || !f.pictureList().isEmpty();
        break;
    }
    case Kind::Vorbis:
    case Kind::Opus:
    case Kind::OggFlac:
    case Kind::Speex: {
        e.tagTypes.append(QStringLiteral("Xiph"));
        if (auto* xiph = dynamic_cast<TagLib::Ogg::XiphComment*>(file.tag()))
            e.cover = !xiph->pictureList().isEmpty();
        break;
    }
    case Kind::Mp4: {
        auto& f = static_cast<TagLib::MP4::File&>(file);
        if (f.hasMP4Tag())
            e.tagTypes.append(QStringLiteral("MP4"));
        e.cover = f.tag() && f.tag()->contains("covr");
        if (auto* p = f.audioProperties())
            e.bits = p->bitsPerSample();
        break;
    }
    case Kind::Asf: {
        auto& f = static_cast<TagLib::ASF::File&>(file);
        e.tagTypes.append(QStringLiteral("ASF"));
        e.cover = f.tag() && f.tag()->contains("WM/Picture");
        if (auto* p = f.audioProperties())
            e.bits = p->bitsPerSample();
        break;
    }
    case Kind::Wav: {
        auto& f = static_cast<TagLib::RIFF::WAV::File&>(file);
        noteId3v2(f, e, f.hasID3v2Tag());
        if (f.hasInfoTag())
            e.tagTypes.append(QStringLiteral("RIFF"));
        if (f.hasInfoTag() && f.hasID3v2Tag())
            e.lesser.push_back(f.InfoTag());
        if (auto* p = f.audioProperties())
            e.bits = p->bitsPerSample();
        break;
    }
    case Kind::Aiff: {
        auto& f = static_cast<TagLib::RIFF::AIFF::File&>(file);
        if (f.hasID3v2Tag()) {
            e.tagTypes.append(id3v2Name(f.tag()));
            e.cover = hasApic(f.tag());
        }
        if (auto* p = f.audioProperties())
            e.bits = p->bitsPerSample();
        break;
    }
    case Kind::Ape:
    case Kind::WavPack:
    case Kind::Mpc: {
        auto apeLike = [&](auto& f) {
            if (f.hasAPETag())
                e.tagTypes.append(QStringLiteral("APE"));
            if (f.hasID3v1Tag())
                e.tagTypes.append(QStringLiteral("ID3v1"));
            e.cover = hasApeCover(f.APETag());
            if (f.hasID3v1Tag() && f.hasAPETag())
                e.lesser.push_back(f.ID3v1Tag());
        };
        if (kind == Kind::Ape) {
            auto& f = static_cast<TagLib::APE::File&>(file);
            apeLike(f);
            if (auto* p = f.audioProperties())
                e.bits = p->bitsPerSample();
        } else if (kind == Kind::WavPack) {
            auto& f = static_cast<TagLib::WavPack::File&>(file);
            apeLike(f);
            if (auto* p = f.audioProperties())
                e.bits = p->bitsPerSample();
        } else {
            apeLike(static_cast<TagLib::MPC::File&>(file));
        }
        break;
    }
    case Kind::TrueAudio: {
        auto& f = static_cast<TagLib::TrueAudio::File&>(file);
        noteId3v2(f, e, f.hasID3v2Tag());
        if (f.hasID3v1Tag())
            e.tagTypes.append(QStringLiteral("ID3v1"));
        if (auto* p = f.audioProperties())
            e.bits = p->bitsPerSample();
        break;
    }
    case Kind::None: break;
    }
    if (kind == Kind::Flac) {
        if (auto* p = static_cast<TagLib::FLAC::File&>(file).audioProperties())
            e.bits = p->bitsPerSample();
    }
    return e;
}

// "3", "3/12", " 03 / 12 ": the number and the total (0 when absent).
std::pair<int, int> numberAndTotal(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral(R"(^\s*(\d+)\s*(?:/\s*(\d+))?)"));
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch())
        return {0, 0};
    return {m.captured(1).toInt(), m.hasCaptured(2) ? m.captured(2).toInt() : 0};
}

void setNumber(FamilyFields& out, const QString& name, int value)
{
    if (value > 0 && !out.fields.contains(name))
        out.set(name, FieldValue::number(value));
}

void addProperty(FamilyFields& out, const QString& key, const QStringList& values, bool fillOnly)
{
    const QString name = tagNameOf(key);
    if (name.isEmpty() || (fillOnly && out.fields.contains(name)) || values.isEmpty())
        return;
    if (name == QLatin1String("TRACKNUMBER") || name == QLatin1String("DISCNUMBER")) {
        const auto [number, total] = numberAndTotal(values.first());
        const bool track = name.startsWith(u'T');
        setNumber(out, track ? QStringLiteral("TRACK") : QStringLiteral("DISC"), number);
        setNumber(out, track ? QStringLiteral("TRACKTOTAL") : QStringLiteral("DISCTOTAL"), total);
        return;
    }
    if (name == QLatin1String("TRACKTOTAL") || name == QLatin1String("TOTALTRACKS")
        || name == QLatin1String("DISCTOTAL") || name == QLatin1String("TOTALDISCS")) {
        setNumber(out, name.contains(QLatin1String("TRACK")) ? QStringLiteral("TRACKTOTAL") : QStringLiteral("DISCTOTAL"),
                  numberAndTotal(values.first()).first);
        return;
    }
    QStringList trimmed;
    for (const QString& value : values)
        trimmed.append(value.trimmed());
    out.set(name, trimmed.size() == 1 ? FieldValue::text(trimmed.first()) : FieldValue::list(trimmed));
    if (name == QLatin1String("DATE") && !out.fields.contains(QStringLiteral("YEAR"))) {
        const QString year = trimmed.first().left(4);
        if (year.size() == 4 && year.toInt() > 0)
            out.set(QStringLiteral("YEAR"), FieldValue::text(year));
    }
}

void addProperties(FamilyFields& out, const TagLib::PropertyMap& map, bool fillOnly)
{
    for (auto it = map.begin(); it != map.end(); ++it) {
        QStringList values;
        for (const TagLib::String& value : it->second)
            values.append(qstring(value));
        addProperty(out, qstring(it->first), values, fillOnly);
    }
}

QString minutesAndSeconds(int seconds)
{
    const int hours = seconds / 3600;
    const QString rest = QStringLiteral("%1:%2").arg(hours ? (seconds / 60) % 60 : seconds / 60, hours ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    return hours ? QString::number(hours) + u':' + rest : rest;
}

void addAudio(FamilyFields& out, const TagLib::AudioProperties* audio, int bits)
{
    if (!audio)
        return;
    const int seconds = audio->lengthInSeconds();
    if (seconds > 0 || audio->lengthInMilliseconds() > 0) {
        out.set(QStringLiteral("LENGTH"), FieldValue::number(seconds));
        out.set(QStringLiteral("LENGTHTEXT"), FieldValue::text(minutesAndSeconds(seconds)));
    }
    setNumber(out, QStringLiteral("BITRATE"), audio->bitrate());
    setNumber(out, QStringLiteral("SAMPLERATE"), audio->sampleRate());
    setNumber(out, QStringLiteral("CHANNELS"), audio->channels());
    setNumber(out, QStringLiteral("BITS"), bits);
}

class MusicReader : public FieldReader {
public:
    QChar family() const override { return u'M'; }

    bool accepts(const ContentType& type) const override
    {
        return kindOfMime(type.mime) != Kind::None || isOgg(type.mime)
               || type.mime == QLatin1String("application/octet-stream");
    }

    FamilyFields read(const ByteSource& source, const ContentType& type, const ReadRequest& request) override
    {
        FamilyFields out;
        out.status = ReadStatus::Broken;
        legacyHandlers().encoding = request.legacy;
        SourceStream stream(source);
        const Kind kind = kindOfStream(type.mime, &stream);
        if (kind == Kind::None) {
            out.status = ReadStatus::NotThisKind;
            return out;
        }
        std::unique_ptr<TagLib::File> file = openAs(kind, &stream);
        if (!file || !file->isValid())
            return out;
        const Extras extras = extrasOf(kind, *file);
        addProperties(out, file->properties(), false);
        for (TagLib::Tag* lesser : extras.lesser)
            addProperties(out, lesser->properties(), true);
        addAudio(out, file->audioProperties(), extras.bits);
        if (!extras.tagTypes.isEmpty())
            out.set(QStringLiteral("TAGTYPE"), FieldValue::list(extras.tagTypes));
        out.set(QStringLiteral("HASCOVER"), FieldValue::number(extras.cover ? 1 : 0));
        out.set(QStringLiteral("HASLYRICS"), FieldValue::number(out.fields.contains(QStringLiteral("LYRICS")) ? 1 : 0));
        out.status = ReadStatus::Ok;
        return out;
    }
};

}  // namespace

std::unique_ptr<FieldReader> makeMusicReader() { return std::make_unique<MusicReader>(); }

}  // namespace qp::metadata
