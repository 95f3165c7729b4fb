// The keep/exclude filter of the load options. Mask lists are separated by "|".
//  - A mask matches the object's name with its extension, ignoring letter case; "*" is
//    any run of characters (also none), "?" exactly one character.
//  - "*.*" and "." match every name, also one without a dot; a mask "x.*" matches "x" too.
//  - "<FILE>" matches every file, "<DIR>" every folder; other masks match both.
//  - With the marker "<F>" in the keep text, masks are matched against the full path
//    instead of the name (for masks such as "*/photos/*").
// An object passes when it matches at least one keep mask (an empty keep list keeps all)
// and no exclude mask.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace qp {

class NameFilter {
public:
    NameFilter(const QString& keepText, const QString& excludeText);

    // True when no object can be dropped (the filter step is skipped).
    bool keepsEverything() const { return m_keepsEverything; }
    // `folder` keeps its trailing '/'; it is read only in full-path mode.
    bool passes(const QString& folder, const QString& fileName, bool isFolder) const;

private:
    struct Mask {
        enum Kind { Pattern, AllFiles, AllFolders, Everything } kind = Pattern;
        QString folded;  // the pattern, case-folded
        bool alsoWithoutExtension = false;  // "x.*" also matches "x"
    };
    static std::vector<Mask> compile(const QString& text);
    bool matchesAny(const std::vector<Mask>& masks, const QString& subject, bool isFolder) const;

    std::vector<Mask> m_keep;
    std::vector<Mask> m_exclude;
    bool m_fullPath = false;
    bool m_keepsEverything = false;
};

// True when `text` matches the wildcard `pattern` ("*", "?"); both already case-folded.
bool wildcardMatch(QStringView pattern, QStringView text);

// The keep box's own rewrite: all "<F>"/"<f>" markers become one leading "<F>" and the
// masks emptied by taking them out go.
QString normalizeKeepText(const QString& text);

}  // namespace qp
