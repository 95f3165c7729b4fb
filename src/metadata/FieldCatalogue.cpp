#include "metadata/FieldCatalogue.h"

#include <QCoreApplication>
#include <QHash>

namespace qp::metadata {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("FieldCatalogue", text); }

using P = ParameterKind;

struct Row {
    const char* name;
    const char* description;
    P parameter = P::None;
    const char* defaultParameter = "";
};

// The picture of dates and times: "<FDATE>" and "<FTIME>" joined, as names take them.
const char* const kMomentPicture = "yyyy-mm-dd hh.nn.ss";

const Row kMusic[] = {
    {"TITLE", QT_TRANSLATE_NOOP("FieldCatalogue", "标题")},
    {"ARTIST", QT_TRANSLATE_NOOP("FieldCatalogue", "艺术家")},
    {"ALBUM", QT_TRANSLATE_NOOP("FieldCatalogue", "专辑")},
    {"ALBUMARTIST", QT_TRANSLATE_NOOP("FieldCatalogue", "专辑艺术家")},
    {"TRACK", QT_TRANSLATE_NOOP("FieldCatalogue", "音轨号"), P::Digits, "2"},
    {"TRACKTOTAL", QT_TRANSLATE_NOOP("FieldCatalogue", "音轨总数"), P::Digits, "2"},
    {"DISC", QT_TRANSLATE_NOOP("FieldCatalogue", "碟片号"), P::Digits, "1"},
    {"DISCTOTAL", QT_TRANSLATE_NOOP("FieldCatalogue", "碟片总数"), P::Digits, "1"},
    {"YEAR", QT_TRANSLATE_NOOP("FieldCatalogue", "年份")},
    {"DATE", QT_TRANSLATE_NOOP("FieldCatalogue", "发行日期（按标签原样）")},
    {"GENRE", QT_TRANSLATE_NOOP("FieldCatalogue", "流派")},
    {"COMMENT", QT_TRANSLATE_NOOP("FieldCatalogue", "注释")},
    {"COMPOSER", QT_TRANSLATE_NOOP("FieldCatalogue", "作曲")},
    {"LYRICIST", QT_TRANSLATE_NOOP("FieldCatalogue", "作词")},
    {"CONDUCTOR", QT_TRANSLATE_NOOP("FieldCatalogue", "指挥")},
    {"COPYRIGHT", QT_TRANSLATE_NOOP("FieldCatalogue", "版权")},
    {"ENCODEDBY", QT_TRANSLATE_NOOP("FieldCatalogue", "编码者")},
    {"BPM", QT_TRANSLATE_NOOP("FieldCatalogue", "每分钟节拍数")},
    {"ISRC", QT_TRANSLATE_NOOP("FieldCatalogue", "国际标准音像制品编码")},
    {"LABEL", QT_TRANSLATE_NOOP("FieldCatalogue", "唱片公司")},
    {"ORIGINALDATE", QT_TRANSLATE_NOOP("FieldCatalogue", "原始发行日期（按标签原样）")},
    {"COMPILATION", QT_TRANSLATE_NOOP("FieldCatalogue", "是否为合辑"), P::Flag, "1/0"},
    {"LENGTH", QT_TRANSLATE_NOOP("FieldCatalogue", "时长（秒）")},
    {"LENGTHTEXT", QT_TRANSLATE_NOOP("FieldCatalogue", "时长（分:秒）"), P::Separator, "."},
    {"BITRATE", QT_TRANSLATE_NOOP("FieldCatalogue", "比特率（kbps）")},
    {"SAMPLERATE", QT_TRANSLATE_NOOP("FieldCatalogue", "采样率（Hz）")},
    {"CHANNELS", QT_TRANSLATE_NOOP("FieldCatalogue", "声道数")},
    {"BITS", QT_TRANSLATE_NOOP("FieldCatalogue", "采样位数")},
    {"TAGTYPE", QT_TRANSLATE_NOOP("FieldCatalogue", "标签类型（ID3v1、ID3v2.3、ID3v2.4、APE、Xiph、MP4、ASF、RIFF）"),
     P::Separator, "+"},
    {"HASCOVER", QT_TRANSLATE_NOOP("FieldCatalogue", "是否有封面图片"), P::Flag, "1/0"},
    {"HASLYRICS", QT_TRANSLATE_NOOP("FieldCatalogue", "是否有歌词"), P::Flag, "1/0"},
};

