// Finds the controls of a page or form by object name and drives them as a user does.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <utility>
#include <vector>

#include "core/CommandList.h"
#include "core/Session.h"

namespace qp::ui::test {

// A missing control fails the test here, with its name, rather than as a crash later.
template <typename T = QWidget>
T* findControl(const QWidget& root, const QString& name)
{
    T* widget = root.findChild<T*>(name);
    if (widget == nullptr)
        ADD_FAILURE() << "no control " << name.toStdString();
    return widget;
}

// The keys a command section holds, with their values as stored.
using StoredKeys = std::vector<std::pair<const char*, const char*>>;

// Mixed into a fixture that owns one page: driven() is the page, pageSession() the session it
// records its commands into.
class PageDriver {
public:
    virtual ~PageDriver() = default;

protected:
    virtual QWidget& driven() const = 0;
    virtual const Session& pageSession() const = 0;

    template <typename T = QWidget>
    T* control(const QString& name) const
    {
        return findControl<T>(driven(), name);
    }

    void click(const QString& name) const { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }

    // Types character by character into a combo box's editor, so that every keystroke records.
    void type(const QString& comboName, const QString& text) const
    {
        QLineEdit* edit = control<QComboBox>(comboName)->lineEdit();
        edit->setFocus();
        for (QChar c : text)
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }

    QString lastSection() const { return pageSession().commandList().rows().back().section; }

    QString stored(const QString& key) const
    {
        return pageSession().settings().readRaw(lastSection(), key, QStringLiteral("<none>"));
    }

    // Clicks the option, then checks that the command it recorded holds exactly these keys
    // beside CMDid and CMDComment, so that a key left out or left over shows.
    void expectStoresExactly(const char* option, const StoredKeys& keys) const
    {
        SCOPED_TRACE(option);
        click(QString::fromUtf8(option));
        EXPECT_EQ(pageSession().settings().sectionEntries(lastSection()).size(), qsizetype(keys.size()) + 2);
        for (const auto& [key, value] : keys)
            EXPECT_EQ(stored(QString::fromUtf8(key)), QString::fromUtf8(value)) << key;
    }
};

}  // namespace qp::ui::test
