#pragma once

#include <QFile>
#include <QString>

/// Files that the program itself makes and writes: its logs, its notes, its traces. No link is followed to them, and
/// none of somebody else's is written to, as their names are known to everybody who can write in their folder.
namespace ownFile {

enum class Start {
    Anew,   ///< what is there is emptied
    Append, ///< what is there is kept
};

/// Opens the file at a path for writing, without a buffer when `mode` says so; a missing one is made, legible to its
/// owner alone. A file is emptied only once it is known to be the program's to write. The `QFile` does not know the
/// path.
/// @return why it cannot be opened, in Italian and without its name; empty when it is open
QString Open(QFile& file, const QString& path, Start start, QIODevice::OpenMode mode = {});

/// Why `Open` would refuse a path that is there: it is a link, no file, or belongs to another user. Empty for a file
/// that it would open, and for one that is not there.
QString Obstacle(const QString& path);
/// That a file cannot be made at a path whose folder is not there; empty where it is.
QString FolderObstacle(const QString& path);
/// `Obstacle` for a file that may be another user's, such as settings that an administrator has made: only a link, and
/// what is no file, is refused.
QString LinkObstacle(const QString& path);

} // namespace ownFile
