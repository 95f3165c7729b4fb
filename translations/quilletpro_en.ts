<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>CharacterSets</name>
    <message>
        <source>数字（0-9）</source>
        <translation>Digits (0-9)</translation>
    </message>
    <message>
        <source>英文字母（a-z、A-Z）</source>
        <translation>English letters (a-z, A-Z)</translation>
    </message>
    <message>
        <source>英文标点符号</source>
        <translation>English punctuation</translation>
    </message>
    <message>
        <source>中文汉字</source>
        <translation>Chinese characters</translation>
    </message>
    <message>
        <source>中文标点符号</source>
        <translation>Chinese punctuation</translation>
    </message>
    <message>
        <source>全角字符</source>
        <translation>Full-width characters</translation>
    </message>
    <message>
        <source>空白字符</source>
        <translation>White space</translation>
    </message>
    <message>
        <source>括号</source>
        <translation>Brackets</translation>
    </message>
    <message>
        <source>日文假名</source>
        <translation>Japanese kana</translation>
    </message>
    <message>
        <source>韩文字母</source>
        <translation>Korean letters</translation>
    </message>
    <message>
        <source>表情符号</source>
        <translation>Emoji</translation>
    </message>
</context>
<context>
    <name>FieldCatalogue</name>
    <message>
        <source>标题</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>艺术家</source>
        <translation>Artist</translation>
    </message>
    <message>
        <source>专辑</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>专辑艺术家</source>
        <translation>Album artist</translation>
    </message>
    <message>
        <source>音轨号</source>
        <translation>Track number</translation>
    </message>
    <message>
        <source>音轨总数</source>
        <translation>Total tracks</translation>
    </message>
    <message>
        <source>碟片号</source>
        <translation>Disc number</translation>
    </message>
    <message>
        <source>碟片总数</source>
        <translation>Total discs</translation>
    </message>
    <message>
        <source>年份</source>
        <translation>Year</translation>
    </message>
    <message>
        <source>发行日期（按标签原样）</source>
        <translation>Release date (as written in the tag)</translation>
    </message>
    <message>
        <source>流派</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>注释</source>
        <translation>Comment</translation>
    </message>
    <message>
        <source>作曲</source>
        <translation>Composer</translation>
    </message>
    <message>
        <source>作词</source>
        <translation>Lyricist</translation>
    </message>
    <message>
        <source>指挥</source>
        <translation>Conductor</translation>
    </message>
    <message>
        <source>版权</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>编码者</source>
        <translation>Encoded by</translation>
    </message>
    <message>
        <source>每分钟节拍数</source>
        <translation>Beats per minute</translation>
    </message>
    <message>
        <source>国际标准音像制品编码</source>
        <translation>International Standard Recording Code (ISRC)</translation>
    </message>
    <message>
        <source>唱片公司</source>
        <translation>Record label</translation>
    </message>
    <message>
        <source>原始发行日期（按标签原样）</source>
        <translation>Original release date (as written in the tag)</translation>
    </message>
    <message>
        <source>是否为合辑</source>
        <translation>Whether it is a compilation</translation>
    </message>
    <message>
        <source>时长（秒）</source>
        <translation>Duration (seconds)</translation>
    </message>
    <message>
        <source>时长（分:秒）</source>
        <translation>Duration (minutes:seconds)</translation>
    </message>
    <message>
        <source>比特率（kbps）</source>
        <translation>Bit rate (kbps)</translation>
    </message>
    <message>
        <source>采样率（Hz）</source>
        <translation>Sample rate (Hz)</translation>
    </message>
    <message>
        <source>声道数</source>
        <translation>Number of channels</translation>
    </message>
    <message>
        <source>采样位数</source>
        <translation>Bits per sample</translation>
    </message>
    <message>
        <source>标签类型（ID3v1、ID3v2.3、ID3v2.4、APE、Xiph、MP4、ASF、RIFF）</source>
        <translation>Tag types (ID3v1, ID3v2.3, ID3v2.4, APE, Xiph, MP4, ASF, RIFF)</translation>
    </message>
    <message>
        <source>是否有封面图片</source>
        <translation>Whether it has a cover picture</translation>
    </message>
    <message>
        <source>是否有歌词</source>
        <translation>Whether it has lyrics</translation>
    </message>
    <message>
        <source>拍摄时间（按功能页选定的来源依次查找）</source>
        <translation>Date taken (looked up in the sources chosen on the function page, in order)</translation>
    </message>
    <message>
        <source>EXIF 原始拍摄时间</source>
        <translation>EXIF original date taken</translation>
    </message>
    <message>
        <source>EXIF 数字化时间</source>
        <translation>EXIF digitised time</translation>
    </message>
    <message>
        <source>XMP 创建时间</source>
        <translation>XMP creation time</translation>
    </message>
    <message>
        <source>相机厂商</source>
        <translation>Camera make</translation>
    </message>
    <message>
        <source>相机型号</source>
        <translation>Camera model</translation>
    </message>
    <message>
        <source>镜头</source>
        <translation>Lens</translation>
    </message>
    <message>
        <source>感光度（ISO）</source>
        <translation>Sensitivity (ISO)</translation>
    </message>
    <message>
        <source>光圈（f/2.8）</source>
        <translation>Aperture (f/2.8)</translation>
    </message>
    <message>
        <source>曝光时间（1/250）</source>
        <translation>Exposure time (1/250)</translation>
    </message>
    <message>
        <source>焦距（毫米）</source>
        <translation>Focal length (mm)</translation>
    </message>
    <message>
        <source>等效 35 毫米焦距</source>
        <translation>35 mm equivalent focal length</translation>
    </message>
    <message>
        <source>闪光灯是否闪光</source>
        <translation>Whether the flash fired</translation>
    </message>
    <message>
        <source>图像宽度（像素）</source>
        <translation>Image width (pixels)</translation>
    </message>
    <message>
        <source>图像高度（像素）</source>
        <translation>Image height (pixels)</translation>
    </message>
    <message>
        <source>方向（1-8）</source>
        <translation>Orientation (1-8)</translation>
    </message>
    <message>
        <source>作者（EXIF）</source>
        <translation>Author (EXIF)</translation>
    </message>
    <message>
        <source>版权（EXIF）</source>
        <translation>Copyright (EXIF)</translation>
    </message>
    <message>
        <source>图像描述（EXIF）</source>
        <translation>Image description (EXIF)</translation>
    </message>
    <message>
        <source>Windows 标题</source>
        <translation>Windows title</translation>
    </message>
    <message>
        <source>Windows 备注</source>
        <translation>Windows comments</translation>
    </message>
    <message>
        <source>Windows 作者</source>
        <translation>Windows authors</translation>
    </message>
    <message>
        <source>Windows 标记</source>
        <translation>Windows tags</translation>
    </message>
    <message>
        <source>Windows 主题</source>
        <translation>Windows subject</translation>
    </message>
    <message>
        <source>评级（0-5）</source>
        <translation>Rating (0-5)</translation>
    </message>
    <message>
        <source>GPS 纬度（十进制度数，南纬为负）</source>
        <translation>GPS latitude (decimal degrees, negative for south)</translation>
    </message>
    <message>
        <source>GPS 经度（十进制度数，西经为负）</source>
        <translation>GPS longitude (decimal degrees, negative for west)</translation>
    </message>
    <message>
        <source>GPS 海拔（米）</source>
        <translation>GPS altitude (metres)</translation>
    </message>
    <message>
        <source>GPS 纬度（度分秒）</source>
        <translation>GPS latitude (degrees, minutes, seconds)</translation>
    </message>
    <message>
        <source>GPS 经度（度分秒）</source>
        <translation>GPS longitude (degrees, minutes, seconds)</translation>
    </message>
    <message>
        <source>IPTC 作者</source>
        <translation>IPTC by-line</translation>
    </message>
    <message>
        <source>IPTC 说明</source>
        <translation>IPTC caption</translation>
    </message>
    <message>
        <source>IPTC 关键词</source>
        <translation>IPTC keywords</translation>
    </message>
    <message>
        <source>IPTC 城市</source>
        <translation>IPTC city</translation>
    </message>
    <message>
        <source>IPTC 国家</source>
        <translation>IPTC country</translation>
    </message>
    <message>
        <source>任意 Exif、IPTC 或 XMP 键的值（参数为键名）</source>
        <translation>The value of any Exif, IPTC or XMP key (the parameter names the key)</translation>
    </message>
    <message>
        <source>容器格式</source>
        <translation>Container format</translation>
    </message>
    <message>
        <source>时长（毫秒）</source>
        <translation>Duration (milliseconds)</translation>
    </message>
    <message>
        <source>时长（时:分:秒）</source>
        <translation>Duration (hours:minutes:seconds)</translation>
    </message>
    <message>
        <source>总比特率（kbps）</source>
        <translation>Overall bit rate (kbps)</translation>
    </message>
    <message>
        <source>编码日期</source>
        <translation>Encoded date</translation>
    </message>
    <message>
        <source>录制日期</source>
        <translation>Recorded date</translation>
    </message>
    <message>
        <source>视频宽度（像素）</source>
        <translation>Video width (pixels)</translation>
    </message>
    <message>
        <source>视频高度（像素）</source>
        <translation>Video height (pixels)</translation>
    </message>
    <message>
        <source>帧率（帧/秒）</source>
        <translation>Frame rate (frames per second)</translation>
    </message>
    <message>
        <source>显示宽高比（16:9）</source>
        <translation>Display aspect ratio (16:9)</translation>
    </message>
    <message>
        <source>视频编码</source>
        <translation>Video codec</translation>
    </message>
    <message>
        <source>视频位深</source>
        <translation>Video bit depth</translation>
    </message>
    <message>
        <source>HDR 格式</source>
        <translation>HDR format</translation>
    </message>
    <message>
        <source>视频旋转角度</source>
        <translation>Video rotation (degrees)</translation>
    </message>
    <message>
        <source>音频编码</source>
        <translation>Audio codec</translation>
    </message>
    <message>
        <source>音频比特率（kbps）</source>
        <translation>Audio bit rate (kbps)</translation>
    </message>
    <message>
        <source>音频语言</source>
        <translation>Audio language</translation>
    </message>
    <message>
        <source>视频流数</source>
        <translation>Number of video streams</translation>
    </message>
    <message>
        <source>音频流数</source>
        <translation>Number of audio streams</translation>
    </message>
    <message>
        <source>字幕流数</source>
        <translation>Number of subtitle streams</translation>
    </message>
    <message>
        <source>MediaInfo 的任意参数（参数为“种类;参数名”）</source>
        <translation>Any MediaInfo parameter (the parameter is “stream kind;parameter name”)</translation>
    </message>
</context>
<context>
    <name>MetaVariableCatalogue</name>
    <message>
        <source>日期时间格式：yy 两位年份，yyyy 四位年份；m 月（1-12），mm 月（01-12），mmm 月份简称，mmmm 月份全称；
d 日（1-31），dd 日（01-31），ddd 星期简称，dddd 星期全称，ddddd 短日期，dddddd 长日期；
h 时（0-23），hh 时（00-23）；n 分（0-59），nn 分（00-59）；s 秒（0-59），ss 秒（00-59）；
其它字符原样保留。</source>
        <translation>Date and time format: yy two-digit year, yyyy four-digit year; m month (1-12), mm month (01-12), mmm short month name, mmmm full month name;
d day (1-31), dd day (01-31), ddd short weekday name, dddd full weekday name, ddddd short date, dddddd long date;
h hour (0-23), hh hour (00-23); n minute (0-59), nn minute (00-59); s second (0-59), ss second (00-59);
other characters are kept as they are.</translation>
    </message>
    <message>
        <source>由同组的元变量组成的文本，例如“&lt;Y&gt;年&lt;M&gt;月&lt;D&gt;日”；其中每个元变量按它自己的格式展开。</source>
        <translation>A text made of meta-variables of the same group, such as “&lt;Y&gt;-&lt;M&gt;-&lt;D&gt;”; each meta-variable in it is expanded in its own format.</translation>
    </message>
    <message>
        <source>层数：向下统计的文件夹层数，0 表示所有层，1 表示只统计文件夹本身的内容。</source>
        <translation>Levels: how many folder levels to count downwards; 0 means all levels, 1 only the folder&apos;s own contents.</translation>
    </message>
    <message>
        <source>单位：AUTO（自动）、KB、MB、GB、TB 或 B（字节）；
“,”：使用千位分隔符（AUTO 时无效）；
(单位文本)：() 单位紧跟数字，( ) 数字与单位之间有一个空格，其它文本代替单位名称；不写括号则不显示单位。</source>
        <translation>Unit: AUTO (automatic), KB, MB, GB, TB or B (bytes);
