#include "core/NameFilter.h"

#include "core/PathText.h"

namespace qp {

namespace {

const QString kFullPathMarker = QStringLiteral("<F>");

QString withoutMarkers(QString text)
{
    text.remove(kFullPathMarker, Qt::CaseInsensitive);
    return text;
}

bool isHighSurrogateAt(QStringView text, qsizetype i)
{
    return i + 1 < text.size() && text[i].isHighSurrogate() && text[i + 1].isLowSurrogate();
}

}  // namespace

bool wildcardMatch(QStringView pattern, QStringView text)
{
    // Greedy matching with one back-tracking point: linear for patterns with one "*",
    // never exponential.
    qsizetype p = 0, t = 0, starP = -1, starT = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == QLatin1Char('*')) {
            starP = ++p;
            starT = t;
        } else if (p < pattern.size() && pattern[p] == QLatin1Char('?')) {
            ++p;
            t += isHighSurrogateAt(text, t) ? 2 : 1;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (starP >= 0) {
            p = starP;
            starT += isHighSurrogateAt(text, starT) ? 2 : 1;
            t = starT;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == QLatin1Char('*'))
        ++p;
    return p == pattern.size();
}

QString normalizeKeepText(const QString& text)
{
    if (!text.contains(kFullPathMarker, Qt::CaseInsensitive))
        return text;
    QStringList masks = withoutMarkers(text).split(QLatin1Char('|'));
    masks.removeIf([](const QString& mask) { return mask.trimmed().isEmpty(); });
    return kFullPathMarker + masks.join(QLatin1Char('|'));
}

NameFilter::NameFilter(const QString& keepText, const QString& excludeText)
    : m_keep(compile(withoutMarkers(keepText)))
    , m_exclude(compile(excludeText))
    , m_fullPath(keepText.contains(kFullPathMarker, Qt::CaseInsensitive))
{
    bool keepAll = m_keep.empty();
    for (const Mask& mask : m_keep)
        keepAll = keepAll || mask.kind == Mask::Everything;
    m_keepsEverything = keepAll && m_exclude.empty();
}

std::vector<NameFilter::Mask> NameFilter::compile(const QString& text)
{
    std::vector<Mask> masks;
    for (const QString& part : text.split(QLatin1Char('|'))) {
        const QString trimmed = part.trimmed();
        if (trimmed.isEmpty())
            continue;
        Mask mask;
        if (trimmed == QLatin1String("*.*") || trimmed == QLatin1String(".") || trimmed == QLatin1String("*"))
            mask.kind = Mask::Everything;
        else if (trimmed.compare(QLatin1String("<FILE>"), Qt::CaseInsensitive) == 0)
            mask.kind = Mask::AllFiles;
        else if (trimmed.compare(QLatin1String("<DIR>"), Qt::CaseInsensitive) == 0)
            mask.kind = Mask::AllFolders;
        mask.folded = internalSeparators(trimmed).toCaseFolded();
        mask.alsoWithoutExtension = mask.folded.endsWith(QLatin1String(".*"));
        masks.push_back(std::move(mask));
    }
    return masks;
}

bool NameFilter::matchesAny(const std::vector<Mask>& masks, const QString& subject, bool isFolder) const
{
    for (const Mask& mask : masks) {
        switch (mask.kind) {
        case Mask::Everything:
            return true;
        case Mask::AllFiles:
            if (!isFolder)
                return true;
            break;
        case Mask::AllFolders:
            if (isFolder)
                return true;
            break;
        case Mask::Pattern:
            if (wildcardMatch(mask.folded, subject))
                return true;
            if (mask.alsoWithoutExtension && !subject.contains(QLatin1Char('.'))
                && wildcardMatch(QStringView(mask.folded).chopped(2), subject))
                return true;
            break;
        }
    }
    return false;
}

bool NameFilter::passes(const QString& folder, const QString& fileName, bool isFolder) const
{
    if (m_keepsEverything)
        return true;
    const QString subject = (m_fullPath ? folder + fileName : fileName).toCaseFolded();
    if (!m_keep.empty() && !matchesAny(m_keep, subject, isFolder))
        return false;
    return !matchesAny(m_exclude, subject, isFolder);
}

}  // namespace qp
