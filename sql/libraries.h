#pragma once

#include <QString>
#include <QVector>

/// A library that the program is made of, with the version in use, or where the library does not tell it, that of the
/// build.
struct Library {
    QString name;
    QString version;
};

/// Those of this floor.
QVector<Library> SqlLibraries();