const Row kPhoto[] = {
    {"DATETAKEN", QT_TRANSLATE_NOOP("FieldCatalogue", "拍摄时间（按功能页选定的来源依次查找）"), P::Picture, kMomentPicture},
    {"DATEORIGINAL", QT_TRANSLATE_NOOP("FieldCatalogue", "EXIF 原始拍摄时间"), P::Picture, kMomentPicture},
    {"DATEDIGITIZED", QT_TRANSLATE_NOOP("FieldCatalogue", "EXIF 数字化时间"), P::Picture, kMomentPicture},
    {"XMPCREATEDATE", QT_TRANSLATE_NOOP("FieldCatalogue", "XMP 创建时间"), P::Picture, kMomentPicture},
    {"MAKE", QT_TRANSLATE_NOOP("FieldCatalogue", "相机厂商")},
    {"MODEL", QT_TRANSLATE_NOOP("FieldCatalogue", "相机型号")},
    {"LENS", QT_TRANSLATE_NOOP("FieldCatalogue", "镜头")},
    {"ISO", QT_TRANSLATE_NOOP("FieldCatalogue", "感光度（ISO）")},
    {"FNUMBER", QT_TRANSLATE_NOOP("FieldCatalogue", "光圈（f/2.8）"), P::Separator, ""},
    {"EXPOSURE", QT_TRANSLATE_NOOP("FieldCatalogue", "曝光时间（1/250）"), P::Separator, "-"},
    {"FOCAL", QT_TRANSLATE_NOOP("FieldCatalogue", "焦距（毫米）")},
    {"FOCAL35", QT_TRANSLATE_NOOP("FieldCatalogue", "等效 35 毫米焦距")},
    {"FLASH", QT_TRANSLATE_NOOP("FieldCatalogue", "闪光灯是否闪光"), P::Flag, "1/0"},
    {"WIDTH", QT_TRANSLATE_NOOP("FieldCatalogue", "图像宽度（像素）")},
    {"HEIGHT", QT_TRANSLATE_NOOP("FieldCatalogue", "图像高度（像素）")},
    {"ORIENTATION", QT_TRANSLATE_NOOP("FieldCatalogue", "方向（1-8）")},
    {"ARTIST", QT_TRANSLATE_NOOP("FieldCatalogue", "作者（EXIF）")},
    {"COPYRIGHT", QT_TRANSLATE_NOOP("FieldCatalogue", "版权（EXIF）")},
    {"DESCRIPTION", QT_TRANSLATE_NOOP("FieldCatalogue", "图像描述（EXIF）")},
    {"XPTITLE", QT_TRANSLATE_NOOP("FieldCatalogue", "Windows 标题")},
    {"XPCOMMENT", QT_TRANSLATE_NOOP("FieldCatalogue", "Windows 备注")},
    {"XPAUTHOR", QT_TRANSLATE_NOOP("FieldCatalogue", "Windows 作者")},
    {"XPKEYWORDS", QT_TRANSLATE_NOOP("FieldCatalogue", "Windows 标记")},
    {"XPSUBJECT", QT_TRANSLATE_NOOP("FieldCatalogue", "Windows 主题")},
    {"RATING", QT_TRANSLATE_NOOP("FieldCatalogue", "评级（0-5）")},
    {"GPSLATITUDE", QT_TRANSLATE_NOOP("FieldCatalogue", "GPS 纬度（十进制度数，南纬为负）"), P::Decimals, "6"},
    {"GPSLONGITUDE", QT_TRANSLATE_NOOP("FieldCatalogue", "GPS 经度（十进制度数，西经为负）"), P::Decimals, "6"},
    {"GPSALTITUDE", QT_TRANSLATE_NOOP("FieldCatalogue", "GPS 海拔（米）"), P::Decimals, "1"},
    {"GPSLATITUDEDMS", QT_TRANSLATE_NOOP("FieldCatalogue", "GPS 纬度（度分秒）")},
    {"GPSLONGITUDEDMS", QT_TRANSLATE_NOOP("FieldCatalogue", "GPS 经度（度分秒）")},
    {"BYLINE", QT_TRANSLATE_NOOP("FieldCatalogue", "IPTC 作者")},
    {"CAPTION", QT_TRANSLATE_NOOP("FieldCatalogue", "IPTC 说明")},
    {"KEYWORDS", QT_TRANSLATE_NOOP("FieldCatalogue", "IPTC 关键词"), P::Separator, ","},
    {"CITY", QT_TRANSLATE_NOOP("FieldCatalogue", "IPTC 城市")},
    {"COUNTRY", QT_TRANSLATE_NOOP("FieldCatalogue", "IPTC 国家")},
    {"KEY", QT_TRANSLATE_NOOP("FieldCatalogue", "任意 Exif、IPTC 或 XMP 键的值（参数为键名）"), P::Key, "Exif.Image.Make"},
};

