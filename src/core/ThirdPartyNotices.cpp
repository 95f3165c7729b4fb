#include "core/ThirdPartyNotices.h"

#include "core/PathText.h"
#include "core/TextFiles.h"

namespace qp {

namespace {

QString* fieldOf(NoticeEntry& entry, QStringView key)
{
    const std::pair<const char*, QString NoticeEntry::*> fields[] = {
        {"Licence", &NoticeEntry::licence}, {"License", &NoticeEntry::licence}, {"Source", &NoticeEntry::source},
        {"Use", &NoticeEntry::use},         {"Note", &NoticeEntry::note},       {"Version", &NoticeEntry::version},
    };
    for (const auto& [name, member] : fields) {
        if (key == QLatin1String(name))
            return &(entry.*member);
    }
    return nullptr;
}

}  // namespace

std::vector<NoticeEntry> parseNotices(const QString& text)
{
    std::vector<NoticeEntry> entries;
    QString* last = nullptr;
    text::forEachLine(text, [&](QStringView line) {
        const QStringView trimmed = line.trimmed();
        if (trimmed.size() > 2 && trimmed.startsWith(u'[') && trimmed.endsWith(u']')) {
            entries.push_back({trimmed.sliced(1, trimmed.size() - 2).toString(), {}, {}, {}, {}, {}});
            last = nullptr;
            return;
        }
        if (entries.empty() || trimmed.isEmpty()) {
            last = nullptr;
            return;
        }
        const qsizetype colon = trimmed.indexOf(u':');
        if (QString* field = colon > 0 ? fieldOf(entries.back(), trimmed.first(colon)) : nullptr) {
            *field = trimmed.sliced(colon + 1).trimmed().toString();
            last = field;
        } else if (last) {
            *last += u' ' + trimmed.toString();
        }
    });
    return entries;
}

QString findNoticeFile(const QString& exeFolder)
{
    for (const QString& candidate : {exeFolder + u'/' + kNoticeFileName,
                                     exeFolder + QStringLiteral("/../share/doc/quilletpro/") + kNoticeFileName}) {
        if (platform::isFile(toPlatformPath(candidate)))
            return candidate;
    }
    return {};
}

}  // namespace qp
