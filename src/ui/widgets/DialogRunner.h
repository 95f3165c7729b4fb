// How a page opens its modal forms. The program runs them with exec(); tests install a
// runner that fills the form in and returns an answer, so no test ever waits on a dialog.
#pragma once

#include <QDialog>
#include <functional>

namespace qp::ui {

using DialogRunner = std::function<int(QDialog&)>;

inline int runModal(QDialog& dialog) { return dialog.exec(); }

}  // namespace qp::ui