const Row kMedia[] = {
    {"FORMAT", QT_TRANSLATE_NOOP("FieldCatalogue", "容器格式")},
    {"DURATION", QT_TRANSLATE_NOOP("FieldCatalogue", "时长（毫秒）")},
    {"DURATIONTEXT", QT_TRANSLATE_NOOP("FieldCatalogue", "时长（时:分:秒）"), P::Separator, "."},
    {"OVERALLBITRATE", QT_TRANSLATE_NOOP("FieldCatalogue", "总比特率（kbps）")},
    {"ENCODEDDATE", QT_TRANSLATE_NOOP("FieldCatalogue", "编码日期"), P::Picture, kMomentPicture},
    {"RECORDEDDATE", QT_TRANSLATE_NOOP("FieldCatalogue", "录制日期"), P::Picture, kMomentPicture},
    {"TITLE", QT_TRANSLATE_NOOP("FieldCatalogue", "标题")},
    {"WIDTH", QT_TRANSLATE_NOOP("FieldCatalogue", "视频宽度（像素）")},
    {"HEIGHT", QT_TRANSLATE_NOOP("FieldCatalogue", "视频高度（像素）")},
    {"FRAMERATE", QT_TRANSLATE_NOOP("FieldCatalogue", "帧率（帧/秒）")},
    {"ASPECT", QT_TRANSLATE_NOOP("FieldCatalogue", "显示宽高比（16:9）"), P::Separator, "x"},
    {"VCODEC", QT_TRANSLATE_NOOP("FieldCatalogue", "视频编码")},
    {"BITDEPTH", QT_TRANSLATE_NOOP("FieldCatalogue", "视频位深")},
    {"HDR", QT_TRANSLATE_NOOP("FieldCatalogue", "HDR 格式")},
    {"ROTATION", QT_TRANSLATE_NOOP("FieldCatalogue", "视频旋转角度")},
    {"ACODEC", QT_TRANSLATE_NOOP("FieldCatalogue", "音频编码")},
    {"CHANNELS", QT_TRANSLATE_NOOP("FieldCatalogue", "声道数")},
    {"SAMPLERATE", QT_TRANSLATE_NOOP("FieldCatalogue", "采样率（Hz）")},
    {"ABITRATE", QT_TRANSLATE_NOOP("FieldCatalogue", "音频比特率（kbps）")},
    {"LANGUAGE", QT_TRANSLATE_NOOP("FieldCatalogue", "音频语言")},
    {"VIDEOCOUNT", QT_TRANSLATE_NOOP("FieldCatalogue", "视频流数")},
    {"AUDIOCOUNT", QT_TRANSLATE_NOOP("FieldCatalogue", "音频流数")},
    {"TEXTCOUNT", QT_TRANSLATE_NOOP("FieldCatalogue", "字幕流数")},
    {"INFO", QT_TRANSLATE_NOOP("FieldCatalogue", "MediaInfo 的任意参数（参数为“种类;参数名”）"), P::Key, "General;Format"},
};

template <std::size_t N>
std::vector<FieldInfo> fieldsOf(const Row (&rows)[N])
{
    std::vector<FieldInfo> fields;
    fields.reserve(N);
    for (const Row& row : rows)
        fields.push_back({QLatin1String(row.name), tr(row.description), row.parameter, QString::fromUtf8(row.defaultParameter)});
    return fields;
}

using Index = QHash<QString, const FieldInfo*>;

const QHash<QChar, Index>& fieldIndex()
{
    static const QHash<QChar, Index> index = [] {
        QHash<QChar, Index> byFamily;
        for (const FamilyInfo& family : fieldFamilies()) {
            Index& fields = byFamily[family.letter];
            for (const FieldInfo& field : family.fields)
                fields.insert(field.name, &field);
        }
        return byFamily;
    }();
    return index;
}

}  // namespace

const std::vector<FamilyInfo>& fieldFamilies()
{
    static const std::vector<FamilyInfo> families = [] {
        std::vector<FamilyInfo> list;
        list.push_back({u'M', tr("音乐标签"), tr("1.M.音乐标签更名"), QStringLiteral("<M.TRACK> <M.ARTIST> - <M.TITLE>"),
                        fieldsOf(kMusic)});
        list.push_back({u'D', tr("照片信息"), tr("1.D.照片信息更名"), QStringLiteral("<D.DATETAKEN> <D.MODEL>"),
                        fieldsOf(kPhoto)});
        list.push_back({u'C', tr("媒体信息"), tr("1.C.媒体信息更名"),
                        QStringLiteral("<C.TITLE> <C.WIDTH>x<C.HEIGHT> <C.DURATIONTEXT>"), fieldsOf(kMedia)});
        return list;
    }();
    return families;
}

const FamilyInfo* familyOf(QChar letter)
{
    for (const FamilyInfo& family : fieldFamilies()) {
        if (family.letter == letter)
            return &family;
    }
    return nullptr;
}

const FieldInfo* listedField(QChar family, QStringView name)
{
    const auto& index = fieldIndex();
    const auto fields = index.constFind(family);
    if (fields == index.constEnd())
        return nullptr;
    return fields->value(name.toString(), nullptr);
}

QString fieldTag(QChar family, const QString& name) { return u'<' + family + u'.' + name + u'>'; }

QString tagNameOf(QStringView key)
{
    QString name;
    name.reserve(key.size());
    for (const QChar c : key) {
        const char16_t u = c.unicode();
        if ((u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9'))
            name += c;
        else if (u >= u'a' && u <= u'z')
            name += QChar(u - 32);
    }
    return name;
}

}  // namespace qp::metadata
