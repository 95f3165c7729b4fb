#include "core/CommandList.h"
#include "core/SettingsKeys.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <utility>

#include "core/Interaction.h"
#include "core/Session.h"
#include "core/SettingsStore.h"

namespace qp {

namespace {

const QString kStampFormat = QStringLiteral("yyyyMMddHHmmsszzz");
constexpr qsizetype kStampLength = 17;
constexpr qsizetype kRestoreTick = 1024;

QString tr(const char* text) { return QCoreApplication::translate("CommandList", text); }

QString hintTitle() { return tr("温馨提示"); }

bool isCommandSectionName(const QString& name)
{
    return name.size() > keys::kCommandSectionPrefix.size() && name.startsWith(keys::kCommandSectionPrefix, Qt::CaseInsensitive);
}

// The positive number a key of "CommandList" stands for, written the way the list writes
// it ("7", never "07" or "+7"); 0 for any other key.
qint64 listPosition(const QString& key)
{
    if (key.isEmpty() || key.size() > 18 || key.front() == u'0')
        return 0;
    qint64 n = 0;
    for (QChar c : key) {
        if (c < u'0' || c > u'9')
            return 0;
        n = n * 10 + (c.unicode() - u'0');
    }
    return n;
}

// "代号" of a stored command: its sub-code less the two digits of the option. A section
// without a sub-code falls back to the code inside its own name.
QString functionCodeOf(const SettingsStore& store, const QString& section)
{
    const QString subCode = store.readString(section, keys::kCommandId, QString());
    if (subCode.size() > 2)
        return subCode.chopped(2);
    QString code = section.mid(keys::kCommandSectionPrefix.size());
    if (code.size() > kStampLength)
        code.chop(kStampLength);
    return code;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// The list and its mirror in the store

QStringList CommandList::sectionNames() const
{
    QStringList names;
    names.reserve(size());
    for (const CommandRow& row : m_rows)
        names.append(row.section);
    return names;
}

void CommandList::clearAll()
{
    m_rows.clear();
    eraseCommands(m_store);
}

void CommandList::eraseCommands(SettingsStore& store)
{
    for (const QString& section : store.sectionNames()) {
        if (section.startsWith(keys::kCommandSectionPrefix, Qt::CaseInsensitive))
            store.eraseSection(section);
    }
    store.eraseSection(keys::kCommandList);
}

ListedSections CommandList::listedSections(const SettingsStore& store)
{
    ListedSections result;
    result.declared = store.readInt(keys::kCommandList, keys::kCommandListCount, 0);
    if (result.declared <= 0)
        return result;

    // Only the keys that are there: a hand-edited or hostile count never drives a loop.
    std::vector<std::pair<qint64, QString>> numbered;
    for (const auto& [key, value] : store.sectionEntries(keys::kCommandList)) {
        const qint64 position = listPosition(key);
        if (position >= 1 && position <= result.declared)
            numbered.emplace_back(position, key);
    }
    std::sort(numbered.begin(), numbered.end());

    QSet<QString> seen;
    for (const auto& [position, key] : numbered) {
        const QString section = store.readString(keys::kCommandList, key, QString());
        const QString folded = section.toCaseFolded();
        // Empty, foreign, missing or repeated: a row for it could only run nothing, or
        // erase a section it does not own when deleted.
        if (!isCommandSectionName(section) || !store.hasSection(section) || seen.contains(folded)) {
            ++result.skipped;
            continue;
        }
        seen.insert(folded);
        result.sections.append(section);
    }
    return result;
}

void CommandList::rebuildFromStore()
{
    m_rows.clear();
    const ListedSections listed = listedSections(m_store);
    m_rows.reserve(size_t(listed.sections.size()));
    for (const QString& section : listed.sections) {
        m_rows.push_back(CommandRow{functionCodeOf(m_store, section),
                                    m_store.readString(section, keys::kCommandComment, QString()), section, true});
    }

    // Rewrite the list only when the store says more than the grid shows (skipped keys,
    // keys past the count, a wrong count), so that a clean list keeps its place in the file.
    const auto entries = m_store.sectionEntries(keys::kCommandList);
    const bool clean = entries.isEmpty() ? m_rows.empty()
                                         : (listed.skipped == 0 && listed.declared == size()
                                            && entries.size() == size() + 1);
    if (!clean)
        writeListSection();
}

void CommandList::writeListSection()
{
    m_store.eraseSection(keys::kCommandList);
    if (m_rows.empty())
        return;
    m_store.writeInt(keys::kCommandList, keys::kCommandListCount, size());
    for (size_t i = 0; i < m_rows.size(); ++i)
        m_store.writeRaw(keys::kCommandList, QString::number(i + 1), m_rows[i].section);
}

QString CommandList::sectionName(const QString& functionCode, const QDateTime& time)
{
    return keys::kCommandSectionPrefix + functionCode + time.toString(kStampFormat);
}

bool CommandList::nameInUse(const QString& section) const
{
    if (m_store.hasSection(section))
        return true;
    return std::any_of(m_rows.begin(), m_rows.end(), [&](const CommandRow& row) {
        return row.section.compare(section, Qt::CaseInsensitive) == 0;
    });
}

QString CommandList::newSectionName(const QString& functionCode) const
{
    // Two commands made within one millisecond would share a name; the later one takes
    // the next free millisecond, which keeps the name's form and the list's order.
    QDateTime time = m_clock ? m_clock() : QDateTime::currentDateTime();
    QString name = sectionName(functionCode, time);
    while (nameInUse(name)) {
        time = time.addMSecs(1);
        name = sectionName(functionCode, time);
    }
    return name;
}

// ---------------------------------------------------------------------------------------
// Changes

RecordAnswer CommandList::record(const QString& functionCode, bool keepUnchanged)
{
    RecordAnswer answer;
    const bool sameOpen = lastIsOpen() && m_rows.back().functionCode == functionCode;
    if (keepUnchanged) {
        if (sameOpen) {
            m_store.eraseSection(m_rows.back().section);
            m_rows.pop_back();
            writeListSection();
            answer.removed = true;
        } else if (!m_rows.empty()) {
            m_rows.back().ended = true;
        }
        return answer;
    }

    answer.write = true;
    if (sameOpen) {
        answer.section = m_rows.back().section;
        return answer;
    }
    answer.section = newSectionName(functionCode);
    answer.created = true;
    if (!m_rows.empty())
        m_rows.back().ended = true;
    m_rows.push_back(CommandRow{functionCode, QString(), answer.section, false});
    writeListSection();
    return answer;
}

void CommandList::describe(const QString& section, const QString& subCode, const QString& comment)
{
    m_store.writeString(section, keys::kCommandId, subCode);
    m_store.writeString(section, keys::kCommandComment, comment);
    for (CommandRow& row : m_rows) {
        if (row.section == section)
            row.comment = comment;
    }
}

bool CommandList::endCurrent()
{
    if (!lastIsOpen())
        return false;
    m_rows.back().ended = true;
    return true;
}

bool CommandList::removeLast()
{
    if (m_rows.empty())
        return false;
    m_store.eraseSection(m_rows.back().section);
    m_rows.pop_back();
    writeListSection();
    return true;
}

qsizetype CommandList::removeAfter(qsizetype row)
{
    if (row < 0 || row >= size() - 1)
        return 0;
    const qsizetype removed = size() - 1 - row;
    while (size() > row + 1) {
        m_store.eraseSection(m_rows.back().section);
        m_rows.pop_back();
    }
    writeListSection();
    return removed;
}

// ---------------------------------------------------------------------------------------
// Session operations

RecordAnswer recordCommand(Session& session, const QString& functionCode, bool keepUnchanged)
{
    // Setting the pages back to "保持不变" clicks their options; that is not the user.
    if (session.resettingPages())
        return {};
    if (session.renameList().isEmpty())
        return {};
    if (session.pendingImport()) {
        const Question question{
            QStringLiteral("commands.pendingImport"), hintTitle(),
            tr("更名文件列表中内容为导入的更名方案文件或快照文件，还未进行处理，继续操作更名方案或快照可能被忽略。继续吗？"),
            Button::Ok | Button::Cancel, Button::Cancel, Icon::Question};
        if (session.interaction().ask(question) != Button::Ok)
            return {};
        session.setPendingImport(false);
    }
    session.runPendingListRefresh();

    const RecordAnswer answer = session.commandList().record(functionCode, keepUnchanged);
    // The removed command's effect is still in the new names: run what is left.
    if (answer.removed)
        session.runAllCommands();
    return answer;
}

bool requireFileRenamePage(Session& session)
{
    if (session.onFileRenamePage())
        return true;
    session.interaction().notify(Notice{QStringLiteral("commands.fileRenamePageOnly"), hintTitle(),
                                        tr("请返回【1.文件名处理】版块使用此项功能。"), Icon::Information});
    return false;
}

bool endCurrentCommand(Session& session)
{
    if (!requireFileRenamePage(session))
        return false;
    if (session.renameList().isEmpty() || !session.commandList().endCurrent())
        return false;
    session.resetPages();
    return true;
}

bool deleteLastCommand(Session& session)
{
    if (!requireFileRenamePage(session))
        return false;
    if (!session.commandList().removeLast())
        return false;
    session.runAllCommands();
    return true;
}

bool deleteCommandsAfter(Session& session, qsizetype row)
{
    if (session.commandList().removeAfter(row) == 0)
        return false;
    session.runAllCommands();
    return true;
}

bool clearCommandList(Session& session)
{
    if (!requireFileRenamePage(session))
        return false;
    if (session.commandList().isEmpty())
        return false;
    const Question question{
        QStringLiteral("commands.clear"), hintTitle(),
        tr("即将清空命令列表中的所有命令，新文件名和新扩展名列将还原为原始状态。此操作不可逆，是否继续？"),
        Button::Yes | Button::No, Button::No, Icon::Question};
    if (session.interaction().ask(question) != Button::Yes)
        return false;

    session.commandList().clearAll();
    session.interaction().notify(
        Notice{QStringLiteral("commands.cleared"), hintTitle(), tr("清空命令列表完毕。"), Icon::Information});

    RenameList& list = session.renameList();
    if (!list.isEmpty()) {
        BusyScope busy(session.interaction());
        const QString caption = tr("正在还原文件名");
        const qsizetype total = list.size();
        for (qsizetype i = 0; i < total; ++i) {
            if (i % kRestoreTick == 0)
                session.interaction().progress(caption, int(i * 100 / total));
            FileEntry& row = list[i];
            row.newName = row.name;
            row.newExt = row.ext;
        }
        session.interaction().progress(caption, 100);
    }
    // Also with an empty rename list: no page should show an option the list does not hold.
    session.resetPages();
    return true;
}

bool refreshCommandList(Session& session)
{
    if (!requireFileRenamePage(session))
        return false;
    session.commandList().rebuildFromStore();
    return true;
}

// ---------------------------------------------------------------------------------------
// Page groups
//
// A function code is a family letter and a group number ("N4", "A10"). The function panel
// shows them on these page groups, each named after the first function it holds:
//
//   N1  N1            add and pad
//   N2  N2, N3        replace; delete and keep
//   N4  N4–N6, E1–E7  numbering, move, letter case, and the extension functions, which
//                     have no group of their own and sit with the last normal one
//   A1  A1–A7         regular expressions, variables, pinyin, numerals, the encodings
//   A1_1 A8–A13       scrambling, the name editor, others, old/new list, the scripts
//   M1, C1, O1, P1, F1, T2   every group of the music, media, Office, PDF, font and text
//                     families (each has one page)
//   D1, D2, D3; K1, K2       photo and executable families: group n goes to page n, and a
//                     group past the last page goes to the last page
//
// The rule behind all of it: within a family, the page with the largest number not above
// the group number, else the family's first page. A later group of a known family thus
// lands on its family's last page instead of nowhere.

QString pageGroupOf(const QString& functionCode)
{
    // One row per page, a family's pages in ascending order of their first group.
    struct Page {
        char family;
        int firstGroup;
        const char* name;
    };
    static constexpr Page pages[] = {
        {'N', 1, "N1"}, {'N', 2, "N2"}, {'N', 4, "N4"}, {'E', 1, "N4"},
        {'A', 1, "A1"}, {'A', 8, "A1_1"},
        {'M', 1, "M1"},
        {'D', 1, "D1"}, {'D', 2, "D2"}, {'D', 3, "D3"},
        {'C', 1, "C1"}, {'O', 1, "O1"}, {'P', 1, "P1"}, {'T', 1, "T2"}, {'F', 1, "F1"},
        {'K', 1, "K1"}, {'K', 2, "K2"},
    };

    if (functionCode.size() < 2 || functionCode.size() > 3)
        return {};
    int group = 0;
    for (QChar c : functionCode.sliced(1)) {
        if (c < u'0' || c > u'9')
            return {};
        group = group * 10 + (c.unicode() - u'0');
    }
    if (group < 1)
        return {};
    const char* found = nullptr;
    for (const Page& page : pages) {
        if (functionCode.front() != QLatin1Char(page.family))
            continue;
        if (found == nullptr || page.firstGroup <= group)
            found = page.name;
    }
    return found == nullptr ? QString() : QString::fromLatin1(found);
}

}  // namespace qp
