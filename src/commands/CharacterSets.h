// Sets of characters for "删除/保留部分字符串": the preset sets a user picks by name, and the
// characters typed into the command itself.
#pragma once

#include <QString>
#include <QStringList>
#include <bitset>
#include <memory>
#include <utility>
#include <vector>

namespace qp {

class CharacterSet {
public:
    // Every code point of `characters`; a surrogate pair is one character.
    void addCharacters(QStringView characters);
    void addRange(char32_t first, char32_t last);
    // False (and nothing added) for a name that is not a preset.
    bool addPreset(const QString& name);

    bool contains(char32_t c) const
    {
        if (c < 0x10000)
            return m_basic && m_basic->test(c);
        for (const auto& [first, last] : m_supplementary) {
            if (c >= first && c <= last)
                return true;
        }
        return false;
    }
    bool isEmpty() const { return !m_basic && m_supplementary.empty(); }

private:
    // One bit per character of the Basic Multilingual Plane, made on first use.
    std::unique_ptr<std::bitset<0x10000>> m_basic;
    std::vector<std::pair<char32_t, char32_t>> m_supplementary;
};

// The preset names in the order of the drop-down.
QStringList characterSetPresetNames();

}  // namespace qp
