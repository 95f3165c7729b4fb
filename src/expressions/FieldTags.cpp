#include "expressions/FieldTags.h"

#include <QDateTime>
#include <QSet>

#include "core/FileEntry.h"
#include "core/Session.h"
#include "core/SettingsStore.h"
#include "core/SettingsKeys.h"
#include "expressions/TagParts.h"

namespace qp {

using metadata::FieldValue;
using metadata::ParameterKind;

metadata::FieldCache& fieldCacheOf(const Session& session)
{
    std::shared_ptr<metadata::FieldCache>& slot = session.fieldCacheSlot();
    if (!slot)
        slot = std::make_shared<metadata::FieldCache>();
    return *slot;
}

metadata::LegacyEncoding legacyEncodingOf(const SettingsStore& settings)
{
    return metadata::legacyEncodingFromSetting(settings.readInt(keys::kOperation, keys::kLegacyTagEncoding, 0));
}

metadata::ReadRequest fieldReadRequest(const SettingsStore& settings, QChar family)
{
    metadata::ReadRequest request;
    request.legacy = legacyEncodingOf(settings);
    if (const metadata::FamilyInfo* info = metadata::familyOf(family)) {
        for (const metadata::FieldInfo& field : info->fields) {
            if (field.parameter == ParameterKind::Key) {
                const QString key = metadata::fieldTag(family, field.name);
                request.keys.append(expr::decodeSpaces(settings.readString(keys::kUnitVariable, key, field.defaultParameter)).trimmed());
            }
        }
    }
    return request;
}

bool isFieldTagName(QStringView name)
{
    if (name.size() < 3 || name[1] != u'.' || !metadata::familyOf(name[0]))
        return false;
    for (const QChar c : name.mid(2)) {
        const char16_t u = c.unicode();
        if (!((u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')))
            return false;
    }
    return true;
}

namespace {

QString digitsPadded(double number, const QString& parameter, const QString& fallback)
{
    const qint64 digits = std::min<qint64>(expr::firstNumber(parameter, expr::firstNumber(fallback, 1)), 255);
    return QString::number(qint64(number)).rightJustified(qsizetype(digits), u'0');
}

// "zzz" (milliseconds) and "oooo" (the offset from UTC, "+0800"), which the pictures of the
// time tags do not have, then the shared picture codes.
QString momentText(const metadata::Moment& moment, const QString& picture, const QLocale& locale)
{
    const QString offset = moment.offsetText(false);
    const QTime time = moment.time.isValid() ? moment.time : QTime(0, 0);
    QString expanded;
    for (qsizetype i = 0; i < picture.size();) {
        const QChar c = picture[i].toLower();
        qsizetype run = 1;
        while (i + run < picture.size() && picture[i + run].toLower() == c)
            ++run;
        if (c == u'z' && run == 3)
            expanded += QStringLiteral("%1").arg(time.msec(), 3, 10, QLatin1Char('0'));
        else if (c == u'o' && run == 4)
            expanded += offset;
        else
            expanded += QStringView(picture).mid(i, run);
        i += run;
    }
    // Formatted as the file recorded it, with no time zone to move it.
    return expr::formatPicture(QDateTime(moment.date, time, Qt::UTC), expanded, locale);
}

QString flagText(double number, const QString& parameter)
{
    const qsizetype slash = parameter.indexOf(u'/');
    return number != 0 ? parameter.left(slash < 0 ? parameter.size() : slash) : (slash < 0 ? QString() : parameter.mid(slash + 1));
}

metadata::Moment localMoment(std::int64_t nanoseconds)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(nanoseconds / 1'000'000);
    metadata::Moment moment;
    moment.date = local.date();
    moment.time = local.time();
    moment.offsetMinutes = local.offsetFromUtc() / 60;
    return moment;
}

const FieldValue* dateTaken(const metadata::FamilyFields& fields, const FileEntry& row, const FieldOptions& options,
                            FieldValue& scratch)
{
    const std::pair<bool, const char*> chain[] = {{true, "DATEORIGINAL"},
                                                  {options.dateFromDigitized, "DATEDIGITIZED"},
                                                  {options.dateFromXmp, "XMPCREATEDATE"}};
    for (const auto& [used, name] : chain) {
        if (!used)
            continue;
        if (const FieldValue* value = fields.find(QLatin1String(name)))
            return value;
    }
    if (options.dateFromFileTime && row.modified != 0) {
        scratch = FieldValue::moment(localMoment(row.modified));
        return &scratch;
    }
    return nullptr;
}

}  // namespace

QString formatField(const FieldValue& value, ParameterKind kind, const QString& parameter, const QString& fallback,
                    const QLocale& locale)
{
    switch (kind) {
    case ParameterKind::Digits:
        if (value.kind() == FieldValue::Kind::Number)
            return digitsPadded(value.number(), parameter, fallback);
        break;
    case ParameterKind::Picture:
        if (value.kind() == FieldValue::Kind::Moment)
            return momentText(value.moment(), parameter, locale);
        break;
    case ParameterKind::Flag:
        if (value.kind() == FieldValue::Kind::Number)
            return flagText(value.number(), parameter);
        break;
    case ParameterKind::Separator:
        if (value.items().size() > 1)
            return value.items().join(parameter);
        return QString(value.text()).replace(u'/', parameter).replace(u':', parameter);
    case ParameterKind::Decimals:
        if (value.kind() != FieldValue::Kind::Text)
            return QString::number(value.number(), 'f',
                                   int(std::min<qint64>(expr::firstNumber(parameter, expr::firstNumber(fallback, 0)), 12)));
        break;
    case ParameterKind::None:
    case ParameterKind::Key:
        break;
    }
    return value.text();
}

std::optional<QString> fieldTagValue(const Session& session, const FileEntry& row, const FieldTag& tag,
                                     const QString& parameter, const FieldReading& reading, ExpansionReport* report)
{
    if (row.isFolder)
        return std::nullopt;
    metadata::ReadRequest request;
    request.legacy = reading.legacy;
    const ParameterKind kind = tag.info ? tag.info->parameter : ParameterKind::None;
    if (kind == ParameterKind::Key)
        request.keys.append(parameter.trimmed());
    const metadata::FamilyFields& fields = fieldCacheOf(session).fields(row.fullPath(), tag.family, request);
    if (fields.status != metadata::ReadStatus::Ok) {
        if (report)
            report->unreadable = true;
        return std::nullopt;
    }
    if (kind == ParameterKind::Key) {
        const auto it = fields.keys.constFind(parameter.trimmed());
        if (it == fields.keys.constEnd())
            return std::nullopt;
        return *it;
    }
    FieldValue scratch;
    const FieldValue* value = tag.family == u'D' && tag.name == QLatin1String("DATETAKEN")
                                  ? dateTaken(fields, row, reading.options, scratch)
                                  : fields.find(tag.name);
    if (!value)
        return std::nullopt;
    return formatField(*value, kind, parameter, tag.info ? tag.info->defaultParameter : QString(), reading.locale);
}

std::vector<FieldLine> fieldLines(QChar family, const metadata::FamilyFields& fields)
{
    std::vector<FieldLine> lines;
    if (fields.status != metadata::ReadStatus::Ok)
        return lines;
    QSet<QString> listed;
    QString keyTag;  // the family's tag that names a library key, if it has one
    if (const metadata::FamilyInfo* info = metadata::familyOf(family)) {
        FileEntry noFile;
        FieldValue scratch;
        for (const metadata::FieldInfo& field : info->fields) {
            listed.insert(field.name);
            if (field.parameter == ParameterKind::Key)
                keyTag = metadata::fieldTag(family, field.name);
            const FieldValue* value = family == u'D' && field.name == QLatin1String("DATETAKEN")
                                          ? dateTaken(fields, noFile, FieldOptions(), scratch)
                                          : fields.find(field.name);
            if (value)
                lines.push_back({metadata::fieldTag(family, field.name), value->text()});
        }
    }
    for (const QString& name : fields.order) {
        if (!listed.contains(name))
            lines.push_back({metadata::fieldTag(family, name), fields.fields.value(name).text()});
    }
    if (keyTag.isEmpty())
        return lines;
    QStringList keys = fields.keys.keys();
    keys.sort();
    for (const QString& key : std::as_const(keys))
        lines.push_back({keyTag + u'(' + key + u')', fields.keys.value(key)});
    return lines;
}

}  // namespace qp