“,”: use thousands separators (not with AUTO);
(unit text): () the unit follows the number directly, ( ) one space between number and unit, any other text replaces the unit name; without brackets no unit is shown.</translation>
    </message>
    <message>
        <source>只对文件夹有效；文件的值为空。需遍历文件夹，层数越多越慢。</source>
        <translation>Folders only; empty for files. The folder has to be walked; the more levels, the slower.</translation>
    </message>
    <message>
        <source>年份</source>
        <translation>Year</translation>
    </message>
    <message>
        <source>月份</source>
        <translation>Month</translation>
    </message>
    <message>
        <source>日</source>
        <translation>Day</translation>
    </message>
    <message>
        <source>星期</source>
        <translation>Weekday</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>小时</source>
        <translation>Hour</translation>
    </message>
    <message>
        <source>分钟</source>
        <translation>Minute</translation>
    </message>
    <message>
        <source>秒</source>
        <translation>Second</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>实际文件名（含扩展名）</source>
        <translation>Actual file name (with extension)</translation>
    </message>
    <message>
        <source>当前新文件名（含扩展名）</source>
        <translation>Current new file name (with extension)</translation>
    </message>
    <message>
        <source>即命令列表中前面的命令处理后的结果。</source>
        <translation>That is, the result of the commands before it in the command list.</translation>
    </message>
    <message>
        <source>实际文件名（不含扩展名）</source>
        <translation>Actual file name (without extension)</translation>
    </message>
    <message>
        <source>当前新文件名（不含扩展名）</source>
        <translation>Current new file name (without extension)</translation>
    </message>
    <message>
        <source>实际扩展名（含“.”）</source>
        <translation>Actual extension (with “.”)</translation>
    </message>
    <message>
        <source>当前新扩展名（含“.”）</source>
        <translation>Current new extension (with “.”)</translation>
    </message>
    <message>
        <source>实际扩展名（不含“.”）</source>
        <translation>Actual extension (without “.”)</translation>
    </message>
    <message>
        <source>当前新扩展名（不含“.”）</source>
        <translation>Current new extension (without “.”)</translation>
    </message>
    <message>
        <source>文件名字符串的 CRC32 校验值（8 位大写十六进制）</source>
        <translation>CRC32 of the file name text (8 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>(FN) 含扩展名的文件名；(EE) 不含扩展名的文件名；(PN) 含路径的完整文件名；(OE) 只有扩展名</source>
        <translation>(FN) file name with extension; (EE) file name without extension; (PN) full name with path; (OE) extension only</translation>
    </message>
    <message>
        <source>字符串按 UTF-8 编码计算；只取写在最前面的一个代码。</source>
        <translation>The text is hashed as UTF-8; only the first code written counts.</translation>
    </message>
    <message>
        <source>文件名字符串的 MD5 校验值（32 位大写十六进制）</source>
        <translation>MD5 of the file name text (32 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>文件名字符串的 SHA1 校验值（40 位大写十六进制）</source>
        <translation>SHA1 of the file name text (40 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>文件内容的 CRC32 校验值（8 位大写十六进制）</source>
        <translation>CRC32 of the file&apos;s contents (8 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>需读取整个文件，文件越大越慢；文件夹的值为空。</source>
        <translation>The whole file has to be read; the larger the file, the slower. Empty for folders.</translation>
    </message>
    <message>
        <source>文件内容的 MD5 校验值（32 位大写十六进制）</source>
        <translation>MD5 of the file&apos;s contents (32 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>文件内容的 SHA1 校验值（40 位大写十六进制）</source>
        <translation>SHA1 of the file&apos;s contents (40 upper-case hexadecimal digits)</translation>
    </message>
    <message>
        <source>文件大小</source>
        <translation>File size</translation>
    </message>
    <message>
        <source>例：AUTO( ) 为 1.50 KB，KB() 为 2KB，B,( Byte(s)) 为 7,654,321 Byte(s)。文件夹的值为空。</source>
        <translation>Examples: AUTO( ) gives 1.50 KB, KB() gives 2KB, B,( Byte(s)) gives 7,654,321 Byte(s). Empty for folders.</translation>
    </message>
    <message>
        <source>对象所在文件夹中所有文件的大小之和</source>
        <translation>Total size of all files in the object&apos;s folder</translation>
    </message>
    <message>
        <source>文件夹内所有文件的大小之和</source>
        <translation>Total size of all files in the folder</translation>
    </message>
    <message>
        <source>层数/：向下统计的文件夹层数，0 表示所有层；其后同 &lt;SIZE&gt; 的参数</source>
        <translation>levels/: how many folder levels to count downwards, 0 for all; then the parameters of &lt;SIZE&gt;</translation>
    </message>
    <message>
        <source>按行号生成的序号</source>
        <translation>Sequence number from the row number</translation>
    </message>
    <message>
        <source>起始值/增量/位数：序号 = 起始值 + 行号 × 增量，不足位数时左边补 0</source>
        <translation>start/step/digits: number = start + row number × step, padded on the left with 0 to the number of digits</translation>
    </message>
    <message>
        <source>例：3/2/3 依次为 003、005、007……</source>
        <translation>Example: 3/2/3 gives 003, 005, 007…</translation>
    </message>
    <message>
        <source>对象的属性</source>
        <translation>The object&apos;s attributes</translation>
    </message>
    <message>
        <source>a：字母（A、R、H、S，没有属性时为 N）；aa：英文单词；aaa：中文（存档、只读、隐藏、系统、正常）；
(分隔符)：属性之间的分隔文本</source>
        <translation>a: letters (A, R, H, S; N when there is none); aa: English words; aaa: Chinese words (for archive, read-only, hidden, system, normal);
(separator): the text between attributes</translation>
    </message>
    <message>
        <source>例：aa(-) 为 Archive-ReadOnly。</source>
        <translation>Example: aa(-) gives Archive-ReadOnly.</translation>
    </message>
    <message>
        <source>上级文件夹的名称</source>
        <translation>Name of a parent folder</translation>
    </message>
    <message>
        <source>层：1 为所在文件夹，2 为再上一级……；0 为盘符；
层(分隔符)层：取两层之间的所有文件夹名，以分隔符连接；
-&gt;：从最上层的文件夹开始向下数</source>
        <translation>level: 1 is the containing folder, 2 the one above it…; 0 is the drive;
level(separator)level: all folder names between the two levels, joined by the separator;
-&gt;: count downwards from the topmost folder</translation>
    </message>
    <message>
        <source>超出的层数取最远的文件夹。</source>
        <translation>Levels beyond the top give the topmost folder.</translation>
    </message>
    <message>
        <source>随机字符串</source>
        <translation>Random text</translation>
    </message>
    <message>
        <source>长度；(N) 数字，(UC) 大写字母，(LC) 小写字母，(UL) 下划线，可任意组合</source>
        <translation>length; (N) digits, (UC) upper-case letters, (LC) lower-case letters, (UL) underscore, in any combination</translation>
    </message>
    <message>
        <source>同一文本中的多个 &lt;R&gt; 取同一个值。</source>
        <translation>Several &lt;R&gt; in one text take the same value.</translation>
    </message>
    <message>
        <source>实际文件名（不含扩展名）的子字符串</source>
        <translation>Part of the actual file name (without extension)</translation>
    </message>
    <message>
        <source>起始位置/长度；(L) 从左边数起，(R) 从右边数起</source>
        <translation>start/length; (L) counted from the left, (R) counted from the right</translation>
    </message>
    <message>
        <source>例：对 ABCDEFGHIJK，1/1(L) 为 A，2/3 为 BCD，2/3(R) 为 HIJ。</source>
        <translation>Example: for ABCDEFGHIJK, 1/1(L) gives A, 2/3 gives BCD, 2/3(R) gives HIJ.</translation>
    </message>
    <message>
        <source>当前新文件名（不含扩展名）的子字符串</source>
        <translation>Part of the current new file name (without extension)</translation>
    </message>
    <message>
        <source>对象所在文件夹中的文件和文件夹数</source>
        <translation>Number of files and folders in the object&apos;s folder</translation>
    </message>
    <message>
        <source>对象所在文件夹中的文件数</source>
        <translation>Number of files in the object&apos;s folder</translation>
    </message>
    <message>
        <source>对象所在文件夹中的文件夹数</source>
        <translation>Number of folders in the object&apos;s folder</translation>
    </message>
    <message>
        <source>文件夹内的文件和子文件夹数</source>
        <translation>Number of files and subfolders in the folder</translation>
    </message>
    <message>
        <source>文件夹内的文件数</source>
        <translation>Number of files in the folder</translation>
    </message>
    <message>
        <source>文件夹内的子文件夹数</source>
        <translation>Number of subfolders in the folder</translation>
    </message>
    <message>
        <source>更名文件列表的总行数</source>
        <translation>Total number of rows of the rename list</translation>
    </message>
    <message>
        <source>文件夹内有名称含指定字符串的对象时为该字符串，否则为空</source>
        <translation>The given text when the folder holds an object whose name contains it, else empty</translation>
    </message>
    <message>
        <source>层数；/DIR：文件夹名也参与查找；(字符串)：要查找的字符串</source>
        <translation>levels; /DIR: folder names are searched too; (text): the text to look for</translation>
    </message>
    <message>
        <source>当前</source>
        <translation>Current</translation>
    </message>
    <message>
        <source>文件修改</source>
        <translation>File modified</translation>
    </message>
    <message>
        <source>文件创建</source>
        <translation>File created</translation>
    </message>
    <message>
        <source>文件访问</source>
        <translation>File accessed</translation>
    </message>
    <message>
        <source>在“设置”菜单的“用户自定义元变量”中定义；没有对应行时为空。</source>
        <translation>Defined under “User meta-variables” in the Settings menu; empty where a list has no line for the row.</translation>
    </message>
    <message>
        <source>最少位数：不足时左边补 0，例如 2 时 3 写为 03</source>
        <translation>Fewest digits: padded on the left with 0; with 2, for example, 3 is written 03</translation>
    </message>
    <message>
        <source>日期时间格式，同 &lt;FDATE&gt; 等：yyyy 年，mm 月，dd 日，hh 时，nn 分，ss 秒……；
另有 zzz 毫秒（文件没有时为 000），oooo 与 UTC 的时差（如 +0800，文件没有时为空）。
按文件记录的当地时间写出，不换算到本机时区。</source>
        <translation>Date and time format, as for &lt;FDATE&gt; and the like: yyyy year, mm month, dd day, hh hour, nn minute, ss second…;
also zzz milliseconds (000 when the file has none), oooo the offset from UTC (such as +0800; empty when the file has none).
Written in the local time the file records, not converted to this computer&apos;s time zone.</translation>
    </message>
    <message>
        <source>是的文字/否的文字，例如 [封面]/ 表示有封面时写 [封面]，没有时什么也不写</source>
        <translation>yes text/no text; for example [cover]/ writes [cover] when there is a cover and nothing when there is none</translation>
    </message>
    <message>
        <source>代替值中“/”或“:”的文字（文件名不能含这两个字符）；值有多项时，为项与项之间的文字</source>
        <translation>The text that replaces “/” or “:” in the value (file names cannot contain them); for a value of several items, the text between the items</translation>
    </message>
    <message>
        <source>小数位数</source>
        <translation>Decimal places</translation>
    </message>
    <message>
        <source>要读取的键名；命令行 quillet fields 文件名 列出文件的全部键，括号中的部分即为键名</source>
        <translation>The key to read; on the command line, quillet fields FILE lists every key of a file, and the part in brackets is the key&apos;s name</translation>
    </message>
    <message>
        <source>文件没有此字段时为空；在对应的功能页可改为对象保持不变或使用替代文字。</source>
        <translation>Empty when the file has no such field; on the matching function page you can choose to leave the object unchanged or to use a substitute text instead.</translation>
    </message>
</context>
<context>
    <name>MetaVariableMenu</name>
    <message>
        <source>文件名与扩展名</source>
        <translation>File name and extension</translation>
    </message>
    <message>
        <source>用户自定义元变量</source>
        <translation>User meta-variables</translation>
    </message>
    <message>
        <source>文件名校验值</source>
        <translation>File name hash</translation>
    </message>
    <message>
        <source>文件内容校验值</source>
        <translation>File content hash</translation>
    </message>
    <message>
        <source>大小</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>序号、属性、文件夹与子串</source>
        <translation>Number, attributes, folders and substrings</translation>
    </message>
    <message>
        <source>数量与查找</source>
        <translation>Counts and search</translation>
    </message>
    <message>
        <source>当前日期</source>
        <translation>Current date</translation>
    </message>
    <message>
        <source>当前时间</source>
        <translation>Current time</translation>
    </message>
    <message>
        <source>修改日期</source>
        <translation>Modified date</translation>
    </message>
    <message>
        <source>修改时间</source>
        <translation>Modified time</translation>
    </message>
    <message>
        <source>创建日期</source>
        <translation>Created date</translation>
    </message>
    <message>
        <source>创建时间</source>
        <translation>Created time</translation>
    </message>
    <message>
        <source>访问日期</source>
        <translation>Accessed date</translation>
    </message>
    <message>
        <source>访问时间</source>
        <translation>Accessed time</translation>
    </message>
</context>
<context>
    <name>MetadataCommands</name>
    <message>
        <source>替换整个文件名</source>
        <translation>Replace the whole file name</translation>
    </message>
    <message>
        <source>添加到文件名之前</source>
        <translation>Add before the file name</translation>
    </message>
    <message>
        <source>添加到文件名之后</source>
        <translation>Add after the file name</translation>
    </message>
    <message>
        <source>插入到指定位置</source>
        <translation>Insert at a position</translation>
    </message>
</context>
<context>
    <name>NormalCommands</name>
    <message>
        <source>直接添加字符串</source>
        <translation>Add text</translation>
    </message>
    <message>
        <source>补齐添加字符串</source>
        <translation>Pad with text</translation>
    </message>
    <message>
        <source>查找替换字符串</source>
        <translation>Find and replace text</translation>
    </message>
    <message>
        <source>以左右间隔为界查找替换字符串</source>
        <translation>Find and replace between delimiters</translation>
    </message>
    <message>
        <source>清空文件名</source>
        <translation>Clear the file name</translation>
    </message>
    <message>
        <source>去除两端空格</source>
        <translation>Trim spaces at both ends</translation>
    </message>
    <message>
        <source>删除/保留指定位置和数量</source>
        <translation>Delete/keep at a position and count</translation>
    </message>
    <message>
        <source>以指定字符串为界剪裁</source>
        <translation>Cut at a given text</translation>
    </message>
    <message>
        <source>删除/保留以左右间隔为界的字符串</source>
        <translation>Delete/keep the text between delimiters</translation>
    </message>
    <message>
        <source>删除/保留部分字符串</source>
        <translation>Delete/keep parts of the text</translation>
    </message>
    <message>
        <source>插入自动编号到指定位置</source>
        <translation>Insert a number at a position</translation>
    </message>
    <message>
        <source>插入自动编号到指定字符串位置</source>
        <translation>Insert a number at a text</translation>
    </message>
    <message>
        <source>使用表达式插入自动编号</source>
        <translation>Insert a number by expression</translation>
    </message>
    <message>
        <source>移动指定位置和字符数的子字符串</source>
        <translation>Move characters at a position</translation>
    </message>
    <message>
        <source>移动以左右间隔为界的子字符串</source>
        <translation>Move the text between delimiters</translation>
    </message>
    <message>
        <source>移动指定子字符串</source>
        <translation>Move a given text</translation>
    </message>
    <message>
        <source>全部大写</source>
        <translation>ALL UPPER CASE</translation>
    </message>
    <message>
        <source>全部小写</source>
        <translation>all lower case</translation>
    </message>
    <message>
        <source>一大一小</source>
        <translation>AlTeRnAtE (upper first)</translation>
    </message>
    <message>
        <source>一小一大</source>
        <translation>aLtErNaTe (lower first)</translation>
    </message>
    <message>
        <source>大小写反转</source>
        <translation>Invert case</translation>
    </message>
    <message>
        <source>随机大小写</source>
        <translation>Random case</translation>
    </message>
    <message>
        <source>单词首字母大写后面小写</source>
        <translation>Capitalise Each Word, Rest Lower</translation>
    </message>
    <message>
        <source>单词首字母大写后面不变</source>
        <translation>Capitalise each word, rest unchanged</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，且已经发现更名死循环问题。</source>
        <translation>%1 of the new file names already exist on disk: the renames conflict, and a rename cycle was found.</translation>
    </message>
    <message>
        <source>即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，但未发现更名死循环问题。</source>
        <translation>%1 of the new file names already exist on disk: the renames conflict, but no rename cycle was found.</translation>
    </message>
</context>
<context>
    <name>QDialog</name>
    <message>
        <source>确定(&amp;O)</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>导出的文件类型</source>
        <translation>File types to export</translation>
    </message>
    <message>
        <source>%1 毫秒</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 秒</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 分 %2 秒</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>文件大小</source>
        <translation>File size</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>右</source>
        <translation>right</translation>
    </message>
    <message>
        <source>保持不变</source>
        <translation>Leave unchanged</translation>
    </message>
    <message>
        <source>把本组的设置作为一条命令加入命令列表，并结束这条命令</source>
        <translation>Add this group&apos;s settings to the command list as one command and end that command</translation>
    </message>
    <message>
        <source>元变量</source>
        <translation>Meta-variables</translation>
    </message>
</context>
<context>
    <name>RegexSubstitution</name>
    <message>
        <source>替换结果超过 %1 个字符</source>
        <translation>the replacement is longer than %1 characters</translation>
    </message>
</context>
<context>
    <name>TRenameWarningForm</name>
    <message>
        <source>序号</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>图标</source>
        <translation>Icon</translation>
    </message>
    <message>
        <source>实际文件名</source>
        <translation>Actual file name</translation>
    </message>
    <message>
        <source>新文件名</source>
        <translation>New file name</translation>
    </message>
    <message>
        <source>路径</source>
        <translation>Path</translation>
    </message>
</context>
<context>
    <name>qp</name>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>载入失败！批处理命令文件不存在：%1</source>
        <translation>Loading failed! The command file does not exist: %1</translation>
    </message>
    <message>
        <source>载入失败！文件超过 64 MB，不是批处理命令文件：%1</source>
        <translation>Loading failed! The file is larger than 64 MB and is no command file: %1</translation>
    </message>
    <message>
        <source>载入失败！无法读取批处理命令文件：%1（%2）</source>
        <translation>Loading failed! The command file cannot be read: %1 (%2)</translation>
    </message>
    <message>
        <source>载入失败！文件中含有空字符（NUL），不是批处理命令文件：%1</source>
        <translation>Loading failed! The file contains NUL characters and is no command file: %1</translation>
    </message>
    <message>
        <source>载入失败！批处理命令文件的编码格式错误，正确的为 UTF-8 编码格式：%1</source>
        <translation>Loading failed! The command file is not in the right encoding, which is UTF-8: %1</translation>
    </message>
    <message>
        <source>批处理命令文件保存失败：%1（%2）</source>
        <translation>The command file could not be saved: %1 (%2)</translation>
    </message>
    <message>
        <source>批处理命令文件保存成功。</source>
        <translation>The command file was saved.</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>命令列表不为空，载入命令批处理文件将清除现有更名命令，确认吗？</source>
        <translation>The command list is not empty; loading a command file replaces the current rename commands. Go ahead?</translation>
    </message>
    <message>
        <source>载入失败！文件中没有 [CommandList] 字段，可能不是批处理命令文件或文件已损坏：%1</source>
        <translation>Loading failed! The file has no [CommandList] section; it may be no command file, or it is damaged: %1</translation>
    </message>
    <message>
        <source>载入失败！批处理命令文件中没有可用的命令：%1</source>
        <translation>Loading failed! The command file holds no usable command: %1</translation>
    </message>
    <message>
        <source>载入失败！无法写入设置文件，命令列表未改变。</source>
        <translation>Loading failed! The settings file cannot be written; the command list is unchanged.</translation>
    </message>
    <message>
        <source>批处理命令文件中有 %1 条命令缺少命令字段或无法使用，已跳过。</source>
        <translation>%1 commands of the command file lack their command section or cannot be used and were skipped.</translation>
    </message>
    <message>
        <source>批处理命令文件中的命令数（%1）与所列命令不符，已载入所列的 %2 条命令。</source>
        <translation>The command count of the command file (%1) does not match the commands listed; the %2 listed commands were loaded.</translation>
    </message>
    <message>
        <source>批处理命令文件中的其它字段已合并到设置文件：%1</source>
        <translation>The command file&apos;s other sections were merged into the settings file: %1</translation>
    </message>
    <message>
        <source> 等 %1 个</source>
        <translation> and %1 more</translation>
    </message>
    <message>
        <source>确定要清除最近打开的批处理命令文件列表吗？</source>
        <translation>Clear the list of recently opened command files?</translation>
    </message>
    <message>
        <source>更名文件列表中内容为导入的更名方案文件或快照文件，还未进行处理，继续操作更名方案或快照可能被忽略。继续吗？</source>
        <translation>The rename list holds an imported rename programme or snapshot that has not been applied yet; going on may lose it. Go ahead?</translation>
    </message>
    <message>
        <source>请返回【1.文件名处理】版块使用此项功能。</source>
        <translation>Please go back to the page [1. File names] to use this function.</translation>
    </message>
    <message>
        <source>即将清空命令列表中的所有命令，新文件名和新扩展名列将还原为原始状态。此操作不可逆，是否继续？</source>
        <translation>All commands of the command list are about to be removed, and the new name and new extension columns go back to the original names. This cannot be undone. Go ahead?</translation>
    </message>
    <message>
        <source>清空命令列表完毕。</source>
        <translation>The command list was cleared.</translation>
    </message>
    <message>
        <source>正在还原文件名</source>
        <translation>Restoring the file names</translation>
    </message>
    <message>
        <source>无法写入：%1（%2）</source>
        <translation>Cannot write: %1 (%2)</translation>
    </message>
    <message>
        <source>无法设为可执行：%1</source>
        <translation>Cannot make executable: %1</translation>
    </message>
    <message>
        <source>无法读取 Thunar 的自定义动作文件：%1（%2）</source>
        <translation>Cannot read Thunar&apos;s custom actions file: %1 (%2)</translation>
    </message>
    <message>
        <source>Thunar 的自定义动作文件不是有效的 XML，未做改动：%1</source>
        <translation>Thunar&apos;s custom actions file is not well-formed XML and was left unchanged: %1</translation>
    </message>
    <message>
        <source>无法删除：%1</source>
        <translation>Cannot delete: %1</translation>
    </message>
    <message>
        <source>大小范围的下限大于上限。</source>
        <translation>The lower end of the size range is above the upper end.</translation>
    </message>
    <message>
        <source>日期范围的起始日期晚于结束日期。</source>
        <translation>The start of the date range is after its end.</translation>
    </message>
    <message>
        <source>筛选未进行：</source>
        <translation>Nothing was filtered: </translation>
    </message>
    <message>
        <source>正在筛选更名文件列表</source>
        <translation>Filtering the rename list</translation>
    </message>
    <message>
        <source>筛选完成：保留 %1 个对象，移除 %2 个对象。</source>
        <translation>Filtering done: %1 objects kept, %2 objects removed.</translation>
    </message>
    <message>
        <source>更新信息过大（超过 %1 字节）。</source>
        <translation>The update information is too large (more than %1 bytes).</translation>
    </message>
    <message>
        <source>更新信息不是有效的 JSON 对象。</source>
        <translation>The update information is not a valid JSON object.</translation>
    </message>
    <message>
        <source>更新信息中的版本号无效：“%1”</source>
        <translation>The version in the update information is not valid: “%1”</translation>
    </message>
    <message>
        <source>更新信息中的下载地址无效。</source>
        <translation>The download address in the update information is not valid.</translation>
    </message>
    <message>
        <source>更新信息中的 SHA-256 校验值无效。</source>
        <translation>The SHA-256 checksum in the update information is not valid.</translation>
    </message>
    <message>
        <source>更名对照列表</source>
        <translation>Rename contrast list</translation>
    </message>
    <message>
        <source>无法写入文件：%1（%2）</source>
        <translation>Cannot write the file: %1 (%2)</translation>
    </message>
    <message>
        <source>Excel 97-2003 格式的工作表最多有 %1 列。</source>
        <translation>A sheet in the Excel 97-2003 format has at most %1 columns.</translation>
    </message>
    <message>
        <source>列表</source>
        <translation>List</translation>
    </message>
    <message>
        <source>无法创建临时文件</source>
        <translation>cannot create a temporary file</translation>
    </message>
    <message>
        <source>用户自定义元变量：字符串列表 %1 中与对象行号相同的一行</source>
        <translation>User meta-variable: the line of text list %1 with the object&apos;s row number</translation>
    </message>
    <message>
        <source>描述：</source>
        <translation>Description: </translation>
    </message>
    <message>
        <source>缺省设置：</source>
        <translation>Default: </translation>
    </message>
    <message>
        <source>无</source>
        <translation>none</translation>
    </message>
    <message>
        <source>参数：</source>
        <translation>Parameter: </translation>
    </message>
    <message>
        <source>说明：</source>
        <translation>Notes: </translation>
    </message>
    <message>
        <source>分析文件结构</source>
        <translation>Reading the folder structure</translation>
    </message>
    <message>
        <source>剔除重复对象</source>
        <translation>Removing duplicate objects</translation>
    </message>
    <message>
        <source>对象过滤</source>
        <translation>Filtering objects</translation>
    </message>
    <message>
        <source>载入对象至列表</source>
        <translation>Loading objects into the list</translation>
    </message>
    <message>
        <source>正在遍历各文件夹并剔除重复对象</source>
        <translation>Walking the folders and removing duplicate objects</translation>
    </message>
    <message>
        <source>文件列表中的对象以及新载入的对象数量均过于庞大，将导致在接下来剔除重复对象操作时间太长。请做出以下选择：</source>
        <translation>Both the file list and the objects being loaded are very large, so removing duplicates will take a long time. Please choose:</translation>
    </message>
    <message>
        <source>自动剔除重复对象，按“是”；</source>
        <translation>to remove duplicate objects, press “Yes”;</translation>
    </message>
    <message>
        <source>新载入的对象与文件列表不会有重复，直接载入文件列表，按“否”；</source>
        <translation>if the new objects cannot repeat the listed ones, load them directly: press “No”;</translation>
    </message>
    <message>
        <source>取消载入新对象，按“取消”。</source>
        <translation>to load nothing, press “Cancel”.</translation>
    </message>
    <message>
        <source>%1更名：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>正在读取文件信息</source>
        <translation>Reading file information</translation>
    </message>
    <message>
        <source>批处理命令文件中的脚本设置未合并到设置文件：%1</source>
        <translation>The command file&apos;s script settings were not merged into the settings file: %1</translation>
    </message>
    <message>
        <source>：</source>
        <translation>: </translation>
    </message>
</context>
<context>
    <name>qp::FieldNameCommand</name>
    <message>
        <source>有 %1 个文件无法读取%2（文件已不存在、为空、已损坏或不是此类文件）。</source>
        <translation>%2: %1 files could not be read (they no longer exist, are empty, are damaged or are not of this kind).</translation>
    </message>
    <message>
        <source>有 %1 个对象缺少模板所用的%2字段，保持不变。</source>
        <translation>%2: %1 objects lack fields the template uses and stay unchanged.</translation>
    </message>
</context>
<context>
    <name>qp::InteractionDialogs</name>
    <message>
        <source>更名列表中共有 %1 个对象。简单更名不过滤非法字符、不处理空文件名、不为同一文件夹中的重名编号、不删除末尾的空格和点、不调整新文件名是其它对象旧文件名时的更名顺序，也不处理更名死循环。<byte value="xd"/>
<byte value="xd"/>
是：选择简单更名继续；否：选择智能更名继续；取消：先不更名了，我再考虑一下。</source>
        <translation>The rename list holds %1 objects. Simple rename does not remove invalid characters, does not handle empty names, does not number duplicate names in one folder, does not remove trailing spaces and dots, does not reorder renames whose new name is another object&apos;s old name, and does not resolve rename cycles.</translation>
    </message>
    <message>
        <source>批量更名方式选择</source>
        <translation>Choose the way to rename</translation>
    </message>
    <message>
        <source>即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突。</source>
        <translation>%1 of the new file names already exist on disk: the renames conflict.</translation>
    </message>
    <message>
        <source>更名冲突警告</source>
        <translation>Rename conflict warning</translation>
    </message>
    <message>
        <source>不再提示本对话框并直接启用智能更名继续操作</source>
        <translation>Do not show this dialog again and go on with smart rename</translation>
    </message>
    <message>
        <source>以下对象为系统属性：</source>
        <translation>These objects have the system attribute:</translation>
    </message>
    <message>
        <source>以下对象为只读属性：</source>
        <translation>These objects are read-only:</translation>
    </message>
    <message>
        <source>按以上设置进行更名操作而不再询问</source>
        <translation>Rename as set above without asking again</translation>
    </message>
    <message>
        <source>以下文件名（含路径）的总长度大于系统规定：（系统规定含“:”“\”字符最长为258字符）</source>
        <translation>The full length of these file names (with path) is above the system&apos;s limit (at most 258 characters, “:” and “\” included):</translation>
    </message>
</context>
<context>
    <name>qp::Loader</name>
    <message>
        <source>无法读取列表文件：</source>
        <translation>Cannot read the list file: </translation>
    </message>
    <message>
        <source>列表文件中有 %1 行不是完整路径，已忽略。</source>
        <translation>%1 lines of the list file are not full paths and were ignored.</translation>
    </message>
    <message>
        <source>列表文件中有 %1 行不是有效的 UTF-8 文本，已忽略。</source>
        <translation>%1 lines of the list file are not valid UTF-8 text and were ignored.</translation>
    </message>
    <message>
        <source>另有 %1 个对象因同样的原因被跳过。</source>
        <translation>%1 more objects were skipped for the same reason.</translation>
    </message>
    <message>
        <source>未发现新对象！</source>
        <translation>No new objects found!</translation>
    </message>
    <message>
        <source>对象载入完毕。</source>
        <translation>The objects are loaded.</translation>
    </message>
    <message>
        <source>对象不存在：</source>
        <translation>The object does not exist: </translation>
    </message>
    <message>
        <source>无法读取文件夹：</source>
        <translation>Cannot read the folder: </translation>
    </message>
    <message>
        <source>文件名编码无法识别，已跳过：</source>
        <translation>The name&apos;s encoding is not recognised, skipped: </translation>
    </message>
    <message>
        <source>警告</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>您选择了新载入的对象不剔除重复而直接载入文件列表。如文件列表中存在重复对象将导致更名时出现错误，继续吗？</source>
        <translation>You chose to load the new objects without removing duplicates. Duplicate objects in the list cause errors when renaming. Go ahead?</translation>
    </message>
    <message>
        <source>更名文件列表中未发现文件夹，无需遍历。</source>
        <translation>The rename list holds no folders; there is nothing to traverse.</translation>
    </message>
    <message>
        <source>更名文件列表中发现 2 个或以上的文件夹，分别遍历这些文件夹时须剔除重复对象，视实际情况而定可能会比直接遍历载入方式花更长的处理时间。是否继续？</source>
        <translation>The rename list holds 2 or more folders. Walking each of them means removing duplicate objects, which may take longer than loading them directly. Go ahead?</translation>
    </message>
</context>
<context>
    <name>qp::Pipeline</name>
    <message>
        <source>无法识别的命令，已跳过：%1（CMDid=%2）</source>
        <translation>Unknown command, skipped: %1 (CMDid=%2)</translation>
    </message>
    <message>
        <source>正在执行命令序列</source>
        <translation>Running the command list</translation>
    </message>
    <message>
        <source>命令序列执行完毕。</source>
        <translation>The command list has run.</translation>
    </message>
    <message>
        <source>正在还原新文件名和新扩展名</source>
        <translation>Restoring the new names and new extensions</translation>
    </message>
    <message>
        <source>正在执行命令</source>
        <translation>Running the command</translation>
    </message>
    <message>
        <source>命令执行完毕。</source>
        <translation>The command has run.</translation>
    </message>
</context>
<context>
    <name>qp::Preview</name>
    <message>
        <source>正在查找和修正问题</source>
        <translation>Finding and fixing problems</translation>
    </message>
    <message>
        <source>文件已存在，新文件名存在更名冲突：</source>
        <translation>The file exists; the new file name conflicts: </translation>
    </message>
    <message>
        <source>判断是否存在更名死循环</source>
        <translation>Looking for rename cycles</translation>
    </message>
    <message>
        <source>预览全部对象已被强制终止。</source>
        <translation>The preview of all objects was stopped.</translation>
    </message>
    <message>
        <source>预览全部对象执行完毕。</source>
        <translation>The preview of all objects is complete.</translation>
    </message>
</context>
<context>
    <name>qp::ProgrammeFile</name>
    <message>
        <source>无法写入文件：%1（%2）</source>
        <translation>Cannot write the file: %1 (%2)</translation>
    </message>
    <message>
        <source>更名方案导出成功。</source>
        <translation>The rename programme was exported.</translation>
    </message>
    <message>
        <source>导入更名方案文件或快照文件时将清空更名文件列表和所有更名操作，确认吗？</source>
        <translation>Importing a rename programme or snapshot file clears the rename list and all rename commands. Go ahead?</translation>
    </message>
    <message>
        <source>无法读取文件：%1（%2）</source>
        <translation>Cannot read the file: %1 (%2)</translation>
    </message>
    <message>
        <source>导入失败！可能是更名方案文件或快照文件的格式错误，或是更名方案文件或快照文件内所列的对象不存在。</source>
        <translation>Import failed! The rename programme or snapshot file may be malformed, or the objects it lists do not exist.</translation>
    </message>
    <message>
        <source>导入失败！更名方案文件或快照文件的编码格式错误，正确的为 UTF-8 编码格式。</source>
        <translation>Import failed! The rename programme or snapshot file is not in the right encoding, which is UTF-8.</translation>
    </message>
    <message>
        <source>载入对象至列表</source>
        <translation>Loading objects into the list</translation>
    </message>
    <message>
        <source>对象不存在：</source>
        <translation>The object does not exist: </translation>
    </message>
    <message>
        <source>另有 %1 个对象因同样的原因被跳过。</source>
        <translation>%1 more objects were skipped for the same reason.</translation>
    </message>
    <message>
        <source>导入完成！未能载入内容，请检查后重试。</source>
        <translation>Import finished, but nothing could be loaded. Please check the file and try again.</translation>
    </message>
    <message>
        <source>导入成功！请进行应用更名操作，其它操作可能会改变新文件名和新扩展名两列内容。</source>
        <translation>Imported! Apply the renames now; other operations may change the new name and new extension columns.</translation>
    </message>
</context>
<context>
    <name>qp::RegexOnExtension</name>
    <message>
        <source>扩展名正则表达式有误，所有名称保持不变：%1（位置 %2）：%3</source>
        <translation>The extension&apos;s regular expression has an error; every name stays unchanged: %1 (position %2): %3</translation>
    </message>
    <message>
        <source>扩展名正则表达式的替换文本有误，所有名称保持不变：%1：%2</source>
        <translation>The replacement text of the extension&apos;s regular expression has an error; every name stays unchanged: %1: %2</translation>
    </message>
    <message>
        <source>扩展名正则表达式无法用于“%1”，该名称保持不变：%2</source>
        <translation>The extension&apos;s regular expression cannot be applied to “%1”; that name stays unchanged: %2</translation>
    </message>
</context>
<context>
    <name>qp::RegexOnName</name>
    <message>
        <source>正则表达式有误，所有名称保持不变：%1（位置 %2）：%3</source>
        <translation>The regular expression has an error; every name stays unchanged: %1 (position %2): %3</translation>
    </message>
    <message>
        <source>正则表达式的替换文本有误，所有名称保持不变：%1：%2</source>
        <translation>The replacement text of the regular expression has an error; every name stays unchanged: %1: %2</translation>
    </message>
    <message>
        <source>正则表达式无法用于“%1”，该名称保持不变：%2</source>
        <translation>The regular expression cannot be applied to “%1”; that name stays unchanged: %2</translation>
    </message>
</context>
<context>
    <name>qp::RenameRunner</name>
    <message>
        <source>更名确认</source>
        <translation>Confirm rename</translation>
    </message>
    <message>
        <source>开始进行批量更名，确认吗？</source>
        <translation>Start the batch rename?</translation>
    </message>
    <message>
        <source>命令列表中含有修改文件扩展名的命令。如果改变文件扩展名，可能会导致文件不可用。</source>
        <translation>The command list contains commands that change file extensions. A file whose extension changes may no longer open.</translation>
    </message>
    <message>
        <source>确实要更改吗？</source>
        <translation>Change them anyway?</translation>
    </message>
    <message>
        <source>准备批量更名</source>
        <translation>Preparing the batch rename</translation>
    </message>
    <message>
        <source>创建存放自动快照的文件夹失败！</source>
        <translation>The folder for the automatic snapshots could not be created!</translation>
    </message>
    <message>
        <source>智能更名失败！用户可以自行手动更名两次来达到目的。</source>
        <translation>Smart rename failed! You can reach the same names by renaming twice yourself.</translation>
    </message>
</context>
<context>
    <name>qp::RenameRunner::Run</name>
    <message>
        <source>正在智能处理</source>
        <translation>Smart processing</translation>
    </message>
    <message>
        <source>只读属性，跳过：</source>
        <translation>Read-only, skipped: </translation>
    </message>
    <message>
        <source>系统属性，跳过：</source>
        <translation>System attribute, skipped: </translation>
    </message>
    <message>
        <source>超出系统规定长度，跳过：</source>
        <translation>Longer than the system allows, skipped: </translation>
    </message>
    <message>
        <source>无法写入文件：%1（%2）</source>
        <translation>Cannot write the file: %1 (%2)</translation>
    </message>
    <message>
        <source>正在准备更名数据</source>
        <translation>Preparing the rename data</translation>
    </message>
    <message>
        <source>智能更名失败！用户可以自行手动更名两次来达到目的。</source>
        <translation>Smart rename failed! You can reach the same names by renaming twice yourself.</translation>
    </message>
    <message>
        <source>文件夹更名失败：</source>
        <translation>Renaming the folder failed: </translation>
    </message>
    <message>
        <source>文件更名失败：</source>
        <translation>Renaming the file failed: </translation>
    </message>
    <message>
        <source>正在批量更名</source>
        <translation>Renaming</translation>
    </message>
    <message>
        <source>对象批量更名完成。</source>
        <translation>The batch rename is complete.</translation>
    </message>
    <message>
        <source>更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个</source>
        <translation>%1 objects in the rename list: %2 renamed, %3 failed, %4 skipped</translation>
    </message>
    <message>
        <source>对象批量更名完成！</source>
        <translation>The batch rename is complete!</translation>
    </message>
    <message>
        <source>。</source>
        <translation>.</translation>
    </message>
</context>
<context>
    <name>qp::RowFilter</name>
    <message>
        <source>正则表达式有误：%1（第 %2 个字符处）</source>
        <translation>The regular expression has an error: %1 (at character %2)</translation>
    </message>
</context>
<context>
    <name>qp::Undo</name>
    <message>
        <source>撤销更名确认</source>
        <translation>Confirm undo</translation>
    </message>
    <message>
        <source>终止当前所有操作，准备撤销上一次的批量更名，确认吗？</source>
        <translation>Stop all current operations and undo the last batch rename?</translation>
    </message>
    <message>
        <source>撤销上一次的批量更名出现错误！</source>
        <translation>Undoing the last batch rename went wrong!</translation>
    </message>
    <message>
        <source>读取撤销批量更名数据</source>
        <translation>Reading the undo data</translation>
    </message>
    <message>
        <source>对象不存在：</source>
        <translation>The object does not exist: </translation>
    </message>
    <message>
        <source>正在准备撤销更名数据</source>
        <translation>Preparing the undo data</translation>
    </message>
    <message>
        <source>智能撤销更名失败！</source>
        <translation>Smart undo failed!</translation>
    </message>
    <message>
        <source>正在撤销批量更名</source>
        <translation>Undoing the batch rename</translation>
    </message>
    <message>
        <source>文件夹恢复更名失败：</source>
        <translation>Restoring the folder&apos;s name failed: </translation>
    </message>
    <message>
        <source>文件恢复更名失败：</source>
        <translation>Restoring the file&apos;s name failed: </translation>
    </message>
    <message>
        <source>撤销上一次的批量更名完成。</source>
        <translation>The last batch rename was undone.</translation>
    </message>
    <message>
        <source>撤销上一次的批量更名完成！更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个</source>
        <translation>The last batch rename was undone! %1 objects in the rename list: %2 restored, %3 failed, %4 skipped</translation>
    </message>
    <message>
        <source>快照中还有 %1 个对象未能恢复，快照文件已保留：%2</source>
        <translation>%1 objects of the snapshot could not be restored; the snapshot file was kept: %2</translation>
    </message>
</context>
<context>
    <name>qp::cli::CliApp</name>
    <message>
        <source>显示帮助 (show this help)</source>
        <translation>show this help</translation>
    </message>
    <message>
        <source>显示版本 (show the version)</source>
        <translation>show the version</translation>
    </message>
    <message>
        <source>使用指定的设置文件 (settings file to use)</source>
        <translation>settings file to use</translation>
    </message>
    <message>
        <source>仅本次运行覆盖一个设置项，不保存 (override one setting for this run)</source>
        <translation>override one setting for this run</translation>
    </message>
    <message>
        <source>再载入列表文件中的每个完整路径 (also load every path of a list file)</source>
        <translation>also load every path of a list file</translation>
    </message>
    <message>
        <source>运行该批处理命令文件的命令列表 (run this command file&apos;s list)</source>
        <translation>run this command file&apos;s list</translation>
    </message>
    <message>
        <source>遍历文件夹 (load everything below the folders)</source>
        <translation>load everything below the folders</translation>
    </message>
    <message>
        <source>不含文件夹名 (no rows for the folders themselves)</source>
        <translation>no rows for the folders themselves</translation>
    </message>
    <message>
        <source>只保留符合的对象 (keep masks)</source>
        <translation>keep masks</translation>
    </message>
    <message>
        <source>剔除符合的对象 (exclude masks)</source>
        <translation>exclude masks</translation>
    </message>
    <message>
        <source>使用简单更名 (simple rename)</source>
        <translation>simple rename</translation>
    </message>
    <message>
        <source>输出格式：tsv（默认）、json 或 csv (output format: tsv, json or csv)</source>
        <translation>output format: tsv (default), json or csv</translation>
    </message>
    <message>
        <source>从该快照文件撤销 (undo from this snapshot file)</source>
        <translation>undo from this snapshot file</translation>
    </message>
    <message>
        <source>更名方案文件：导入时读取，导出时写入 (rename programme to import or export)</source>
        <translation>rename programme to import or export</translation>
    </message>
    <message>
        <source>导入后应用更名 (apply the imported names)</source>
        <translation>apply the imported names</translation>
    </message>
    <message>
        <source>导出对比列表 (export the contrast list)</source>
        <translation>export the contrast list</translation>
    </message>
    <message>
        <source>对比列表文本的编码：ansi（默认）、unicode、unicode-be 或 utf8 (text encoding of the contrast list)</source>
        <translation>text encoding of the contrast list: ansi (default), unicode, unicode-be or utf8</translation>
    </message>
    <message>
        <source>新旧文件名之间使用分隔字符，而不是对齐 (separate the names instead of aligning them)</source>
        <translation>separate the names instead of aligning them</translation>
    </message>
    <message>
        <source>含扩展名一起处理 (names with their extensions)</source>
        <translation>names with their extensions</translation>
    </message>
    <message>
        <source>工作表名称 (sheet name)</source>
        <translation>sheet name</translation>
    </message>
    <message>
        <source>原文件名列，默认 1 (column of the old names)</source>
        <translation>column of the old names (default 1)</translation>
    </message>
    <message>
        <source>新文件名列，默认 2 (column of the new names)</source>
        <translation>column of the new names (default 2)</translation>
    </message>
    <message>
        <source>要载入的文件或文件夹 (files or folders)</source>
        <translation>files or folders</translation>
    </message>
    <message>
        <source>用法 (usage): quillet [--settings FILE] [--set &quot;Section/Key=Value&quot;]... COMMAND [options] [PATH...]</source>
        <translation>Usage: quillet [--settings FILE] [--set &quot;Section/Key=Value&quot;]... COMMAND [options] [PATH...]</translation>
    </message>
    <message>
        <source>
选项 (options):
</source>
        <translation>
Options:
</translation>
    </message>
    <message>
        <source>
参数 (arguments):
</source>
        <translation>
Arguments:
</translation>
    </message>
    <message>
        <source>Quillet Pro 批量文件更名的命令行工具 (batch renamer, command line)

命令 (commands):
  preview   载入对象，运行命令列表并预览，输出各行 (load, run the command list, preview, print the rows)
  apply     同 preview，然后应用更名 (as preview, then apply the renames)
  undo      撤销一次批量更名 (undo a rename batch)
  import    导入更名方案或快照文件 (import a rename programme or snapshot)
  export    导出更名方案或更名对照列表 (export the rename programme or the contrast list)
  fields    列出文件中可读取的全部元数据字段 (list every metadata field of the files)

退出码 (exit codes): 0 完成 (done)；1 有对象更名失败或仍有冲突 (rows failed or in conflict)；2 用法或输入错误 (bad usage or input)</source>
        <translation>Quillet Pro batch renamer, command line

Commands:
  preview   load, run the command list, preview, print the rows
  apply     as preview, then apply the renames
  undo      undo a rename batch
  import    import a rename programme or snapshot
  export    export the rename programme or the contrast list
  fields    list every metadata field of the files

Exit codes: 0 done; 1 rows failed or in conflict; 2 bad usage or input</translation>
    </message>
    <message>
        <source>运行命令列表中的 Pascal 和 Python 脚本 (run the scripts of the command list)</source>
        <translation>run the Pascal and Python scripts of the command list</translation>
    </message>
</context>
<context>
    <name>qp::filtersets</name>
    <message>
        <source>筛选方案的名称不能为空，也不能含有“[”“]”或控制字符。</source>
        <translation>A filter set&apos;s name cannot be empty or contain “[”, “]” or control characters.</translation>
    </message>
</context>
<context>
    <name>qp::metadata</name>
    <message>
        <source>音乐标签</source>
        <translation>Music tags</translation>
    </message>
    <message>
        <source>1.M.音乐标签更名</source>
        <translation>1.M. Music tag rename</translation>
    </message>
    <message>
        <source>照片信息</source>
        <translation>Photo info</translation>
    </message>
    <message>
        <source>1.D.照片信息更名</source>
        <translation>1.D. Photo info rename</translation>
    </message>
    <message>
        <source>媒体信息</source>
        <translation>Media info</translation>
    </message>
    <message>
        <source>1.C.媒体信息更名</source>
        <translation>1.C. Media info rename</translation>
    </message>
</context>
<context>
    <name>qp::python</name>
    <message>
        <source>（另有 %1 行未显示）</source>
        <translation>(%1 more lines not shown)</translation>
    </message>
    <message>
        <source>Python 脚本给第 %1 个文件的%2不是字符串，所有文件名保持不变。</source>
        <translation>The Python script gave file %1 a value that is not a string (%2); all file names stay unchanged.</translation>
    </message>
    <message>
        <source>文件名</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>扩展名</source>
        <translation>Extension</translation>
    </message>
    <message>
        <source>Python 脚本返回的结果无法识别，所有文件名保持不变。</source>
        <translation>The Python script&apos;s result cannot be understood; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本返回了 %1 个结果，应为 %2 个，所有文件名保持不变。</source>
        <translation>The Python script returned %1 results instead of %2; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>找不到 Python 解释器（试过：%1）。请安装 Python 3，或在选项设置中指定 Python 程序；所有文件名保持不变。</source>
        <translation>No Python interpreter was found (tried: %1). Please install Python 3 or set the Python program in the options; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本的输出过多，已停止，所有文件名保持不变。</source>
        <translation>The Python script wrote too much output and was stopped; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本运行超过时间上限（%1 秒），已停止，所有文件名保持不变。</source>
        <translation>The Python script ran past the time limit (%1 seconds) and was stopped; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本已按要求停止，所有文件名保持不变。</source>
        <translation>The Python script was stopped as asked; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 进程异常结束，所有文件名保持不变。</source>
        <translation>The Python process ended abnormally; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本中没有定义 rename(rows) 或 rename_one(row) 函数，所有文件名保持不变。</source>
        <translation>The Python script defines no rename(rows) or rename_one(row) function; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本出错，所有文件名保持不变：</source>
        <translation>The Python script failed; all file names stay unchanged:</translation>
    </message>
    <message>
        <source>Python 脚本以退出码 %1 结束，所有文件名保持不变。</source>
        <translation>The Python script ended with exit code %1; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本没有给出结果就结束了，所有文件名保持不变。</source>
        <translation>The Python script ended without giving a result; all file names stay unchanged.</translation>
    </message>
</context>
<context>
    <name>qp::renamelist</name>
    <message>
        <source>文件名对照列表文件不存在：%1</source>
        <translation>The name list file does not exist: %1</translation>
    </message>
    <message>
        <source>文件超过 64 MB，不是文件名对照列表：%1</source>
        <translation>The file is larger than 64 MB and is no name list: %1</translation>
    </message>
    <message>
        <source>无法读取文件名对照列表文件：%1（%2）</source>
        <translation>Cannot read the name list file: %1 (%2)</translation>
    </message>
    <message>
        <source>文件名对照列表文件的编码格式错误，应为 UTF-8 或带字节顺序标记的 UTF-16：%1</source>
        <translation>The name list file is not in the right encoding, which is UTF-8 or UTF-16 with a byte-order mark: %1</translation>
    </message>
</context>
<context>
    <name>qp::renamelist::RenameFromList</name>
    <message>
        <source>文件名对照列表更名：%1 个对象按列表更名，%2 个对象在列表中没有对应项，保持不变。</source>
        <translation>Rename from a name list: %1 objects renamed as listed, %2 objects not in the list stay unchanged.</translation>
    </message>
    <message>
        <source>列表中有 %1 行的原名与前面的行重复，只用前面的行。</source>
        <translation>%1 lines of the list repeat the old name of an earlier line; only the earlier line is used.</translation>
    </message>
    <message>
        <source>列表中有 %1 行无法识别，已忽略。</source>
        <translation>%1 lines of the list could not be read and were ignored.</translation>
    </message>
</context>
<context>
    <name>qp::scriptcommands</name>
    <message>
        <source>Pascal 脚本更名</source>
        <translation>Rename by Pascal script</translation>
    </message>
    <message>
        <source>Python 脚本更名</source>
        <translation>Rename by Python script</translation>
    </message>
</context>
<context>
    <name>qp::scriptcommands::PascalRenamer</name>
    <message>
        <source>脚本超过 %1 个字符</source>
        <translation>the script is longer than %1 characters</translation>
    </message>
    <message>
        <source>Pascal 脚本有错误（第 %1 行第 %2 列）：%3。所有文件名保持不变。</source>
        <translation>The Pascal script has an error (line %1, column %2): %3. All file names stay unchanged.</translation>
    </message>
    <message>
        <source>Pascal 脚本运行出错（第 %1 行第 %2 列）：%3。出错的文件：%4。所有文件名保持不变。</source>
        <translation>The Pascal script failed (line %1, column %2): %3. It failed on the file: %4. All file names stay unchanged.</translation>
    </message>
</context>
<context>
    <name>qp::scriptcommands::PascalRenamer::Impl</name>
    <message>
        <source>正则表达式有误：%1（位置 %2）</source>
        <translation>the regular expression has an error: %1 (position %2)</translation>
    </message>
    <message>
        <source>正则表达式替换失败：%1</source>
        <translation>the regular expression replacement failed: %1</translation>
    </message>
    <message>
        <source>正则表达式匹配失败：%1</source>
        <translation>the regular expression match failed: %1</translation>
    </message>
</context>
<context>
    <name>qp::scripts</name>
    <message>
        <source>%1 脚本未运行：命令行中要加上 --allow-scripts 才会运行脚本，所有文件名保持不变。</source>
        <translation>The %1 script did not run: scripts run only with --allow-scripts on the command line; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>来自命令文件的 %1 脚本未获允许运行，所有文件名保持不变。</source>
        <translation>The %1 script from the command file was not allowed to run; all file names stay unchanged.</translation>
    </message>
    <message>
        <source>Python 脚本可以读写文件、运行程序，请只允许您信任的脚本。</source>
        <translation>A Python script can read and write files and run programs; allow only scripts you trust.</translation>
    </message>
    <message>
        <source>Pascal 脚本只能读取文件名和文件信息，不能改动文件。</source>
        <translation>A Pascal script can only read file names and file information; it cannot change files.</translation>
    </message>
    <message>
        <source>警告</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>此命令文件包含脚本（%1，共 %2 行），预览和更名时会运行它。%3

脚本开头：
%4

是否允许运行？您的选择会被记住。</source>
        <translation>This command file contains a script (%1, %2 lines), which runs at every preview and rename. %3

The script begins:
%4

Allow it to run? Your choice is remembered.</translation>
    </message>
</context>
<context>
    <name>qp::ui::CommandListModel</name>
    <message>
        <source>序号</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>代号</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>命令描述</source>
        <translation>Command</translation>
    </message>
    <message>
        <source>命令编号</source>
        <translation>Command ID</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
</context>
<context>
    <name>qp::ui::FunctionPanel</name>
    <message>
        <source>没有可用的功能页。</source>
        <translation>No function page is available.</translation>
    </message>
</context>
<context>
    <name>qp::ui::GuiInteraction</name>
    <message>
        <source>是(&amp;Y)</source>
        <translation>&amp;Yes</translation>
    </message>
    <message>
        <source>否(&amp;N)</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>qp::ui::LoadBar</name>
    <message>
        <source>载入路径</source>
        <translation>Load path</translation>
    </message>
    <message>
        <source>遍历文件列表</source>
        <translation>Traverse the list</translation>
    </message>
    <message>
        <source>遍历文件夹</source>
        <translation>Include subfolders</translation>
    </message>
    <message>
        <source>含文件夹名</source>
        <translation>Include folder names</translation>
    </message>
    <message>
        <source>显示实际图标</source>
        <translation>Show real icons</translation>
    </message>
    <message>
        <source>路径</source>
        <translation>Path</translation>
    </message>
    <message>
        <source>过滤：保留</source>
        <translation>Filter: keep</translation>
    </message>
    <message>
        <source>排除</source>
        <translation>Exclude</translation>
    </message>
    <message>
        <source>载入时：</source>
        <translation>When loading:</translation>
    </message>
</context>
<context>
    <name>qp::ui::MainWindow</name>
    <message>
        <source>Quillet Pro 批量文件更名</source>
        <translation>Quillet Pro Batch File Renamer</translation>
    </message>
    <message>
        <source>1.文件名处理</source>
        <translation>1. File names</translation>
    </message>
    <message>
        <source>1.N.普通更名</source>
        <translation>1.N. Normal rename</translation>
    </message>
    <message>
        <source>1.E.扩展名更名</source>
        <translation>1.E. Extension rename</translation>
    </message>
    <message>
        <source>1.A.高级更名</source>
        <translation>1.A. Advanced rename</translation>
    </message>
    <message>
        <source>添加一个或多个文件</source>
        <translation>Add one or more files</translation>
    </message>
    <message>
        <source>添加一个或多个文件夹及文件夹下的对象(&amp;D)</source>
        <translation>Add one or more fol&amp;ders with their contents</translation>
    </message>
    <message>
        <source>导入一个带路径的文件名列表文本文件(&amp;F)</source>
        <translation>Import a list &amp;file of full paths</translation>
    </message>
    <message>
        <source>导出更名方案(&amp;M)</source>
        <translation>Export rename progra&amp;mme</translation>
    </message>
    <message>
        <source>导入更名方案或快照文件(&amp;I)</source>
        <translation>&amp;Import rename programme or snapshot</translation>
    </message>
    <message>
        <source>导出更名对照列表文件(&amp;E)</source>
        <translation>&amp;Export rename contrast list</translation>
    </message>
    <message>
        <source>退出(&amp;X)</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>结束当前命令（插入空命令）</source>
        <translation>End the current command (insert an empty command)</translation>
    </message>
    <message>
        <source>删除最后一条命令(&amp;D)</source>
        <translation>&amp;Delete the last command</translation>
    </message>
    <message>
        <source>删除选择项之后的命令(&amp;C)</source>
        <translation>Delete the &amp;commands after the chosen one</translation>
    </message>
    <message>
        <source>清空命令列表</source>
        <translation>Clear the command list</translation>
    </message>
    <message>
        <source>刷新命令列表(&amp;R)</source>
        <translation>&amp;Refresh the command list</translation>
    </message>
    <message>
        <source>保存批处理命令(&amp;S)</source>
        <translation>&amp;Save command file</translation>
    </message>
    <message>
        <source>载入批处理命令(&amp;L)</source>
        <translation>&amp;Load command file</translation>
    </message>
    <message>
        <source>清除最近的批处理文件列表(&amp;C)</source>
        <translation>&amp;Clear the recent command files</translation>
    </message>
    <message>
        <source>预览更名结果</source>
        <translation>Preview the renames</translation>
    </message>
    <message>
        <source>应用更名结果</source>
        <translation>Apply the renames</translation>
    </message>
    <message>
        <source>撤销上次更名操作</source>
        <translation>Undo the last rename</translation>
    </message>
    <message>
        <source>查看和导出快照文件(&amp;V)</source>
        <translation>&amp;View and export snapshots</translation>
    </message>
    <message>
        <source>全部选择</source>
        <translation>Tick all</translation>
    </message>
    <message>
        <source>全部不选</source>
        <translation>Untick all</translation>
    </message>
    <message>
        <source>反向选择</source>
        <translation>Invert ticks</translation>
    </message>
    <message>
        <source>从列表中移除选中的行</source>
        <translation>Remove the chosen rows from the list</translation>
    </message>
    <message>
        <source>清空更名文件列表</source>
        <translation>Clear the rename list</translation>
    </message>
    <message>
        <source>自动预览</source>
        <translation>Auto preview</translation>
    </message>
    <message>
        <source>显示实际图标</source>
        <translation>Show real icons</translation>
    </message>
    <message>
        <source>以 KB、MB、GB 显示文件大小</source>
        <translation>Show file sizes in KB, MB, GB</translation>
    </message>
    <message>
        <source>清除功能页的下拉框历史记录</source>
        <translation>Clear the drop-down histories of the function pages</translation>
    </message>
    <message>
        <source>选项设置(&amp;O)...</source>
        <translation>&amp;Options...</translation>
    </message>
    <message>
        <source>用户自定义元变量 &lt;USER0&gt;~&lt;USER9&gt;</source>
        <translation>User meta-variables &lt;USER0&gt;~&lt;USER9&gt;</translation>
    </message>
    <message>
        <source>查看用户自定义元变量(&amp;V)</source>
        <translation>&amp;View user meta-variables</translation>
    </message>
    <message>
        <source>文件(&amp;F)</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>命令(&amp;C)</source>
        <translation>&amp;Commands</translation>
    </message>
    <message>
        <source>最近打开的批处理命令(&amp;T)</source>
        <translation>Recen&amp;t command files</translation>
    </message>
    <message>
        <source>更名(&amp;R)</source>
        <translation>&amp;Rename</translation>
    </message>
    <message>
        <source>设置(&amp;S)</source>
        <translation>&amp;Settings</translation>
    </message>
    <message>
        <source>工具栏</source>
        <translation>Toolbar</translation>
    </message>
    <message>
        <source>只预览前</source>
        <translation>Preview only the first</translation>
    </message>
    <message>
        <source>更名文件列表对象 %1 个</source>
        <translation>%1 objects in the rename list</translation>
    </message>
    <message>
        <source>请选择需要更名的文件</source>
        <translation>Choose the files to rename</translation>
    </message>
    <message>
        <source>所有文件 (*)</source>
        <translation>All files (*)</translation>
    </message>
    <message>
        <source>导入一个带路径的文件名列表文本文件</source>
        <translation>Import a list file of full paths</translation>
    </message>
    <message>
        <source>带路径的文件名列表文本文件 (*.txt)</source>
        <translation>List files of full paths (*.txt)</translation>
    </message>
    <message>
        <source>导出更名方案</source>
        <translation>Export rename programme</translation>
    </message>
    <message>
        <source>更名方案 (*.txt)</source>
        <translation>Rename programmes (*.txt)</translation>
    </message>
    <message>
        <source>导入更名方案文件或快照文件</source>
        <translation>Import rename programme or snapshot</translation>
    </message>
    <message>
        <source>更名方案文件或快照文件 (*.txt)</source>
        <translation>Rename programmes or snapshots (*.txt)</translation>
    </message>
    <message>
        <source>保存批处理命令文件</source>
        <translation>Save command file</translation>
    </message>
    <message>
        <source>*.frc (*.frc)</source>
        <translation>*.frc (*.frc)</translation>
    </message>
    <message>
        <source>载入批处理命令文件</source>
        <translation>Load command file</translation>
    </message>
    <message>
        <source>批处理命令文件 (*.frc)</source>
        <translation>Command files (*.frc)</translation>
    </message>
    <message>
        <source>对象批量更名完成。</source>
        <translation>The batch rename is complete.</translation>
    </message>
    <message>
        <source>撤销上一次的批量更名完成。</source>
        <translation>The last batch rename was undone.</translation>
    </message>
    <message>
        <source>筛选(&amp;I)...</source>
        <translation>F&amp;ilter...</translation>
    </message>
    <message>
        <source>导出更名文件列表(&amp;X)...</source>
        <translation>E&amp;xport the rename list...</translation>
    </message>
    <message>
        <source>导出选中的行...</source>
        <translation>Export the chosen rows...</translation>
    </message>
    <message>
        <source>导出信息列表...</source>
        <translation>Export the messages...</translation>
    </message>
    <message>
        <source>欢迎页(&amp;W)</source>
        <translation>&amp;Welcome page</translation>
    </message>
    <message>
        <source>检查更新(&amp;U)</source>
        <translation>Check for &amp;updates</translation>
    </message>
    <message>
        <source>添加到文件管理器的右键菜单</source>
        <translation>Add to the file manager&apos;s context menu</translation>
    </message>
    <message>
        <source>从文件管理器的右键菜单移除</source>
        <translation>Remove from the file manager&apos;s context menu</translation>
    </message>
    <message>
        <source>关于 Quillet Pro(&amp;A)</source>
        <translation>&amp;About Quillet Pro</translation>
    </message>
    <message>
        <source>帮助(&amp;H)</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>没有可导出的行。</source>
        <translation>There are no rows to export.</translation>
    </message>
    <message>
        <source>导出更名文件列表</source>
        <translation>Export the rename list</translation>
    </message>
    <message>
        <source>文本文件 (*.txt);;CSV 文件 (*.csv);;Excel 工作簿 (*.xlsx)</source>
        <translation>Text files (*.txt);;CSV files (*.csv);;Excel workbooks (*.xlsx)</translation>
    </message>
    <message>
        <source>更名文件列表</source>
        <translation>Rename list</translation>
    </message>
    <message>
        <source>已导出 %1 行到：%2</source>
        <translation>Exported %1 rows to: %2</translation>
    </message>
    <message>
        <source>导出信息列表</source>
        <translation>Export the messages</translation>
    </message>
    <message>
        <source>信息列表</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>检查更新：没有设置更新地址（设置文件 [General Config] 中的 UpdateUrl）。</source>
        <translation>Update check: no update address is set (UpdateUrl under [General Config] in the settings file).</translation>
    </message>
    <message>
        <source>检查更新失败：%1</source>
        <translation>Update check failed: %1</translation>
    </message>
    <message>
        <source>检查更新：无法比较版本 %1 与当前版本 %2。</source>
        <translation>Update check: cannot compare version %1 with the current version %2.</translation>
    </message>
    <message>
        <source>检查更新：更新信息中的版本 %1 低于当前版本 %2，已忽略。</source>
        <translation>Update check: the version in the update information, %1, is below the current version %2 and was ignored.</translation>
    </message>
    <message>
        <source>检查更新：已是最新版本（%1）。</source>
        <translation>Update check: this is the newest version (%1).</translation>
    </message>
    <message>
        <source>检查更新：新版本 %1 已设为跳过。</source>
        <translation>Update check: the new version %1 is set to be skipped.</translation>
    </message>
    <message>
        <source>已添加到文件管理器的右键菜单：%1</source>
        <translation>Added to the file manager&apos;s context menu: %1</translation>
    </message>
    <message>
        <source>已从文件管理器的右键菜单移除：%1</source>
        <translation>Removed from the file manager&apos;s context menu: %1</translation>
    </message>
    <message>
        <source>文件管理器的右键菜单中没有 Quillet Pro 的项目。</source>
        <translation>The file manager&apos;s context menu holds no Quillet Pro entries.</translation>
    </message>
</context>
<context>
    <name>qp::ui::RenameListModel</name>
    <message>
        <source>选择</source>
        <translation>Tick</translation>
    </message>
    <message>
        <source>图标</source>
        <translation>Icon</translation>
    </message>
    <message>
        <source>实际文件名</source>
        <translation>Actual file name</translation>
    </message>
    <message>
        <source>实际扩展名</source>
        <translation>Actual extension</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>新文件名</source>
        <translation>New file name</translation>
    </message>
    <message>
        <source>新扩展名</source>
        <translation>New extension</translation>
    </message>
    <message>
        <source>修改日期</source>
        <translation>Modified date</translation>
    </message>
    <message>
        <source>属性</source>
        <translation>Attributes</translation>
    </message>
    <message>
        <source>大小(Bytes)</source>
        <translation>Size (bytes)</translation>
    </message>
    <message>
        <source>路径</source>
        <translation>Path</translation>
    </message>
    <message>
        <source>PDF密码</source>
        <translation>PDF password</translation>
    </message>
    <message>
        <source>大小(友好)</source>
        <translation>Size (friendly)</translation>
    </message>
    <message>
        <source>已更名</source>
        <translation>Renamed</translation>
    </message>
    <message>
        <source>更名失败或新文件名存在冲突</source>
        <translation>Rename failed or the new name conflicts</translation>
    </message>
    <message>
        <source>未更名</source>
        <translation>Not renamed</translation>
    </message>
</context>
<context>
    <name>qp::ui::ScriptSection</name>
    <message>
        <source>加三位序号前缀</source>
        <translation>Three-digit number as prefix</translation>
    </message>
    <message>
        <source>扩展名改为小写</source>
        <translation>Extension to lower case</translation>
    </message>
    <message>
        <source>修改日期作前缀</source>
        <translation>Modified date as prefix</translation>
    </message>
    <message>
        <source>正则表达式：交换两段</source>
        <translation>Regular expression: swap two parts</translation>
    </message>
    <message>
        <source>用音乐标题作文件名</source>
        <translation>Music title as file name</translation>
    </message>
    <message>
        <source>正则表达式：空白改为下划线</source>
        <translation>Regular expression: white space to underscores</translation>
    </message>
    <message>
        <source>按下面的脚本更名</source>
        <translation>Rename by the script below</translation>
    </message>
    <message>
        <source>FileName 是含扩展名的文件名，改它即可更名。可用 FilePath、FileFolder、FileIndex、FileCount、FileSize、FileModified、IsFolder、Initialized。</source>
        <translation>FileName is the file name with its extension; change it to rename. Also at hand: FilePath, FileFolder, FileIndex, FileCount, FileSize, FileModified, IsFolder, Initialized.</translation>
    </message>
    <message>
        <source>定义 rename(rows) 修改各行的 name 和 extension，或定义 rename_one(row) 返回新文件名。</source>
        <translation>Define rename(rows) to change each row&apos;s name and extension, or rename_one(row) to return the new file name.</translation>
    </message>
    <message>
        <source>测试</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>在更名列表中选定的行上试运行脚本，只显示结果，不改动任何名称</source>
        <translation>Try the script on the row chosen in the rename list; it only shows the result and changes no names</translation>
    </message>
    <message>
        <source>插入示例</source>
        <translation>Insert an example</translation>
    </message>
    <message>
        <source>语法正确。</source>
        <translation>The syntax is correct.</translation>
    </message>
    <message>
        <source>更名列表是空的，没有可以试运行的行。</source>
        <translation>The rename list is empty; there is no row to try the script on.</translation>
    </message>
    <message>
        <source>测试：%1 → %2</source>
        <translation>Test: %1 → %2</translation>
    </message>
</context>
<context>
    <name>qp::ui::TAboutForm</name>
    <message>
        <source>关于 Quillet Pro</source>
        <translation>About Quillet Pro</translation>
    </message>
    <message>
        <source>批量文件更名
版本：%1
构建日期：%2
Qt：%3（编译时 %4）
许可证：GNU GPL 3.0 或更高版本</source>
        <translation>Batch file renamer
Version: %1
Built: %2
Qt: %3 (built with %4)
Licence: GNU GPL 3.0 or later</translation>
    </message>
    <message>
        <source>第三方软件</source>
        <translation>Third-party software</translation>
    </message>
    <message>
        <source>找不到第三方软件声明文件 %1。它应与程序放在一起。</source>
        <translation>The third-party notice file %1 was not found. It belongs beside the program.</translation>
    </message>
    <message>
        <source>声明全文</source>
        <translation>Full notices</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>许可证</source>
        <translation>Licence</translation>
    </message>
    <message>
        <source>来源：%1
用途：%2</source>
        <translation>Source: %1
Used for: %2</translation>
    </message>
    <message>
        <source>
说明：%1</source>
        <translation>
Note: %1</translation>
    </message>
</context>
<context>
    <name>qp::ui::TConfigForm</name>
    <message>
        <source>选项设置</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>更名操作</source>
        <translation>Renaming</translation>
    </message>
    <message>
        <source>重名编号</source>
        <translation>Duplicate numbering</translation>
    </message>
    <message>
        <source>常规</source>
        <translation>General</translation>
    </message>
    <message>
        <source>元变量</source>
        <translation>Meta-variables</translation>
    </message>
    <message>
        <source>当前页默认值(&amp;D)</source>
        <translation>&amp;Defaults of this tab</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>自动预览</source>
        <translation>Auto preview</translation>
    </message>
    <message>
        <source>自动预览：命令有变化时立即执行命令列表</source>
        <translation>Auto preview: run the command list as soon as a command changes</translation>
    </message>
    <message>
        <source>只预览前</source>
        <translation>Preview only the first</translation>
    </message>
    <message>
        <source>个对象（其余对象在预览和更名时处理）</source>
        <translation>objects (the others are processed at preview and apply)</translation>
    </message>
    <message>
        <source>应用更名</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>应用更名和撤销更名前先确认</source>
        <translation>Confirm before applying and undoing renames</translation>
    </message>
    <message>
        <source>更名完毕后显示“批量更名完成”对话框</source>
        <translation>Show the “batch rename complete” dialog after renaming</translation>
    </message>
    <message>
        <source>出现更名冲突时不再警告，直接启用智能更名</source>
        <translation>On a rename conflict, go straight to smart rename without a warning</translation>
    </message>
    <message>
        <source>清空命令列表</source>
        <translation>Clear the command list</translation>
    </message>
    <message>
        <source>保留命令列表，对更名后的文件重新执行</source>
        <translation>Keep the command list and run it again over the renamed files</translation>
    </message>
    <message>
        <source>更名完成后：</source>
        <translation>After renaming:</translation>
    </message>
    <message>
        <source>对象数达到</source>
        <translation>From</translation>
    </message>
    <message>
        <source>个时，询问是否选择简单更名</source>
        <translation>objects on, ask whether to use simple rename</translation>
    </message>
    <message>
        <source>特殊对象的处理方式</source>
        <translation>Special objects</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>强制进行更名操作</source>
        <translation>Rename anyway</translation>
    </message>
    <message>
        <source>不再询问</source>
        <translation>Do not ask again</translation>
    </message>
    <message>
        <source>只读属性的对象：</source>
        <translation>Read-only objects:</translation>
    </message>
    <message>
        <source>系统属性的对象：</source>
        <translation>System objects:</translation>
    </message>
    <message>
        <source>从后向前删除文件名至符合系统规定长度后更名</source>
        <translation>Cut the name from the end to the system&apos;s limit, then rename</translation>
    </message>
    <message>
        <source>从前向后删除文件名至符合系统规定长度后更名</source>
        <translation>Cut the name from the start to the system&apos;s limit, then rename</translation>
    </message>
    <message>
        <source>操作系统处理方式（含扩展名直接从尾部删除多余字符）</source>
        <translation>The system&apos;s way (cut the extra characters from the end, extension included)</translation>
    </message>
    <message>
        <source>文件名过长的对象：</source>
        <translation>Names that are too long:</translation>
    </message>
    <message>
        <source>显示</source>
        <translation>Display</translation>
    </message>
    <message>
        <source>以 KB、MB、GB 显示文件大小</source>
        <translation>Show file sizes in KB, MB, GB</translation>
    </message>
    <message>
        <source>新文件名为空时</source>
        <translation>When the new file name is empty</translation>
    </message>
    <message>
        <source>使用的文件名：</source>
        <translation>Use the file name:</translation>
    </message>
    <message>
        <source>新文件名与已有对象重名时，在文件名后添加编号</source>
        <translation>When a new name equals an existing object&apos;s, add a number to the name</translation>
    </message>
    <message>
        <source>数字（0-9）</source>
        <translation>Digits (0-9)</translation>
    </message>
    <message>
        <source>小写字母（a-z）</source>
        <translation>Lower-case letters (a-z)</translation>
    </message>
    <message>
        <source>大写字母（A-Z）</source>
        <translation>Upper-case letters (A-Z)</translation>
    </message>
    <message>
        <source>编号字符：</source>
        <translation>Number characters:</translation>
    </message>
    <message>
        <source>起始编号：</source>
        <translation>Start number:</translation>
    </message>
    <message>
        <source>编号增量：</source>
        <translation>Step:</translation>
    </message>
    <message>
        <source>最少位数：</source>
        <translation>Fewest digits:</translation>
    </message>
    <message>
        <source>（不足时左边补“0”“a”或“A”）</source>
        <translation>(padded on the left with “0”, “a” or “A”)</translation>
    </message>
    <message>
        <source>编号前的文字：</source>
        <translation>Text before the number:</translation>
    </message>
    <message>
        <source>编号后的文字：</source>
        <translation>Text after the number:</translation>
    </message>
    <message>
        <source>示例：</source>
        <translation>Example:</translation>
    </message>
    <message>
        <source>忽略插入特殊元变量时的提示（不建议选中）：</source>
        <translation>Ignore the warning when a special meta-variable is inserted (not recommended):</translation>
    </message>
    <message>
        <source>文件校验系列元变量</source>
        <translation>Hash meta-variables</translation>
    </message>
    <message>
        <source>需遍历文件的系列元变量</source>
        <translation>Meta-variables that walk folders</translation>
    </message>
    <message>
        <source>界面</source>
        <translation>Window</translation>
    </message>
    <message>
        <source>显示实际图标</source>
        <translation>Show real icons</translation>
    </message>
    <message>
        <source>下拉框保存的历史记录数：</source>
        <translation>Entries kept in drop-down histories:</translation>
    </message>
    <message>
        <source>元变量名称及参数设置</source>
        <translation>Meta-variable names and parameters</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>值</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>描述</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>元变量描述及参数说明</source>
        <translation>Meta-variable description and parameters</translation>
    </message>
    <message>
        <source>照片</source>
        <translation>photo</translation>
    </message>
    <message>
        <source>第二个“照片.jpg”起依次为 %1 …</source>
        <translation>From the second “photo.jpg” on: %1 …</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>跟随系统</source>
        <translation>Follow the system</translation>
    </message>
    <message>
        <source>界面语言：</source>
        <translation>Language:</translation>
    </message>
    <message>
        <source>（重新启动后生效）</source>
        <translation>(takes effect at the next start)</translation>
    </message>
    <message>
        <source>脚本</source>
        <translation>Scripts</translation>
    </message>
    <message>
        <source>留空则使用 python3（Windows：py -3 或 python）</source>
        <translation>Leave empty to use python3 (Windows: py -3 or python)</translation>
    </message>
    <message>
        <source>Python 程序：</source>
        <translation>Python program:</translation>
    </message>
    <message>
        <source>脚本运行时间上限（秒）：</source>
        <translation>Script time limit (seconds):</translation>
    </message>
    <message>
        <source>文件信息</source>
        <translation>File information</translation>
    </message>
    <message>
        <source>自动（选常用汉字最多的解码）</source>
        <translation>Automatic (the decoding with the most common Chinese characters)</translation>
    </message>
    <message>
        <source>非 Unicode 标签编码：</source>
        <translation>Non-Unicode tag encoding:</translation>
    </message>
    <message>
        <source>新文件名遵守 Windows 的命名规则</source>
        <translation>New names follow the Windows naming rules</translation>
    </message>
    <message>
        <source>预览时删除 \ / : * ? &lt; &gt; | 和控制字符以及末尾的点和空格，并为 CON、NUL、COM1 等设备名编号。Windows 下始终如此；Linux 下不选时只删除“/”。</source>
        <translation>Preview removes \ / : * ? &lt; &gt; | and control characters as well as trailing dots and spaces, and numbers device names such as CON, NUL and COM1. Always so on Windows; on Linux, when this is off, only “/” is removed.</translation>
    </message>
</context>
<context>
    <name>qp::ui::TExportContrastFileForm</name>
    <message>
        <source>导出更名对照列表文件</source>
        <translation>Export the rename contrast list</translation>
    </message>
    <message>
        <source>更名文件列表当前行数：%1行</source>
        <translation>Rows in the rename list: %1</translation>
    </message>
    <message>
        <source>导出为 MS Excel 文件（无需Excel软件支持）</source>
        <translation>Export as an MS Excel file (Excel is not needed)</translation>
    </message>
    <message>
        <source>MS Excel 2007/2010格式(*.xlsx)</source>
        <translation>MS Excel 2007/2010 format (*.xlsx)</translation>
    </message>
    <message>
        <source>MS Excel 97,2000,XP,2003格式(*.xls)</source>
        <translation>MS Excel 97, 2000, XP, 2003 format (*.xls)</translation>
    </message>
    <message>
        <source>更名对照列表</source>
        <translation>Rename contrast list</translation>
    </message>
    <message>
        <source>设置工作表名称</source>
        <translation>Sheet name</translation>
    </message>
    <message>
        <source>原文件名列：</source>
        <translation>Old name column:</translation>
    </message>
    <message>
        <source>新文件名列：</source>
        <translation>New name column:</translation>
    </message>
    <message>
        <source>导出为文本文件 (*.txt)</source>
        <translation>Export as a text file (*.txt)</translation>
    </message>
    <message>
        <source>保存编码：</source>
        <translation>Encoding:</translation>
    </message>
    <message>
        <source>保存格式：</source>
        <translation>Layout:</translation>
    </message>
    <message>
        <source>新旧两列文件名自身尽量对齐（填充字符为英文空格）</source>
        <translation>Align the old and new names in columns (padded with spaces)</translation>
    </message>
    <message>
        <source>新旧文件名之间使用分隔字符</source>
        <translation>Separate old and new names with a text</translation>
    </message>
    <message>
        <source>分隔字符</source>
        <translation>Separator</translation>
    </message>
    <message>
        <source>含扩展名一起处理</source>
        <translation>Include the extensions</translation>
    </message>
    <message>
        <source>保存至...(&amp;S)</source>
        <translation>&amp;Save to...</translation>
    </message>
    <message>
        <source>退出(&amp;X)</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>保存更名对照列表文件</source>
        <translation>Save the rename contrast list</translation>
    </message>
    <message>
        <source>请稍候...</source>
        <translation>Please wait...</translation>
    </message>
    <message>
        <source>更名对照列表文件导出成功！</source>
        <translation>The rename contrast list was exported!</translation>
    </message>
    <message>
        <source>注意：有些字符无法用所选编码保存，已写为“?”。请改用 Unicode 或 UTF-8 编码。</source>
        <translation>Note: some characters cannot be stored in the chosen encoding and were written as “?”. Please use Unicode or UTF-8.</translation>
    </message>
</context>
<context>
    <name>qp::ui::TExportSnapshotForm</name>
    <message>
        <source>查看和导出快照文件</source>
        <translation>View and export snapshots</translation>
    </message>
    <message>
        <source>程序本次运行过程中已进行了 %1 次批量更名操作。</source>
        <translation>This run of the program has made %1 batch renames.</translation>
    </message>
    <message>
        <source>将第</source>
        <translation>Export batch rename no.</translation>
    </message>
    <message>
        <source>次批量更名操作导出为快照文件，此次批量更名操作情况如下表：</source>
        <translation>as a snapshot file; that batch rename was:</translation>
    </message>
    <message>
        <source>说明：每次批量更名操作后都会自动保存一个快照文件，保存一份快照文件后，即使关闭了本程序，也可以通过“导入更名方案或快照文件”载入它来撤销那次更名。导出快照文件应该从最后一次更名操作开始，否则可能会导致对象不存在的错误。</source>
        <translation>Note: every batch rename saves a snapshot file automatically. With a saved copy of a snapshot you can undo that rename even after the program was closed, by loading it with “Import rename programme or snapshot”. Export snapshots starting from the last rename, or objects may be missing.</translation>
    </message>
    <message>
        <source>保存本次更名快照(&amp;S)</source>
        <translation>&amp;Save this rename&apos;s snapshot</translation>
    </message>
    <message>
        <source>自动列宽(&amp;A)</source>
        <translation>&amp;Auto column width</translation>
    </message>
    <message>
        <source>退出(&amp;X)</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>保存快照文件</source>
        <translation>Save the snapshot file</translation>
    </message>
    <message>
        <source>快照文件 (*.txt)</source>
        <translation>Snapshot files (*.txt)</translation>
    </message>
    <message>
        <source>快照文件导出失败：%1</source>
        <translation>The snapshot file could not be exported: %1</translation>
    </message>
    <message>
        <source>快照文件导出成功！</source>
        <translation>The snapshot file was exported!</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFileNameAttribWarningForm</name>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>以下对象为系统属性：</source>
        <translation>These objects have the system attribute:</translation>
    </message>
    <message>
        <source>以下对象为只读属性：</source>
        <translation>These objects are read-only:</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>强制进行更名操作</source>
        <translation>Rename anyway</translation>
    </message>
    <message>
        <source>按以上设置进行更名操作而不再询问</source>
        <translation>Rename as set above without asking again</translation>
    </message>
    <message>
        <source>继续(&amp;C)</source>
        <translation>&amp;Continue</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFileNameTooLongWarningForm</name>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>以下文件名（含路径）的总长度大于系统规定：（系统规定含“:”“\”字符最长为258字符）</source>
        <translation>The full length of these file names (with path) is above the system&apos;s limit (at most 258 characters, “:” and “\” included):</translation>
    </message>
    <message>
        <source>以下文件名（含路径）的总长度大于系统规定：（系统规定文件名最长为255字节，含路径最长为4095字节，按 UTF-8 计）</source>
        <translation>The full length of these file names (with path) is above the system&apos;s limit (a name at most 255 bytes, with its path at most 4095 bytes, counted in UTF-8):</translation>
    </message>
    <message>
        <source>新文件名：</source>
        <translation>New file name:</translation>
    </message>
    <message>
        <source>修正后的新文件名：</source>
        <translation>Corrected new file name:</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>从后向前删除文件名至符合系统规定长度后更名</source>
        <translation>Cut the name from the end to the system&apos;s limit, then rename</translation>
    </message>
    <message>
        <source>从前向后删除文件名至符合系统规定长度后更名</source>
        <translation>Cut the name from the start to the system&apos;s limit, then rename</translation>
    </message>
    <message>
        <source>操作系统处理方式（含扩展名直接从尾部删除多余字符）</source>
        <translation>The system&apos;s way (cut the extra characters from the end, extension included)</translation>
    </message>
    <message>
        <source>按以上设置进行更名操作而不再询问</source>
        <translation>Rename as set above without asking again</translation>
    </message>
    <message>
        <source>继续(&amp;C)</source>
        <translation>&amp;Continue</translation>
    </message>
    <message>
        <source>（跳过，不更名）</source>
        <translation>(skipped, not renamed)</translation>
    </message>
    <message>
        <source>（无法缩短到规定长度，将跳过）</source>
        <translation>(cannot be cut to the limit; will be skipped)</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFilterForm</name>
    <message>
        <source>筛选</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>保留符合条件的对象，移除其余对象</source>
        <translation>Keep the matching objects, remove the rest</translation>
    </message>
    <message>
        <source>移除符合条件的对象</source>
        <translation>Remove the matching objects</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>方案名称</source>
        <translation>Filter set name</translation>
    </message>
    <message>
        <source>保存方案</source>
        <translation>Save set</translation>
    </message>
    <message>
        <source>删除方案</source>
        <translation>Delete set</translation>
    </message>
    <message>
        <source>筛选方案：</source>
        <translation>Filter set:</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>例如 *.jpg|*.png；留空表示不按名称筛选</source>
        <translation>For example *.jpg|*.png; leave empty to filter by other criteria only</translation>
    </message>
    <message>
        <source>通配符（* ?，多个用 | 分隔）</source>
        <translation>Wildcards (* ?, several separated by |)</translation>
    </message>
    <message>
        <source>正则表达式</source>
        <translation>Regular expression</translation>
    </message>
    <message>
        <source>文件名</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>文件名和扩展名</source>
        <translation>File name and extension</translation>
    </message>
    <message>
        <source>完整路径</source>
        <translation>Full path</translation>
    </message>
    <message>
        <source>区分大小写</source>
        <translation>Case sensitive</translation>
    </message>
    <message>
        <source>匹配：</source>
        <translation>Match:</translation>
    </message>
    <message>
        <source>方式：</source>
        <translation>Syntax:</translation>
    </message>
    <message>
        <source>对象的：</source>
        <translation>Applied to the:</translation>
    </message>
    <message>
        <source>对象</source>
        <translation>Objects</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>文件夹</source>
        <translation>Folders</translation>
    </message>
    <message>
        <source>隐藏对象</source>
        <translation>Hidden objects</translation>
    </message>
    <message>
        <source>系统对象</source>
        <translation>System objects</translation>
    </message>
    <message>
        <source>不限</source>
        <translation>Any</translation>
    </message>
    <message>
        <source>是</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>否</source>
        <translation>No</translation>
    </message>
    <message>
        <source>只读属性：</source>
        <translation>Read-only:</translation>
    </message>
    <message>
        <source>存档属性：</source>
        <translation>Archive:</translation>
    </message>
    <message>
        <source>大小和日期</source>
        <translation>Size and date</translation>
    </message>
    <message>
        <source>文件大小介于</source>
        <translation>File size between</translation>
    </message>
    <message>
        <source>字节</source>
        <translation>bytes</translation>
    </message>
    <message>
        <source>修改日期介于</source>
        <translation>Modified between</translation>
    </message>
    <message>
        <source>和</source>
        <translation>and</translation>
    </message>
    <message>
        <source>（两端都包括在内；文件夹没有大小，不受大小限制）</source>
        <translation>(both ends included; folders have no size and are not limited by it)</translation>
    </message>
    <message>
        <source>符合条件的对象：%1 个（共 %2 个）</source>
        <translation>Matching objects: %1 (of %2)</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFrameFileRenameAdvanced</name>
    <message>
        <source>1.A.1.正则表达式</source>
        <translation>1.A.1. Regular expression</translation>
    </message>
    <message>
        <source>1.A.3.汉字转拼音</source>
        <translation>1.A.3. Chinese characters to pinyin</translation>
    </message>
    <message>
        <source>1.A.4.数字与汉字的转换</source>
        <translation>1.A.4. Numbers and Chinese numerals</translation>
    </message>
    <message>
        <source>1.A.11.文件名对照列表更名</source>
        <translation>1.A.11. Rename from a name list</translation>
    </message>
    <message>
        <source>仅文件名</source>
        <translation>File name only</translation>
    </message>
    <message>
        <source>含扩展名</source>
        <translation>With extension</translation>
    </message>
    <message>
        <source>$1、${name}：第 1 组、名为 name 的组所匹配的文字；\U…\E：其间转为大写</source>
        <translation>$1, ${name}: the text matched by group 1 or by the group named name; \U…\E: upper case in between</translation>
    </message>
    <message>
        <source>表达式</source>
        <translation>Expression</translation>
    </message>
    <message>
        <source>替换为</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>区分大小写</source>
        <translation>Case sensitive</translation>
    </message>
    <message>
        <source>替换为中可用 $1、${name}</source>
        <translation>The replacement may use $1, ${name}</translation>
    </message>
    <message>
        <source>汉字转英文字母串拼音</source>
        <translation>Chinese characters to pinyin letters</translation>
    </message>
    <message>
        <source>汉字转带声调的汉语拼音</source>
        <translation>Chinese characters to pinyin with tone marks</translation>
    </message>
    <message>
        <source>只插入第一个汉字声母</source>
        <translation>Insert only the initial of the first character</translation>
    </message>
    <message>
        <source>英文字母串方式</source>
        <translation>Letters</translation>
    </message>
    <message>
        <source>只取首字母</source>
        <translation>Initials only</translation>
    </message>
    <message>
        <source>首字母大写</source>
        <translation>Capitalise</translation>
    </message>
    <message>
        <source>显示多音字的多个拼音</source>
        <translation>All readings of characters with several</translation>
    </message>
    <message>
        <source>包含汉字</source>
        <translation>Keep the Chinese characters</translation>
    </message>
    <message>
        <source>未知字符显示“~”</source>
        <translation>Show “~” for unknown characters</translation>
    </message>
    <message>
        <source>左附加</source>
        <translation>Add on the left</translation>
    </message>
    <message>
        <source>右附加</source>
        <translation>Add on the right</translation>
    </message>
    <message>
        <source>字符：连接</source>
        <translation>Join with:</translation>
    </message>
    <message>
        <source>数字转小写汉字数字</source>
        <translation>Numbers to lower-case Chinese numerals</translation>
    </message>
    <message>
        <source>2024 → 二〇二四</source>
        <translation>2024 → 二〇二四</translation>
    </message>
    <message>
        <source>数字转大写汉字数字</source>
        <translation>Numbers to upper-case (financial) Chinese numerals</translation>
    </message>
    <message>
        <source>2024 → 贰零贰肆</source>
        <translation>2024 → 贰零贰肆</translation>
    </message>
    <message>
        <source>汉字数字转阿拉伯数字</source>
        <translation>Chinese numerals to Arabic numbers</translation>
    </message>
    <message>
        <source>二〇二四 → 2024</source>
        <translation>二〇二四 → 2024</translation>
    </message>
    <message>
        <source>特殊数字符号转普通数字</source>
        <translation>Special number symbols to plain numbers</translation>
    </message>
    <message>
        <source>① → (1)，Ⅻ → 12</source>
        <translation>① → (1), Ⅻ → 12</translation>
    </message>
    <message>
        <source>按下面的列表更名</source>
        <translation>Rename by the list below</translation>
    </message>
    <message>
        <source>每行一对：原文件名=新文件名，或两者之间用 TAB 分隔。原文件名可以是完整路径；以“;”开头的行不用。</source>
        <translation>One pair per line: old name=new name, or the two separated by a TAB. The old name may be a full path; lines beginning with “;” are not used.</translation>
    </message>
    <message>
        <source>载入列表文件...</source>
        <translation>Load a list file...</translation>
    </message>
    <message>
        <source>UTF-8 或带字节顺序标记的 UTF-16 文本文件</source>
        <translation>A UTF-8 text file, or UTF-16 with a byte-order mark</translation>
    </message>
    <message>
        <source>从文件列表填入</source>
        <translation>Fill in from the rename list</translation>
    </message>
    <message>
        <source>每个对象一行“原名=原名”，只需改等号右边</source>
        <translation>One line “name=name” per object; change only the right-hand side</translation>
    </message>
    <message>
        <source>列表中有 %1 对</source>
        <translation>The list holds %1 pairs</translation>
    </message>
    <message>
        <source>，%1 行无法识别</source>
        <translation>, %1 lines not understood</translation>
    </message>
    <message>
        <source>载入文件名对照列表</source>
        <translation>Load a name list</translation>
    </message>
    <message>
        <source>文本文件 (*.txt);;所有文件 (*)</source>
        <translation>Text files (*.txt);;All files (*)</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>1.A.12.Pascal 脚本更名</source>
        <translation>1.A.12. Rename by Pascal script</translation>
    </message>
    <message>
        <source>1.A.13.Python 脚本更名</source>
        <translation>1.A.13. Rename by Python script</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFrameFileRenameExt</name>
    <message>
        <source>1.E.1.添加替换扩展名</source>
        <translation>1.E.1. Add or replace extensions</translation>
    </message>
    <message>
        <source>1.E.2.删除扩展名</source>
        <translation>1.E.2. Delete extensions</translation>
    </message>
    <message>
        <source>1.E.3.扩展名自动编号</source>
        <translation>1.E.3. Number extensions</translation>
    </message>
    <message>
        <source>1.E.4.扩展名字母大小写</source>
        <translation>1.E.4. Extension letter case</translation>
    </message>
    <message>
        <source>1.E.5.扩展名正则表达式</source>
        <translation>1.E.5. Extension regular expression</translation>
    </message>
    <message>
        <source>1.E.6.扩展名固定</source>
        <translation>1.E.6. Fixed extension</translation>
    </message>
    <message>
        <source>1.E.7.扩展名高级变更</source>
        <translation>1.E.7. Advanced extension changes</translation>
    </message>
    <message>
        <source>扩展名之前添加</source>
        <translation>Add before the extension</translation>
    </message>
    <message>
        <source>扩展名之后添加</source>
        <translation>Add after the extension</translation>
    </message>
    <message>
        <source>查找替换</source>
        <translation>Find and replace</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>区分大小写</source>
        <translation>Case sensitive</translation>
    </message>
    <message>
        <source>查找替换时，找到的文字换成“内容”</source>
        <translation>When finding and replacing, the text found becomes “Content”</translation>
    </message>
    <message>
        <source>清空整个扩展名</source>
        <translation>Clear the whole extension</translation>
    </message>
    <message>
        <source>删除整个扩展名</source>
        <translation>Delete the whole extension</translation>
    </message>
    <message>
        <source>删除后，名称的最后一段成为扩展名</source>
        <translation>After deleting, the last part of the name becomes the extension</translation>
    </message>
    <message>
        <source>从位置</source>
        <translation>From position</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>保留</source>
        <translation>Keep</translation>
    </message>
    <message>
        <source>个字符</source>
        <translation>characters</translation>
    </message>
    <message>
        <source>从后计算</source>
        <translation>Count from the end</translation>
    </message>
    <message>
        <source>插入位置</source>
        <translation>Insert at</translation>
    </message>
    <message>
        <source>0 为最前</source>
        <translation>0 is the very start</translation>
    </message>
    <message>
        <source>始于</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>增量</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>编号</source>
        <translation>Number</translation>
    </message>
    <message>
        <source>数字</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>小写字母</source>
        <translation>Lower-case letters</translation>
    </message>
    <message>
        <source>大写字母</source>
        <translation>Upper-case letters</translation>
    </message>
    <message>
        <source>位数</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>补位符</source>
        <translation>Pad with</translation>
    </message>
    <message>
        <source>自动</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>自定义</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>全部大写</source>
        <translation>ALL UPPER CASE</translation>
    </message>
    <message>
        <source>全部小写</source>
        <translation>all lower case</translation>
    </message>
    <message>
        <source>表达式</source>
        <translation>Expression</translation>
    </message>
    <message>
        <source>替换为</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>作用于去掉“.”的扩展名，可用 $1 引用分组</source>
        <translation>Applies to the extension without “.”; $1 refers to a group</translation>
    </message>
    <message>
        <source>固定为</source>
        <translation>Fixed to</translation>
    </message>
    <message>
        <source>不含开头的“.”，例如 txt</source>
        <translation>Without the leading “.”, for example txt</translation>
    </message>
    <message>
        <source>添加新扩展名</source>
        <translation>Add a new extension</translation>
    </message>
    <message>
        <source>原扩展名并入文件名</source>
        <translation>Move the old extension into the name</translation>
    </message>
    <message>
        <source>替换分界符“.”为</source>
        <translation>Replace the separator “.” with</translation>
    </message>
    <message>
        <source>并用“.”替换</source>
        <translation>and replace with “.”</translation>
    </message>
    <message>
        <source>整体文件名从右往左查找第一个匹配字符（串）</source>
        <translation>The first match in the whole file name, searching from the right</translation>
    </message>
    <message>
        <source>移动分界符“.”</source>
        <translation>Move the separator “.”</translation>
    </message>
    <message>
        <source>向左</source>
        <translation>to the left</translation>
    </message>
    <message>
        <source>向右</source>
        <translation>to the right</translation>
    </message>
    <message>
        <source>智能分析文件获取扩展名</source>
        <translation>Find the extension from the file&apos;s contents</translation>
    </message>
    <message>
        <source>按文件内容识别（内置）；无法识别的保持不变</source>
        <translation>Recognised from the file&apos;s contents (built in); unrecognised files stay unchanged</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFrameFileRenameMetadata</name>
    <message>
        <source>按%1更名</source>
        <translation>Rename by %1</translation>
    </message>
    <message>
        <source>整个文件名</source>
        <translation>Whole file name</translation>
    </message>
    <message>
        <source>文件名之前</source>
        <translation>Before the file name</translation>
    </message>
    <message>
        <source>文件名之后</source>
        <translation>After the file name</translation>
    </message>
    <message>
        <source>插入位置</source>
        <translation>Insert at</translation>
    </message>
    <message>
        <source>从后计算</source>
        <translation>Count from the end</translation>
    </message>
    <message>
        <source>模板</source>
        <translation>Template</translation>
    </message>
    <message>
        <source>该对象保持不变</source>
        <translation>Leave the object unchanged</translation>
    </message>
    <message>
        <source>该字段留空</source>
        <translation>Leave the field empty</translation>
    </message>
    <message>
        <source>使用替代文字</source>
        <translation>Use a substitute text</translation>
    </message>
    <message>
        <source>缺少字段时</source>
        <translation>When a field is missing</translation>
    </message>
    <message>
        <source>替代文字</source>
        <translation>Substitute text</translation>
    </message>
    <message>
        <source>未知</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>选中更名列表中的文件，这里列出它的字段；双击插入到模板</source>
        <translation>Choose a file in the rename list to list its fields here; double-click a field to insert it into the template</translation>
    </message>
    <message>
        <source>元变量</source>
        <translation>Meta-variables</translation>
    </message>
    <message>
        <source>值</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>拍摄时间：EXIF 原始时间，其次</source>
        <translation>Date taken: the EXIF original time, then</translation>
    </message>
    <message>
        <source>数字化时间</source>
        <translation>Digitised time</translation>
    </message>
    <message>
        <source>XMP 创建时间</source>
        <translation>XMP creation time</translation>
    </message>
    <message>
        <source>文件修改时间</source>
        <translation>File modified time</translation>
    </message>
    <message>
        <source>%1 的字段（双击插入到模板）：</source>
        <translation>Fields of %1 (double-click to insert into the template):</translation>
    </message>
    <message>
        <source>%1 没有可读取的字段。</source>
        <translation>%1 has no readable fields.</translation>
    </message>
</context>
<context>
    <name>qp::ui::TFrameFileRenameNormal</name>
    <message>
        <source>1.N.1.添加与补齐</source>
        <translation>1.N.1. Add and pad</translation>
    </message>
    <message>
        <source>1.N.2.替换</source>
        <translation>1.N.2. Replace</translation>
    </message>
    <message>
        <source>1.N.3.删除与保留</source>
        <translation>1.N.3. Delete and keep</translation>
    </message>
    <message>
        <source>1.N.4.自动编号</source>
        <translation>1.N.4. Numbering</translation>
    </message>
    <message>
        <source>1.N.5.移动</source>
        <translation>1.N.5. Move</translation>
    </message>
    <message>
        <source>1.N.6.字母大小写</source>
        <translation>1.N.6. Letter case</translation>
    </message>
    <message>
        <source>直接添加</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>补齐添加</source>
        <translation>Pad</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>获取列表最长</source>
        <translation>Longest in the list</translation>
    </message>
    <message>
        <source>补齐长度</source>
        <translation>Pad to length</translation>
    </message>
    <message>
        <source>补齐时内容将重复至设置补齐长度</source>
        <translation>When padding, the content is repeated up to the pad length</translation>
    </message>
    <message>
        <source>文件名之前</source>
        <translation>Before the file name</translation>
    </message>
    <message>
        <source>文件名之后</source>
        <translation>After the file name</translation>
    </message>
    <message>
        <source>插入位置</source>
        <translation>Insert at</translation>
    </message>
    <message>
        <source>从后计算</source>
        <translation>Count from the end</translation>
    </message>
    <message>
        <source>插入到字符串</source>
        <translation>Insert at the text</translation>
    </message>
    <message>
        <source>后</source>
        <translation>after</translation>
    </message>
    <message>
        <source>前</source>
        <translation>before</translation>
    </message>
    <message>
        <source>含多个时为从左第几个</source>
        <translation>Which one from the left when there are several</translation>
    </message>
    <message>
        <source>插入到左</source>
        <translation>Insert left of</translation>
    </message>
    <message>
        <source>为间隔的字符串</source>
        <translation>as delimited text</translation>
    </message>
    <message>
        <source>含间隔符</source>
        <translation>Include the delimiters</translation>
    </message>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>替换为</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>编辑器</source>
        <translation>Editor</translation>
    </message>
    <message>
        <source>查找替换多项内容时用“|”分隔</source>
        <translation>Separate several texts to find and replace with “|”</translation>
    </message>
    <message>
        <source>区分大小写</source>
        <translation>Case sensitive</translation>
    </message>
    <message>
        <source>同时查找并替换</source>
        <translation>Find and replace all at once</translation>
    </message>
    <message>
        <source>从左到右顺序查找并替换</source>
        <translation>Find and replace one after another, from left to right</translation>
    </message>
    <message>
        <source>替换第</source>
        <translation>Replace occurrence</translation>
    </message>
    <message>
        <source>次出现的</source>
        <translation>of</translation>
    </message>
    <message>
        <source>替换以左</source>
        <translation>Replace the text between left</translation>
    </message>
    <message>
        <source>隔的字符串为：</source>
        <translation>delimiters with:</translation>
    </message>
    <message>
        <source>清空文件名</source>
        <translation>Clear the file name</translation>
    </message>
    <message>
        <source>去除两端空格</source>
        <translation>Trim spaces at both ends</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>保留</source>
        <translation>Keep</translation>
    </message>
    <message>
        <source>从位置</source>
        <translation>From position</translation>
    </message>
    <message>
        <source>个字符</source>
        <translation>characters</translation>
    </message>
    <message>
        <source>以字符串</source>
        <translation>At the text</translation>
    </message>
    <message>
        <source>为界剪裁</source>
        <translation>cut off</translation>
    </message>
    <message>
        <source>后面</source>
        <translation>what follows</translation>
    </message>
    <message>
        <source>前面</source>
        <translation>what precedes</translation>
    </message>
    <message>
        <source>剪裁本身</source>
        <translation>Cut the text itself</translation>
    </message>
    <message>
        <source>以左</source>
        <translation>Between left</translation>
    </message>
    <message>
        <source>在文件名中</source>
        <translation>In the file name,</translation>
    </message>
    <message>
        <source>以下内容</source>
        <translation>the following:</translation>
    </message>
    <message>
        <source>指定字符串</source>
        <translation>Given texts</translation>
    </message>
    <message>
        <source>指定字符集</source>
        <translation>Given characters</translation>
    </message>
    <message>
        <source>预设字符集</source>
        <translation>Preset character sets</translation>
    </message>
    <message>
        <source>表达式</source>
        <translation>Expression</translation>
    </message>
    <message>
        <source>在光标处插入编号</source>
        <translation>Insert the number at the cursor</translation>
    </message>
    <message>
        <source>始于</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>增量</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>位数</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>分组</source>
        <translation>Group</translation>
    </message>
    <message>
        <source>数字</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>小写字母</source>
        <translation>Lower-case letters</translation>
    </message>
    <message>
        <source>大写字母</source>
        <translation>Upper-case letters</translation>
    </message>
    <message>
        <source>重置</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>超出</source>
        <translation>after</translation>
    </message>
    <message>
        <source>未复选行不计数</source>
        <translation>Unticked rows are not counted</translation>
    </message>
    <message>
        <source>按路径单独计数</source>
        <translation>Count each folder separately</translation>
    </message>
    <message>
        <source>排除</source>
        <translation>Exclude</translation>
    </message>
    <message>
        <source>补位符</source>
        <translation>Pad with</translation>
    </message>
    <message>
        <source>自动</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>自定义</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>赋值到</source>
        <translation>Assign to</translation>
    </message>
    <message>
        <source>子字符串：从位置</source>
        <translation>Substring: from position</translation>
    </message>
    <message>
        <source>字符数</source>
        <translation>length</translation>
    </message>
    <message>
        <source>子字符串：左</source>
        <translation>Substring: between left</translation>
    </message>
    <message>
        <source>子字符串：</source>
        <translation>Substring:</translation>
    </message>
    <message>
        <source>向左</source>
        <translation>to the left</translation>
    </message>
    <message>
        <source>向右</source>
        <translation>to the right</translation>
    </message>
    <message>
        <source>移动</source>
        <translation>Move</translation>
    </message>
    <message>
        <source>转换为：</source>
        <translation>Convert to:</translation>
    </message>
    <message>
        <source>全部大写</source>
        <translation>ALL UPPER CASE</translation>
    </message>
    <message>
        <source>全部小写</source>
        <translation>all lower case</translation>
    </message>
    <message>
        <source>一大一小</source>
        <translation>AlTeRnAtE (upper first)</translation>
    </message>
    <message>
        <source>一小一大</source>
        <translation>aLtErNaTe (lower first)</translation>
    </message>
    <message>
        <source>大小写反转</source>
        <translation>Invert case</translation>
    </message>
    <message>
        <source>随机大小写</source>
        <translation>Random case</translation>
    </message>
    <message>
        <source>单词首字母大写后面小写</source>
        <translation>Capitalise Each Word, Rest Lower</translation>
    </message>
    <message>
        <source>单词首字母大写后面不变</source>
        <translation>Capitalise each word, rest unchanged</translation>
    </message>
    <message>
        <source>例外</source>
        <translation>Except</translation>
    </message>
    <message>
        <source>单词分隔：</source>
        <translation>Word separators:</translation>
    </message>
    <message>
        <source>指定字符或字符串</source>
        <translation>Given characters or texts</translation>
    </message>
    <message>
        <source>非数字和字母</source>
        <translation>Not letters or digits</translation>
    </message>
    <message>
        <source>非字母</source>
        <translation>Not letters</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>还没有执行过自动编号命令，没有可赋值的编号。</source>
        <translation>No numbering command has run yet: there are no numbers to assign.</translation>
    </message>
    <message>
        <source>自动编号已赋值到 %1。</source>
        <translation>The numbers were assigned to %1.</translation>
    </message>
    <message>
        <source>请选择预设字符集</source>
        <translation>Choose preset character sets</translation>
    </message>
</context>
<context>
    <name>qp::ui::TGoRenameOKForm</name>
    <message>
        <source>批量更名完成</source>
        <translation>Batch rename complete</translation>
    </message>
    <message>
        <source>对象批量更名完成！</source>
        <translation>The batch rename is complete!</translation>
    </message>
    <message>
        <source>快照文件：</source>
        <translation>Snapshot file:</translation>
    </message>
    <message>
        <source>注：快照文件可以让你在关闭软件后仍可撤销此次更名操作。</source>
        <translation>Note: with the snapshot file you can undo this rename even after closing the program.</translation>
    </message>
    <message>
        <source>注意：系统已开启用户帐户控制（UAC），系统盘中的对象可能因权限不足而更名失败。以管理员身份运行本程序即可解决。</source>
        <translation>Note: User Account Control (UAC) is on; objects on the system drive may fail to rename for lack of rights. Running this program as administrator solves that.</translation>
    </message>
    <message>
        <source>更名完毕后始终显示此对话框</source>
        <translation>Always show this dialog after renaming</translation>
    </message>
    <message>
        <source>保存本次更名快照(&amp;S)</source>
        <translation>&amp;Save this rename&apos;s snapshot</translation>
    </message>
    <message>
        <source>关闭(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
</context>
<context>
    <name>qp::ui::TN3DelWordEditorForm</name>
    <message>
        <source>指定字符串编辑器</source>
        <translation>Given texts editor</translation>
    </message>
    <message>
        <source>每行一个要删除或保留的字符串，空行不计。</source>
        <translation>One text to delete or keep per line; empty lines do not count.</translation>
    </message>
</context>
<context>
    <name>qp::ui::TN3UserCharsetEditorForm</name>
    <message>
        <source>指定字符集编辑器</source>
        <translation>Given characters editor</translation>
    </message>
    <message>
        <source>输入要删除或保留的字符，每个字符都单独计算；换行和重复的字符在保存时去掉。</source>
        <translation>Type the characters to delete or keep, each counted on its own; line breaks and repeated characters are dropped when saving.</translation>
    </message>
    <message>
        <source>添加：</source>
        <translation>Add:</translation>
    </message>
    <message>
        <source>数字</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>小写字母</source>
        <translation>Lower-case letters</translation>
    </message>
    <message>
        <source>大写字母</source>
        <translation>Upper-case letters</translation>
    </message>
    <message>
        <source>空格</source>
        <translation>Space</translation>
    </message>
    <message>
        <source>英文标点</source>
        <translation>English punctuation</translation>
    </message>
    <message>
        <source>共 %1 个字符</source>
        <translation>%1 characters</translation>
    </message>
</context>
<context>
    <name>qp::ui::TRenameWarningForm</name>
    <message>
        <source>更名冲突警告</source>
        <translation>Rename conflict warning</translation>
    </message>
    <message>
        <source>即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，且已经发现更名死循环问题。</source>
        <translation>%1 of the new file names already exist on disk: the renames conflict, and a rename cycle was found.</translation>
    </message>
    <message>
        <source>即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，但未发现更名死循环问题。</source>
        <translation>%1 of the new file names already exist on disk: the renames conflict, but no rename cycle was found.</translation>
    </message>
    <message>
        <source>下表中对象的新文件名正是列表中其它待更名对象的当前文件名。智能更名会先更名占用这些名称的对象；存在更名死循环（例如两个对象互换名称）时，先将所有对象更名为临时名称，再更名为新文件名。</source>
        <translation>The new file names of the objects below are the current names of other objects waiting to be renamed. Smart rename first renames the objects that hold those names; when renames form a cycle (for example two objects swapping names), it first gives every object a temporary name and then the new one.</translation>
    </message>
    <message>
        <source>不再提示本对话框并直接启用智能更名继续操作</source>
        <translation>Do not show this dialog again and go on with smart rename</translation>
    </message>
    <message>
        <source>取消更名操作</source>
        <translation>Cancel the rename</translation>
    </message>
    <message>
        <source>启用智能更名操作继续</source>
        <translation>Go on with smart rename</translation>
    </message>
</context>
<context>
    <name>qp::ui::TReplaceEditForm</name>
    <message>
        <source>查找替换编辑器</source>
        <translation>Find and replace editor</translation>
    </message>
    <message>
        <source>每行一组：左列为查找的内容，右列为替换成的内容。两列都为空的行不保存；内容中的“|”是分隔符，会被去掉。</source>
        <translation>One pair per line: the left column is the text to find, the right column its replacement. Lines with both columns empty are not saved; “|” in a text is the separator and is removed.</translation>
    </message>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>替换为</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>添加(&amp;A)</source>
        <translation>&amp;Add</translation>
    </message>
    <message>
        <source>插入(&amp;I)</source>
        <translation>&amp;Insert</translation>
    </message>
    <message>
        <source>删除(&amp;D)</source>
        <translation>&amp;Delete</translation>
    </message>
    <message>
        <source>上移(&amp;U)</source>
        <translation>Move &amp;up</translation>
    </message>
    <message>
        <source>下移(&amp;N)</source>
        <translation>Move dow&amp;n</translation>
    </message>
    <message>
        <source>互换两列(&amp;S)</source>
        <translation>&amp;Swap the columns</translation>
    </message>
    <message>
        <source>清空(&amp;L)</source>
        <translation>C&amp;lear</translation>
    </message>
    <message>
        <source>确定(&amp;O)</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>共 %1 组</source>
        <translation>%1 pairs</translation>
    </message>
</context>
<context>
    <name>qp::ui::TSelectFoldersForm</name>
    <message>
        <source>请选择一个或多个文件夹</source>
        <translation>Choose one or more folders</translation>
    </message>
    <message>
        <source>输入文件夹路径后按回车</source>
        <translation>Type a folder path and press Enter</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>将选中的文件夹载入文件列表</source>
        <translation>Load the chosen folders into the file list</translation>
    </message>
</context>
<context>
    <name>qp::ui::TSimpleRenameSelectForm</name>
    <message>
        <source>批量更名方式选择</source>
        <translation>Choose the way to rename</translation>
    </message>
    <message>
        <source>更名文件列表中共有 %1 个对象。智能更名会检查和修正每个新文件名，对象很多时需要较长时间；简单更名省去这些检查，速度更快。与智能更名相比，简单更名：</source>
        <translation>The rename list holds %1 objects. Smart rename checks and corrects every new file name, which takes a while for many objects; simple rename leaves these checks out and is faster. Unlike smart rename, simple rename:</translation>
    </message>
    <message>
        <source>1. 不过滤文件名中的非法字符；
2. 不处理空文件名；
3. 不为同一文件夹中重名的对象编号；
4. 不删除文件名末尾的空格和点；
5. 不调整新文件名是其它对象旧文件名时的更名顺序；
6. 不处理更名死循环（例如两个对象互换名称）。</source>
        <translation>1. does not remove invalid characters from file names;
2. does not handle empty file names;
3. does not number objects with the same name in one folder;
4. does not remove spaces and dots at the end of names;
5. does not reorder renames whose new name is another object&apos;s old name;
6. does not resolve rename cycles (for example two objects swapping names).</translation>
    </message>
    <message>
        <source>请确认新文件名没有以上问题后再选择简单更名。</source>
        <translation>Make sure the new file names have none of these problems before choosing simple rename.</translation>
    </message>
    <message>
        <source>选择简单更名继续(&amp;C)</source>
        <translation>&amp;Continue with simple rename</translation>
    </message>
    <message>
        <source>选择智能更名继续(&amp;S)</source>
        <translation>Continue with &amp;smart rename</translation>
    </message>
    <message>
        <source>先不更名了，我再考虑一下(&amp;C)</source>
        <translation>&amp;Cancel, I will think it over</translation>
    </message>
</context>
<context>
    <name>qp::ui::TUVUSERSelectForm</name>
    <message>
        <source>定义用户自定义元变量</source>
        <translation>Define user meta-variables</translation>
    </message>
    <message>
        <source>定义时，更名文件列表中“新文件名”一列的当前内容按行存入所选的元变量；之后在表达式中使用它，每个对象取与自己行号相同的一行。这些内容保留到程序关闭为止。</source>
        <translation>Defining stores the current contents of the rename list&apos;s “New file name” column, row by row, in the chosen meta-variable; an expression using it then gives each object the line with its own row number. The contents last until the program closes.</translation>
    </message>
    <message>
        <source>定义%1</source>
        <translation>Define %1</translation>
    </message>
    <message>
        <source>已定义</source>
        <translation>Defined</translation>
    </message>
    <message>
        <source>未定义</source>
        <translation>Not defined</translation>
    </message>
    <message>
        <source>字符串列表数量：</source>
        <translation>Number of text lists:</translation>
    </message>
</context>
<context>
    <name>qp::ui::TUnitVariableWarningForm</name>
    <message>
        <source>温馨提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>忽略此提示对话框</source>
        <translation>Do not show this warning again</translation>
    </message>
    <message>
        <source>继续(&amp;O)</source>
        <translation>C&amp;ontinue</translation>
    </message>
    <message>
        <source>取消(&amp;C)</source>
        <translation>&amp;Cancel</translation>
    </message>
</context>
<context>
    <name>qp::ui::TUpdateForm</name>
    <message>
        <source>发现新版本</source>
        <translation>New version available</translation>
    </message>
    <message>
        <source>Quillet Pro %1 已经发布（当前版本 %2）。</source>
        <translation>Quillet Pro %1 is out (this is version %2).</translation>
    </message>
    <message>
        <source>发布日期：%1</source>
        <translation>Released: %1</translation>
    </message>
    <message>
        <source>下载页面：%1</source>
        <translation>Download page: %1</translation>
    </message>
    <message>
        <source>SHA-256：%1</source>
        <translation>SHA-256: %1</translation>
    </message>
    <message>
        <source>打开下载页面</source>
        <translation>Open the download page</translation>
    </message>
    <message>
        <source>跳过此版本</source>
        <translation>Skip this version</translation>
    </message>
    <message>
        <source>以后再说</source>
        <translation>Later</translation>
    </message>
</context>
<context>
    <name>qp::ui::TUseFindFolderUnitVariableWarningForm</name>
    <message>
        <source>元变量 %1 要遍历文件夹，当前设置的遍历深度为 %2。所需时间随遍历深度和文件夹内对象的数量增长，每次预览和更名都可能要等很久。

只需统计文件夹本身的内容时，可在设置的“元变量”页中把它的深度设为 1。</source>
        <translation>The meta-variable %1 walks folders, to the depth currently set: %2. The time it takes grows with the depth and the number of objects in the folders; every preview and rename may take a long time.

To count only the folder&apos;s own contents, set its depth to 1 on the “Meta-variables” tab of the options.</translation>
    </message>
    <message>
        <source>0（全部层级）</source>
        <translation>0 (all levels)</translation>
    </message>
</context>
<context>
    <name>qp::ui::TUseHashUnitVariableWarningForm</name>
    <message>
        <source>文件校验系列元变量（&lt;CRC32&gt;、&lt;MD5&gt;、&lt;SHA1&gt;）要读取每个文件的全部内容，所需时间随文件大小增长；文件较大或较多时，每次预览和更名都可能要等很久。

下表是本机计算校验值所需的时间（在内存中测得，读取磁盘的时间另计）：</source>
        <translation>The hash meta-variables (&lt;CRC32&gt;, &lt;MD5&gt;, &lt;SHA1&gt;) read the whole of every file, so the time they take grows with the file sizes; with large or many files every preview and rename may take a long time.

The table shows how long this computer takes to compute the hashes (measured in memory; reading from disk comes on top):</translation>
    </message>
</context>
<context>
    <name>qp::ui::TViewUVUSERForm</name>
    <message>
        <source>序号</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>实际文件名</source>
        <translation>Actual file name</translation>
    </message>
    <message>
        <source>查看用户自定义元变量</source>
        <translation>View user meta-variables</translation>
    </message>
    <message>
        <source>更名文件列表内对象：%1个；已被定义的用户自定义元变量：%2个</source>
        <translation>Objects in the rename list: %1; user meta-variables defined: %2</translation>
    </message>
</context>
<context>
    <name>qp::ui::TWelcomeForm</name>
    <message>
        <source>欢迎使用 Quillet Pro</source>
        <translation>Welcome to Quillet Pro</translation>
    </message>
    <message>
        <source>&lt;b&gt;三步完成批量更名：&lt;/b&gt;&lt;ol&gt;&lt;li&gt;把文件或文件夹拖到右边的列表，或用“文件”菜单添加；&lt;/li&gt;&lt;li&gt;在左边的功能页上设置更名方式，新文件名立即显示在列表中；&lt;/li&gt;&lt;li&gt;按 F9 应用更名。改错了？按 Ctrl+Z 撤销。&lt;/li&gt;&lt;/ol&gt;在文件管理器里选中文件后右键“用 Quillet Pro 批量更名”，也能直接打开它们（先运行一次 &lt;tt&gt;QuilletPro -i&lt;/tt&gt;）。</source>
        <translation>&lt;b&gt;Batch renaming in three steps:&lt;/b&gt;&lt;ol&gt;&lt;li&gt;Drag files or folders onto the list on the right, or add them from the “File” menu;&lt;/li&gt;&lt;li&gt;choose how to rename on the function pages on the left; the new names show in the list at once;&lt;/li&gt;&lt;li&gt;press F9 to apply the renames. A mistake? Ctrl+Z undoes it.&lt;/li&gt;&lt;/ol&gt;In the file manager, right-click chosen files and pick “Rename with Quillet Pro” to open them here directly (run &lt;tt&gt;QuilletPro -i&lt;/tt&gt; once first).</translation>
    </message>
    <message>
        <source>最近的批处理命令文件（双击载入）</source>
        <translation>Recent command files (double-click to load)</translation>
    </message>
    <message>
        <source>（还没有）</source>
        <translation>(none yet)</translation>
    </message>
    <message>
        <source>每 %1 天检查一次是否有新版本（只读取一个很小的说明文件，从不自动下载）</source>
        <translation>Check for a new version every %1 days (reads one small information file, never downloads anything)</translation>
    </message>
    <message>
        <source>不再显示</source>
        <translation>Do not show again</translation>
    </message>
    <message>
        <source>开始使用</source>
        <translation>Get started</translation>
    </message>
</context>
<context>
    <name>qp::ui::UpdateChecker</name>
    <message>
        <source>更新信息过大（超过 %1 字节）。</source>
        <translation>The update information is too large (more than %1 bytes).</translation>
    </message>
    <message>
        <source>服务器 %1 秒内没有应答。</source>
        <translation>The server did not answer within %1 seconds.</translation>
    </message>
    <message>
        <source>服务器应答 HTTP %1。</source>
        <translation>The server answered HTTP %1.</translation>
    </message>
</context>
</TS>
