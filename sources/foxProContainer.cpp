#include "sources/foxProContainer.h"

#include "sources/DbfValues.h"
#include "sources/findFile.h"
#include "sql/errors.h"

#include <QFileInfo>

#include <algorithm>

namespace sources {

namespace {

/// Reads the objects of a container: a table of its own, one row for each.
class Container {
public:
    explicit Container(const QString& path)
        : m_file(path),
          m_values(m_file) {}

    bool Next() { return m_file.Next(); }
    qint64 Number(const char* column) { return m_values.Read(Field(column)).integer; }
    QString Text(const char* column) { return QString::fromUtf8(m_values.Read(Field(column)).text).trimmed(); }
    bool Is(const char* type) { return Text("OBJECTTYPE").compare(QLatin1String(type), Qt::CaseInsensitive) == 0; }

private:
    const DbfField& Field(const char* name) const {
        for (const DbfField& field : m_file.Fields()) {
            if (field.name.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
                return field;
            }
        }
        throw ImportError(QStringLiteral("File '%1': non è un contenitore di database FoxPro, manca la colonna '%2'")
                              .arg(m_file.FileName(), QLatin1String(name)));
    }

    DbfFile m_file;
    DbfValues m_values;
};

/// The number under which a container knows a table; 0 when it does not.
qint64 FindTable(const QString& path, const QString& table) {
    for (Container objects(path); objects.Next();) {
        if (objects.Is("Table") && objects.Text("OBJECTNAME").compare(table, Qt::CaseInsensitive) == 0) {
            return objects.Number("OBJECTID");
        }
    }
    return 0;
}

QStringList ColumnsOf(const QString& path, qint64 table) {
    QStringList columns;
    for (Container objects(path); objects.Next();) {
        if (objects.Is("Field") && objects.Number("PARENTID") == table) {
            columns.append(objects.Text("OBJECTNAME"));
        }
    }
    return columns;
}

} // namespace

QVector<DbfField> WithLongNames(const DbfFile& table) {
    QVector<DbfField> fields = table.Fields();
    QString link = table.Container();
    const QFileInfo file(table.Path());
    const QString path = link.isEmpty() ? QString() : FindFile(file.path() + u'/' + link.replace(u'\\', u'/'));
    const qint64 number = path.isEmpty() ? 0 : FindTable(path, file.completeBaseName());
    if (number == 0) {
        return fields;
    }
    QStringList names = ColumnsOf(path, number);
    const auto own =
        std::count_if(fields.cbegin(), fields.cend(), [](const DbfField& field) { return !field.isHidden; });
    if (names.size() != own) {
        throw ImportError(QStringLiteral("il contenitore '%1' descrive %2 colonne della tabella '%3' che ne ha %4: "
                                         "copiare di nuovo tutti i file dall'origine")
                              .arg(path, QString::number(names.size()), table.FileName(), QString::number(own)));
    }
    for (DbfField& field : fields) {
        field.name = field.isHidden ? field.name : names.takeFirst();
    }
    return fields;
}

} // namespace sources
