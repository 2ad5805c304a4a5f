#pragma once

#include <QString>

#include <memory>
#include <vector>

#include <mdbtools.h>

namespace sources {

/// Gives a table's definition back to the library.
struct FreeAccessTable {
    void operator()(MdbTableDef* table) const noexcept { mdb_free_tabledef(table); }
};
using AccessDefinition = std::unique_ptr<MdbTableDef, FreeAccessTable>;

/// Reads the definition of a table with its columns; null when it is damaged.
AccessDefinition ReadAccessDefinition(MdbCatalogEntry* entry);

/// An Access database opened for reading, with the list of its tables.
class AccessDatabase {
public:
    /// A table of the list.
    struct Entry {
        QString name;
        bool isLinked = false; ///< its rows are in another file
        MdbCatalogEntry* entry = nullptr;
    };

    /// Raises `ImportError` naming the file when it cannot be opened, is no Access database, or its list of tables
    /// cannot be read.
    explicit AccessDatabase(const QString& path);

    /// The tables that a person has made; the ones that Access keeps for itself are left out.
    const std::vector<Entry>& Tables() const { return m_tables; }
    MdbHandle* Handle() const { return m_handle.get(); }
    /// The file's name without its folder.
    const QString& FileName() const { return m_fileName; }

private:
    struct Close {
        void operator()(MdbHandle* handle) const noexcept { mdb_close(handle); }
    };
    void ReadTables();

    QString m_fileName;
    std::unique_ptr<MdbHandle, Close> m_handle;
    std::vector<Entry> m_tables;
};

} // namespace sources
