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
    QString defaultParameter;  // empty: the tag takes no parameter
    QString description;       // one line, for the grid's "描述" column
    QString help;              // "<SUBSTR>\n\n描述：…\n缺省设置：…\n参数：…"
    bool hasParameter() const { return !defaultParameter.isEmpty(); }
};

// Every tag, in the order the expander looks for them.
const std::vector<MetaVariableInfo>& metaVariableCatalogue();

// The parameter as a user edits it: from the settings, with "<20>" read as a blank;
// the default when none is stored.
QString metaVariableParameter(const SettingsStore& settings, const MetaVariableInfo& info);
// Stores a parameter; blanks at either end are written "<20>" so the store keeps them. A
// value equal to the default is stored as well, so the file says what is in force.
void setMetaVariableParameter(SettingsStore& settings, const MetaVariableInfo& info, const QString& value);

// Blanks at the ends as "<20>", so that a store that trims values keeps them.
QString encodeEdgeSpaces(const QString& value);

}  // namespace qp
