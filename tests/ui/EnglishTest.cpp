// The window in English: every text of the main window, its menus and the function pages
// comes from the translation, none is left in Chinese. (Its own program, since the
// translation is installed for the whole application.)
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabWidget>

#include "WindowTest.h"
#include "core/Translation.h"

namespace qp::ui {
namespace {

// Where a widget is, for the failure message: its object names from the window down.
QString where(const QObject* object)
{
    QStringList names;
    for (; object; object = object->parent())
        names.prepend(object->objectName().isEmpty() ? QString::fromLatin1(object->metaObject()->className())
                                                     : object->objectName());
    return names.join(u'/');
}

// Every text a person reads on the widget.
QStringList textsOf(QWidget* widget)
{
    QStringList texts{widget->toolTip(), widget->windowTitle()};
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        texts << button->text();
    if (auto* label = qobject_cast<QLabel*>(widget))
        texts << label->text();
    if (auto* group = qobject_cast<QGroupBox*>(widget))
        texts << group->title();
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        texts << edit->placeholderText();
    if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
        for (int i = 0; i < tabs->count(); ++i)
            texts << tabs->tabText(i) << tabs->tabToolTip(i);
    }
    if (auto* box = qobject_cast<QComboBox*>(widget)) {
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    if (auto* view = qobject_cast<QAbstractItemView*>(widget); view && view->model()) {
        for (int column = 0; column < view->model()->columnCount(); ++column) {
            texts << view->model()->headerData(column, Qt::Horizontal).toString()
                  << view->model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
        }
    }
    for (QAction* action : widget->actions())
        texts << action->text() << action->toolTip();
    if (auto* menu = qobject_cast<QMenu*>(widget))
        texts << menu->title();
    return texts;
}

TEST(English, TheWindowAndItsPagesHaveNoTextLeftInChinese)
{
    const std::unique_ptr<QTranslator> english = installLanguage(Language::English);
    ASSERT_NE(english, nullptr);
    qp::test::TempTree tree;
    SettingsStore store;
    store.setFileName(tree.path("cfg/QuilletPro.ini"));
    MainWindow window(std::move(store), QStringLiteral("[20240305140709123]"));
    window.show();

    // Chinese numerals stay in the examples of the numeral conversions ("2024 → 二〇二四").
    static const QRegularExpression chinese(
        QStringLiteral("(?![〇一二三四五六七八九十百千万亿零壹贰叁肆伍陆柒捌玖拾佰仟])[\\x{3400}-\\x{9fff}\\x{3000}-\\x{303f}\\x{ff01}-\\x{ff5e}]"));
    QStringList untranslated;
    QList<QWidget*> widgets = window.findChildren<QWidget*>();
    widgets.prepend(&window);
    for (QWidget* widget : widgets) {
        for (const QString& text : textsOf(widget)) {
            if (chinese.match(text).hasMatch())
                untranslated.append(where(widget) + QStringLiteral(": ") + text);
        }
    }
    untranslated.removeDuplicates();
    EXPECT_TRUE(untranslated.isEmpty()) << untranslated.size() << " texts:\n" << untranslated.join(u'\n').toStdString();
}

}  // namespace
}  // namespace qp::ui
