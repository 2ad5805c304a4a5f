#pragma once

#include <QFile>
#include <QStringList>

namespace cli {

/// What an option writes a file of.
struct OutputKind {
    QString name;      ///< as messages call it: "File di traccia"
    QString firstLine; ///< how every file of this kind begins
    QStringList taken; ///< absolute paths that are not written to, even where nothing is there yet
};

/// Opens the file that an option names, for writing it anew. Only a file of the same kind, which the program has
/// written before, or an empty one is written over: a wrong argument must not cost a database. Raises `ImportError`
/// naming the file and why it is not written.
void OpenOutput(QFile& file, const QString& path, const OutputKind& kind);
/// Raises what `OpenOutput` would; what stands there stays, for a file that is written whole when there is all of it.
void CheckOutput(const QString& path, const OutputKind& kind);

} // namespace cli
