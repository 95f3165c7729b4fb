// The metadata fields the program offers as tags: one family per kind of file ("M" music
// tags, "D" photo data, "C" media information …), each with its fields in the order users
// see them. A field tag is the family letter, a dot and the field's name: "<M.TITLE>".
//
// A reader may give more fields than its family lists (a music file's own tag properties,
// say); those work as tags too, and are shown where a file's fields are listed.
#pragma once

#include <QChar>
#include <QString>
#include <QStringView>
#include <vector>

namespace qp::metadata {

// What a field tag's parameter (kept in "UnitVariable" like every tag's) means.
enum class ParameterKind {
    None,
    Digits,     // the least number of digits, padded with "0" ("2": track 3 is "03")
    Picture,    // a date-time picture ("yyyy-mm-dd hh.nn.ss")
    Flag,       // "yes/no": the text for a field that is set and for one that is not
    Separator,  // the text in place of the value's own separator ("/" or ":", which names
                // cannot hold), or between the items of a list
    Decimals,   // decimals after the point
    Key,        // names what to read: a library's own key ("Exif.Photo.LensSerialNumber")
};

struct FieldInfo {
    QString name;              // "TITLE"
    QString description;       // "标题"
    ParameterKind parameter = ParameterKind::None;
    QString defaultParameter;  // empty: none
};

struct FamilyInfo {
    QChar letter;              // 'M'
    QString title;             // "音乐标签"
    QString pageTitle;         // the function panel's list: "1.M.音乐标签更名"
    QString exampleTemplate;   // "<M.TRACK> <M.ARTIST> - <M.TITLE>"
    std::vector<FieldInfo> fields;
};

// Every family, in the order of the function panel.
const std::vector<FamilyInfo>& fieldFamilies();
const FamilyInfo* familyOf(QChar letter);
// The listed field of a family (name in capitals), null when the family does not list it.
const FieldInfo* listedField(QChar family, QStringView name);

// "<M.TITLE>".
QString fieldTag(QChar family, const QString& name);
// A reader's own key ("MUSICBRAINZ_ALBUMID", "Album Artist") as a tag's name: capital
// letters and digits only, so that it can stand in a tag.
QString tagNameOf(QStringView key);

}  // namespace qp::metadata
