// The notice file that ships with the program (THIRD-PARTY-NOTICES.txt) and that the about
// box shows: a preamble, then one entry per library or data set, each a line "[Name]" and
// lines "Key: value" (Licence, Source, Use, Note, and optionally Version); a line that is
// not "Key: value" continues the value before it.
#pragma once

#include <QString>
#include <vector>

namespace qp {

struct NoticeEntry {
    QString name;
    QString licence;
    QString source;
    QString use;
    QString note;
    QString version;  // as the file gives it; the about box prefers the running library's own
};

std::vector<NoticeEntry> parseNotices(const QString& text);

inline const QString kNoticeFileName = QStringLiteral("THIRD-PARTY-NOTICES.txt");

// Where the notice file of an installed or built program is: beside the executable, or in
// "../share/doc/quilletpro/" from it (the Debian package). Empty when neither has it.
QString findNoticeFile(const QString& exeFolder);

}  // namespace qp
