// What the program tells users about each meta-variable: its description, its default
// parameter and the help text the settings tab "元变量" shows, and how parameters are kept
// in the settings section "UnitVariable".
#pragma once

#include <QString>
#include <vector>

namespace qp {

class SettingsStore;

struct MetaVariableInfo {
    QString tag;               // "<SUBSTR>"
    QString defaultParameter;  // may be empty for a tag with a parameter ("<D.FNUMBER>")
    QString description;       // one line, for the grid's "描述" column
    QString help;              // "<SUBSTR>\n\n描述：…\n缺省设置：…\n参数：…"
    bool takesParameter = false;
    bool hasParameter() const { return takesParameter; }
};

// Every tag, in the order the expander looks for them: the tags of the file, the name and
// the clock, then the metadata field tags family by family ("<M.TITLE>" …).
const std::vector<MetaVariableInfo>& metaVariableCatalogue();
// The entry of a tag ("<M.TITLE>"); null when the catalogue has none.
const MetaVariableInfo* metaVariableInfo(const QString& tag);

// The parameter as a user edits it: from the settings, with "<20>" read as a blank;
// the default when none is stored.
QString metaVariableParameter(const SettingsStore& settings, const MetaVariableInfo& info);
// Stores a parameter; blanks at either end are written "<20>" so the store keeps them. A
// value equal to the default is stored as well, so the file says what is in force.
void setMetaVariableParameter(SettingsStore& settings, const MetaVariableInfo& info, const QString& value);

// Blanks at the ends as "<20>", so that a store that trims values keeps them.
QString encodeEdgeSpaces(const QString& value);

}  // namespace qp
