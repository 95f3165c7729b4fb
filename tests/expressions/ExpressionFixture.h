// A session with a rename list and parameters, and a shorthand to expand a text for a row.
#pragma once

#include <gtest/gtest.h>

#include "core/Session.h"
#include "expressions/MetaVariables.h"

namespace qp::test {

class ExpressionTest : public ::testing::Test {
protected:
    ExpressionTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        options.locale = QLocale(QLocale::Chinese, QLocale::China);
        options.seed = 42;
        options.clock = [this] { return now; };
    }

    // Appends a row for the file or folder at `fullPath` ('/'-separated); a file's name is
    // split at its last dot. The new name starts as the name.
    qsizetype addRow(const QString& fullPath, bool folder = false)
    {
        const qsizetype slash = fullPath.lastIndexOf(u'/');
        FileEntry row;
        row.path = fullPath.left(slash + 1);
        const QString fileName = fullPath.mid(slash + 1);
        const qsizetype dot = folder ? -1 : fileName.lastIndexOf(u'.');
        row.name = dot < 0 ? fileName : fileName.left(dot);
        row.ext = dot < 0 ? QString() : fileName.mid(dot);
        row.newName = row.name;
        row.newExt = row.ext;
        row.isFolder = folder;
        session.renameList().append(row, QString::number(session.renameList().size()));
        return session.renameList().size() - 1;
    }

    void setParameter(const QString& tag, const QString& value)
    {
        session.settings().writeString(QStringLiteral("UnitVariable"), tag, value);
    }

    QString expand(const QString& text, qsizetype row = 0) const
    {
        return MetaExpression(text, options).expand(session, row);
    }

    ScriptedInteraction ui;
    Session session;
    ExpressionOptions options;
    QDateTime now = QDateTime(QDate(2007, 6, 3), QTime(9, 5, 7));
};

}  // namespace qp::test
