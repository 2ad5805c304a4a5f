#pragma once

#include "sql/engine.h"

#include <vector>

namespace sources {

class PrivateTable;

/// What is odd about the values of a table while it is read: the first of each kind and column is told with its row,
/// the others are counted.
class Oddities {
public:
    /// @param place what the notes begin with: "File 'x.xls', foglio 'Articoli'"
    Oddities(const ConnectionSettings& settings, QString place)
        : m_settings(settings),
          m_place(std::move(place)) {}

    const QString& Place() const { return m_place; }
    /// Notes one. @param kind by which notes are counted together: "VALORE NON LEGGIBILE" @param column empty for what
    /// concerns the row @param row from 1; 0 for what concerns the column or the table
    void Add(const QString& kind, const QString& column, qint64 row, const QString& what);
    /// Notes a row that has the name of its column in each cell, and is not read.
    void AddRepeatedHeader(qint64 row);
    /// Notes a value that cannot be read and has the table raise why, with place, row and column, when it is asked for.
    void SpoilValue(PrivateTable& table, int column, qint64 row, const QString& why);
    /// The same with every value of a row that cannot be read; it is to be added yet.
    void SpoilRow(PrivateTable& table, qint64 row, const QString& why);
    /// Tells them all; called once, when the table has been read.
    void Tell();

private:
    struct Kind {
        QString name;
        QString column;
        qint64 row = 0;
        QString first;
        qint64 count = 0;
    };
    void Spoil(PrivateTable& table, int column, qint64 row, const QString& why) const;

    const ConnectionSettings& m_settings;
    QString m_place;
    std::vector<Kind> m_kinds;
};

inline const QString UnreadableKind = QStringLiteral("VALORE NON LEGGIBILE");

/// Names by which columns can be asked for: one that comes twice or is kept for the number of the row gets its place
/// behind it ("Prezzo (C)", "Prezzo (F)"), an empty one is its place alone. Where another column has that name in the
/// file, the place comes behind it once more. What is not as the file has it is noted: none is taken for the other.
/// @param places how the places of the columns are called: letters or numbers
QStringList DistinctNames(const QStringList& names, const QStringList& places, Oddities& oddities);

} // namespace sources
