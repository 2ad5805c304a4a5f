#pragma once

#include <QString>

/// Copies the files of a folder, if there is one, to another that is made when missing. Raises `ImportError`.
void CopyFiles(const QString& from, const QString& to);

/// Makes a FoxPro table of each text of a folder, "NAME.txt": the first line "name C 6|price N 10 2|...", then one row
/// a line with "|" between values ("*" in front: a deleted row; "\n" in a memo is a line break).
void MakeFoxProTables(const QString& from, const QString& to);
