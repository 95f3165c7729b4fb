// Finds the controls of a page or form by object name and drives them as a user does.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

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

// Mixed into a fixture that owns one page or form: driven() is that widget.
class PageDriver {
public:
    virtual ~PageDriver() = default;

protected:
    virtual QWidget& driven() const = 0;

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
};

}  // namespace qp::ui::test
