#include "sources/AccessDatabase.h"

#include "sql/errors.h"

#include <QFile>
#include <QFileInfo>

namespace sources {

namespace {

/// What every Access database begins with, at byte 4.
constexpr int MarkOffset = 4;
const QByteArray JetMark = QByteArrayLiteral("Standard Jet DB");
const QByteArray AceMark = QByteArrayLiteral("Standard ACE DB");

/// Tells what the library would not: why a file cannot be opened, and that it is one of another kind.
void CheckFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("il file Access '%1' non si può aprire (%2): controllare che esista, che si "
                                         "possa leggere e che nessun programma lo tenga bloccato")
                              .arg(path, file.errorString()));
    }
    const QByteArray start = file.read(MarkOffset + JetMark.size()).mid(MarkOffset);
    if (start != JetMark && start != AceMark) {
        throw ImportError(QStringLiteral("il file '%1' non è un database di Access").arg(path));
    }
}

[[noreturn]] void FailUnreadable(const QString& path) {
    throw ImportError(
        QStringLiteral("il file Access '%1' è danneggiato o cifrato con una password: aprirlo con Access, "
                       "togliere la password, usare 'Compatta e ripristina database' e riprovare")
            .arg(path));
}

/// Whether the list of tables is a table: the library reads it without looking.
bool HasCatalog(MdbHandle* handle) {
    constexpr unsigned CatalogPage = 2;
    MdbCatalogEntry entry{};
    entry.mdb = handle;
    entry.object_type = MDB_TABLE;
    entry.table_pg = CatalogPage;
    return ReadAccessDefinition(&entry) != nullptr;
}

} // namespace

AccessDefinition ReadAccessDefinition(MdbCatalogEntry* entry) {
    // The smallest map of a table's pages: its kind and where it begins.
    constexpr size_t SmallestMap = 5;
    AccessDefinition table(mdb_read_table(entry));
    const bool isWhole = table != nullptr && table->usage_map != nullptr && table->map_sz >= SmallestMap &&
                         table->num_cols <= MDB_MAX_COLS && mdb_read_columns(table.get()) != nullptr &&
                         table->columns->len == table->num_cols;
    return isWhole ? std::move(table) : nullptr;
}

AccessDatabase::AccessDatabase(const QString& path)
    : m_fileName(QFileInfo(path).fileName()) {
    CheckFile(path);
    m_handle.reset(mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS));
    if (m_handle == nullptr || !HasCatalog(m_handle.get()) || mdb_read_catalog(m_handle.get(), MDB_ANY) == nullptr ||
        m_handle->num_catalog == 0) {
        FailUnreadable(path);
    }
    mdb_set_bind_size(m_handle.get(), MDB_BIND_SIZE);
    ReadTables();
}

void AccessDatabase::ReadTables() {
    for (unsigned index = 0; index < m_handle->num_catalog; ++index) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(m_handle->catalog, index));
        const bool isLinked = entry->object_type == MDB_LINKED_TABLE;
        if (isLinked || mdb_is_user_table(entry) != 0) {
            m_tables.push_back({QString::fromUtf8(entry->object_name), isLinked, entry});
        }
    }
}

} // namespace sources
