#include "commands/CharacterSets.h"

#include <QtGlobal>
#include <algorithm>
#include <initializer_list>

namespace qp {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

struct Preset {
    const char* name;
    std::initializer_list<Range> ranges;
};

// Names are stored in commands as they stand here, so they are never changed once released
// (the window shows them translated, but stores them so); ";" separates them in the stored
// value and may not appear in one.
const Preset kPresets[] = {
    {QT_TRANSLATE_NOOP("CharacterSets", "数字（0-9）"), {{'0', '9'}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "英文字母（a-z、A-Z）"), {{'a', 'z'}, {'A', 'Z'}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "英文标点符号"), {{0x21, 0x2F}, {0x3A, 0x40}, {0x5B, 0x60}, {0x7B, 0x7E}}},
    // The ideograph blocks, their extensions beyond the Basic Multilingual Plane and the
    // compatibility ideographs.
    {QT_TRANSLATE_NOOP("CharacterSets", "中文汉字"),
     {{0x3400, 0x4DBF}, {0x4E00, 0x9FFF}, {0xF900, 0xFAFF}, {0x20000, 0x2A6DF}, {0x2A700, 0x2EBEF},
      {0x2F800, 0x2FA1F}, {0x30000, 0x3134F}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "中文标点符号"),
     {{0x00B7, 0x00B7}, {0x2010, 0x2027}, {0x3001, 0x303F}, {0xFE10, 0xFE19}, {0xFE30, 0xFE4F},
      {0xFF01, 0xFF0F}, {0xFF1A, 0xFF20}, {0xFF3B, 0xFF40}, {0xFF5B, 0xFF65}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "全角字符"), {{0x3000, 0x3000}, {0xFF01, 0xFF5E}, {0xFFE0, 0xFFE6}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "空白字符"),
     {{0x09, 0x0D}, {0x20, 0x20}, {0xA0, 0xA0}, {0x1680, 0x1680}, {0x2000, 0x200B}, {0x2028, 0x2029},
      {0x202F, 0x202F}, {0x205F, 0x205F}, {0x3000, 0x3000}, {0xFEFF, 0xFEFF}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "括号"),
     {{'(', ')'}, {'[', '['}, {']', ']'}, {'{', '{'}, {'}', '}'}, {'<', '<'}, {'>', '>'}, {0x3008, 0x3011},
      {0x3014, 0x301B}, {0xFF08, 0xFF09}, {0xFF1C, 0xFF1C}, {0xFF1E, 0xFF1E}, {0xFF3B, 0xFF3B},
      {0xFF3D, 0xFF3D}, {0xFF5B, 0xFF5B}, {0xFF5D, 0xFF5D}, {0xFF5F, 0xFF60}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "日文假名"), {{0x3040, 0x30FF}, {0x31F0, 0x31FF}, {0xFF66, 0xFF9F}}},
    {QT_TRANSLATE_NOOP("CharacterSets", "韩文字母"), {{0x1100, 0x11FF}, {0x3130, 0x318F}, {0xAC00, 0xD7AF}}},
    // Pictographs and the joiners and variation selectors that glue them together.
    {QT_TRANSLATE_NOOP("CharacterSets", "表情符号"),
     {{0x200D, 0x200D}, {0x2600, 0x27BF}, {0xFE0E, 0xFE0F}, {0x1F000, 0x1FAFF}, {0xE0020, 0xE007F}}},
};

QString presetName(const Preset& preset) { return QString::fromUtf8(preset.name); }

}  // namespace

void CharacterSet::addRange(char32_t first, char32_t last)
{
    if (first > last)
        return;
    if (first < 0x10000) {
        if (!m_basic)
            m_basic = std::make_unique<std::bitset<0x10000>>();
        for (char32_t c = first; c <= std::min<char32_t>(last, 0xFFFF); ++c)
            m_basic->set(c);
    }
    if (last >= 0x10000)
        m_supplementary.emplace_back(std::max<char32_t>(first, 0x10000), last);
}

void CharacterSet::addCharacters(QStringView characters)
{
    for (qsizetype i = 0; i < characters.size(); ++i) {
        char32_t c = characters[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < characters.size() && characters[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(characters[i], characters[i + 1]);
            ++i;
        }
        addRange(c, c);
    }
}

bool CharacterSet::addPreset(const QString& name)
{
    for (const Preset& preset : kPresets) {
        if (presetName(preset) != name)
            continue;
        for (const Range& range : preset.ranges)
            addRange(range.first, range.last);
        return true;
    }
    return false;
}

QStringList characterSetPresetNames()
{
    QStringList names;
    for (const Preset& preset : kPresets)
        names.append(presetName(preset));
    return names;
}

}  // namespace qp
