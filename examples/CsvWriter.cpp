#include "examples/CsvWriter.h"

#include <QDateTime>
#include <QFile>

namespace examples {

namespace {

class CsvTable final : public TableWriter {
public:
    CsvTable(const QString& path, const QString& name, const QVector<Column>& columns)
        : TableWriter(name, columns),
          m_file(path) {
        if (!m_file.open(QIODevice::WriteOnly)) {
            Fail();
        }
        QStringList names;
        for (const Column& column : columns) {
            names.append(QString::fromLatin1(column.name));
        }
        WriteLine(names);
    }

    void Finish() override {
        if (!m_file.flush()) {
            Fail();
        }
        m_file.close();
    }

protected:
    void Write(const QVector<QVariant>& row, bool isDeleted) override {
        if (isDeleted) {
            return;
        }
        QStringList fields;
        for (int index = 0; index < row.size(); ++index) {
            fields.append(TextOf(Columns()[index], row[index]));
        }
        WriteLine(fields);
    }

private:
    static QString TextOf(const Column& column, const QVariant& value) {
        switch (value.userType()) {
        case QMetaType::QDate:
        case QMetaType::QDateTime:
            return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
        case QMetaType::Double:
            return QString::number(value.toDouble(), 'f', column.decimals).replace(u'.', u',');
        case QMetaType::Bool:
            return value.toBool() ? QStringLiteral("S") : QStringLiteral("N");
        default:
            return value.toString();
        }
    }

    static QString Quoted(QString text) {
        const bool isPlain = !text.contains(u';') && !text.contains(u'"') && !text.contains(u'\n');
        return isPlain ? text : u'"' + text.replace(u'"', QStringLiteral("\"\"")) + u'"';
    }

    void WriteLine(const QStringList& fields) {
        QStringList quoted;
        for (const QString& field : fields) {
            quoted.append(Quoted(field));
        }
        const QByteArray line = quoted.join(u';').toLatin1() + "\r\n";
        if (m_file.write(line) != line.size()) {
            Fail();
        }
    }

    [[noreturn]] void Fail() const {
        throw ExampleError(QStringLiteral("File '%1': %2").arg(m_file.fileName(), m_file.errorString()));
    }

    QFile m_file;
};

} // namespace

std::unique_ptr<TableWriter> CsvFolder::Create(const QString& table, const QVector<Column>& columns) {
    return std::make_unique<CsvTable>(m_folder + u'/' + table + QStringLiteral(".CSV"), table, columns);
}

} // namespace examples
