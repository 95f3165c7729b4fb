// Whether a script may run. A script the user typed runs; one that came in a command file
// runs only after the user allowed it, once per script text: the answer is kept in the
// settings under the script's SHA-256. The command line runs scripts only when told to.
#pragma once

#include <QString>

namespace qp {
class Session;
}

namespace qp::scripts {

// SHA-256 of the script's UTF-8 text, in lower-case hex.
QString scriptDigest(const QString& text);

struct Permission {
    bool granted = false;
    QString refusal;  // the message-pane line when refused
};

// `language` names the script kind in the question ("Pascal", "Python"); `fromFile` says the
// command came in a command file. Asks at most once per script text and session policy.
Permission permitScript(Session& session, const QString& language, const QString& text, bool fromFile);

}  // namespace qp::scripts
