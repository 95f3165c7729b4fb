// An ordered INI document: sections and keys keep the order they were read or added in,
// so that a saved file reads like the one that was loaded. Section and key names are
// matched without regard to ASCII case (as Windows INI files are) and keep their spelling.
#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <vector>

namespace qp {

class SettingsStore {
public:
    // What a load found; none of it stops the load.
    struct LoadReport {
        bool fileMissing = false;     // no file: the store starts empty
        bool unreadable = false;      // the file exists but could not be read: store empty
        bool invalidUtf8 = false;     // undecodable bytes were replaced with U+FFFD
        int ignoredLines = 0;         // non-empty lines without "=" or before any section
        QString message;              // the OS's text when unreadable
    };

    SettingsStore() = default;

    // Parses INI text. Lines may end with CRLF, LF or CR; a leading BOM is skipped.
    // Comment lines (";" or "#" first) and lines without "=" are dropped; keys before any
    // section are dropped. A repeated section continues the first one; a repeated key
    // keeps its first position and takes the later value.
    LoadReport parse(QStringView text);
    // Decodes UTF-8 (BOM optional) and parses.
    LoadReport parseBytes(const QByteArray& bytes);

    // Reads the file (missing file: empty store, reported) and remembers its name.
    LoadReport load(const QString& fileName);
    // Writes the whole document as UTF-8 with BOM and CRLF to a temporary file that is
    // then moved over the target. False with *error set when that fails.
    bool save(const QString& fileName, QString* error = nullptr) const;
    bool save(QString* error = nullptr) const { return save(m_fileName, error); }
    const QString& fileName() const { return m_fileName; }
    void setFileName(const QString& fileName) { m_fileName = fileName; }

    QString toText() const;   // CRLF line ends, an empty line between sections, no BOM
    QByteArray toBytes() const;  // BOM + UTF-8 of toText()

    bool readBool(const QString& section, const QString& key, bool defaultValue) const;
    qint64 readInt(const QString& section, const QString& key, qint64 defaultValue) const;
    // The stored text, with one "|" removed at each end when it begins and ends with "|".
    QString readString(const QString& section, const QString& key, const QString& defaultValue) const;
    // The stored text exactly as it stands in the file.
    QString readRaw(const QString& section, const QString& key, const QString& defaultValue) const;

    void writeBool(const QString& section, const QString& key, bool value);
    void writeInt(const QString& section, const QString& key, qint64 value);
    // Texts that would not survive a round trip (leading or trailing blanks, or a value
    // that itself begins and ends with "|") are wrapped in "|…|".
    void writeString(const QString& section, const QString& key, const QString& value);
    void writeRaw(const QString& section, const QString& key, const QString& value);

    bool hasSection(const QString& section) const;
    bool hasKey(const QString& section, const QString& key) const;
    void eraseSection(const QString& section);
    void eraseKey(const QString& section, const QString& key);
    QStringList sectionNames() const;
    // "key=value" lines of a section in stored order (empty when the section is absent).
    QStringList sectionLines(const QString& section) const;
    QList<QPair<QString, QString>> sectionEntries(const QString& section) const;
    // A text kept one line per key: `countKey` = n, then `linePrefix` + "1" … + n (a list or
    // a script in a command section). A count larger than the section's keys is not
    // believed, so a damaged file cannot make a read run for ever.
    QStringList readNumberedLines(const QString& section, const QString& countKey, const QString& linePrefix) const;
    // Writes them, removing the numbered keys an earlier, longer text left behind.
    void writeNumberedLines(const QString& section, const QString& countKey, const QString& linePrefix,
                            const QStringList& lines);
    void clear();

private:
    struct Entry {
        QString key;
        QString value;
    };
    struct Section {
        QString name;
        std::vector<Entry> entries;
        QHash<QString, int> index;  // folded key -> position in entries
    };
    const Section* findSection(const QString& name) const;
    Section& sectionForWrite(const QString& name);
    const Entry* findEntry(const QString& section, const QString& key) const;
    void rebuildSectionIndex();

    std::vector<Section> m_sections;
    QHash<QString, int> m_sectionIndex;  // folded name -> position in m_sections
    QString m_fileName;
};

}  // namespace qp
