#pragma once

#include <QDir>
#include <QStringList>

/// The source text of the program, read for what its manual must tell.
namespace manual {

/// The text of a file; empty when there is none.
QString TextOf(const QString& path);

/// Paths of the source files of the floors, below the root of the project.
QStringList SourceFiles(const QDir& root);

/// The arguments of a call or the members of a list, as they are written. @param from place behind the opening bracket
QStringList ArgumentsAt(const QString& code, qsizetype from);

/// The text that an expression stands for: a literal, or a name that the same file gives a literal to. Null for another
/// expression.
QString TextOfExpression(const QString& expression, const QString& code);

} // namespace manual
