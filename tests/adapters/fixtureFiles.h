#pragma once

#include <QString>

#include <functional>

/// Copies the files of a folder, if there is one, to another that is made when missing. Raises `ImportError`.
void CopyFiles(const QString& from, const QString& to);

/// Makes a FoxPro table of each text of a folder, "NAME.txt": the first line "name C 6|price N 10 2|...", then one row
/// a line with "|" between values ("*" in front: a deleted row; "\n" in a memo is a line break).
/// @param renamed what a table, or a column of it, is called in what is made; the column is empty for the table
void MakeFoxProTables(const QString& from, const QString& to,
                      const std::function<QString(const QString& table, const QString& column)>& renamed);
