#include "sources/textFolder.h"

#include "sources/CsvFile.h"
#include "sources/DecimalMarks.h"
#include "sources/fileTables.h"
#include "sources/spoiltCodes.h"
#include "sources/textSchema.h"
#include "sources/UntoldPage.h"
#include "sql/CodePage.h"
#include "sql/errors.h"

namespace sources {

namespace {

/// The text files of a folder: table name in lower case -> files of that name.
QMap<QString, QStringList> FindTables(const QString& folder, const QStringList& wanted) {
    QMap<QString, QStringList> tables;
    for (const QFileInfo& file : FilesOf(folder, QStringLiteral("dei file di testo"))) {
        static const QStringList extensions{"csv", "txt"};
        if (extensions.contains(file.suffix().toLower())) {
            tables[file.completeBaseName().toLower()].append(file.filePath());
        }
        if (wanted.contains(file.fileName(), Qt::CaseInsensitive)) {
            tables[file.fileName().toLower()] = QStringList(file.filePath());
        }
    }
    return tables;
}

/// The code page of a file, and how it is known.
struct PageOfFile {
    QString name;
    bool isTold = true;
};

PageOfFile FindPage(const CsvFile& file, const TextSchema& schema, const ConnectionSettings& settings) {
    if (const auto& told = file.Lines().TellsPage()) {
        return {*told};
    }
    if (schema.codePage.startsWith(u"UTF-16")) {
        throw ImportError(
            QStringLiteral("file '%1': schema.ini lo dice Unicode (UTF-16), ma il file non comincia con il "
                           "suo contrassegno")
                .arg(file.Path()));
    }
    const QString told = schema.codePage.isEmpty() ? PlainPage(settings) : schema.codePage;
    const bool isUtf8 = told.isEmpty() && TextLines::IsUtf8(file.Path());
    return {isUtf8 ? QStringLiteral("UTF-8") : told, !schema.codePage.isEmpty()};
}

const DecimalMarks::Remedies AsSchemaTells{
    QStringLiteral("dirlo in schema.ini (DecimalSymbol)"),
    QStringLiteral("se la colonna è di codici, dirla di tipo Text in schema.ini (Col1, Col2, ...)")};

/// Fills a table with the records of a file.
class TextLoader {
public:
    TextLoader(const QString& path, const ConnectionSettings& settings)
        : m_settings(settings),
          m_schema(ReadTextSchema(path)),
          m_file(path, m_schema.separator, m_schema.skipped, m_schema.quote),
          m_pageOfFile(FindPage(m_file, m_schema, settings)),
          m_page(m_pageOfFile.name),
          m_untold(settings, m_pageOfFile.isTold || m_page.Name() == u"UTF-8", path, m_page.Name()),
          m_oddities(settings, QStringLiteral("file '%1'").arg(path)) {}

    void Load(PrivateDatabase& database, const QString& name) {
        const QStringList names = ColumnNames();
        if (!m_schema.unused.isEmpty()) {
            m_oddities.Add(QStringLiteral("CHIAVE SCONOSCIUTA"), QString(), 0,
                           QStringLiteral("schema.ini, %1: niente di questo si legge")
                               .arg(m_schema.unused.join(QStringLiteral(", "))));
        }
        for (const QString& column : names) {
            m_columns.append({column, QStringLiteral("TEXT")});
        }
        {
            PrivateTable table(database, name, m_columns, RowNumberColumn);
            DecimalMarks marks(m_schema.decimalMark, AsSchemaTells);
            for (int column = 0; column < m_schema.areTexts.size(); ++column) {
                if (m_schema.areTexts.at(column)) {
                    marks.LeaveOut(column);
                } else if (m_schema.areNumbers.at(column)) {
                    marks.TellNumbers(column);
                }
            }
            for (CsvFile::Record record; m_file.Next(record);) {
                AddRecord(table, marks, record);
            }
            marks.Settle(table, m_oddities);
        }
        AddLookupIndexes(database, name, m_columns, m_settings.lookupColumns);
        TellHowItWasRead();
        m_oddities.Tell();
    }

private:
    /// The names of the columns: the schema's own, else those of the header, which is read in any case.
    QStringList ColumnNames() {
        CsvFile::Record header;
        if (m_schema.hasHeader && !m_file.Next(header)) {
            throw ImportError(
                QStringLiteral("il file '%1' è vuoto: manca la riga con i nomi delle colonne").arg(m_file.Path()));
        }
        if (header.damage != CsvFile::Damage::None) {
            throw ImportError(QStringLiteral("file '%1', riga %2: %3")
                                  .arg(m_file.Path(), QString::number(header.line), CsvFile::Tell(header.damage)));
        }
        const QStringList found = NamesIn(header);
        if (m_schema.hasHeader && !m_schema.columns.isEmpty()) {
            CompareNames(found);
        }
        const QStringList names = m_schema.columns.isEmpty() ? found : m_schema.columns;
        for (const QString& name : m_schema.hasHeader ? found : names) {
            m_header.append(name.toCaseFolded());
        }
        m_named = std::count_if(names.begin(), names.end(), [](const QString& name) { return !name.isEmpty(); });
        QStringList places;
        for (qsizetype column = 1; column <= names.size(); ++column) {
            places.append(QString::number(column));
        }
        return DistinctNames(names, places, m_oddities);
    }

    static bool IsNumber(const QString& text) {
        return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) {
            return (c >= u'0' && c <= u'9') || c == u'.' || c == u',' || c == u'-';
        });
    }

    QStringList NamesIn(const CsvFile::Record& header) {
        QStringList names;
        for (const QByteArray& field : header.fields) {
            QByteArray utf8;
            m_page.AppendUtf8(field, utf8);
            m_untold.Look(utf8, header.line, QString(), field);
            names.append(QString::fromUtf8(utf8).simplified());
        }
        return names;
    }

    /// Refuses a header that is another one than the schema tells: it may be the first record, or columns have changed
    /// their places. Names may be others, by which columns are renamed; a number is none.
    void CompareNames(const QStringList& found) const {
        const QStringList& told = m_schema.columns;
        bool isHeader = false;
        for (qsizetype column = 0; column < told.size(); ++column) {
            const auto isSame = [&](const QString& name) {
                return name.compare(told.at(column).simplified(), Qt::CaseInsensitive) == 0;
            };
            const auto there = std::ranges::find_if(found, isSame);
            if (there == found.end()) {
                continue;
            }
            isHeader = true;
            if (!isSame(found.value(column))) {
                throw ImportError(QStringLiteral("file '%1': per schema.ini la colonna %2 è '%3', nel file è '%4' e "
                                                 "'%3' è la %5: elencare le colonne (Col1, Col2, ...) nell'ordine del "
                                                 "file")
                                      .arg(m_file.Path(), QString::number(column + 1), told.at(column),
                                           found.value(column), QString::number(there - found.begin() + 1)));
            }
        }
        if (!isHeader && std::ranges::any_of(found, IsNumber)) {
            constexpr qsizetype shown = 5;
            const auto list = [](const QStringList& names) {
                return QString(u'\'' + names.mid(0, shown).join(QStringLiteral("', '")) + u'\'');
            };
            throw ImportError(
                QStringLiteral("file '%1': la prima riga (%2) non ha nessuno dei nomi che dice schema.ini "
                               "(%3): se è già un dato, scrivervi ColNameHeader=False; se sono i nomi "
                               "delle colonne, scrivere quelli in schema.ini")
                    .arg(m_file.Path(), list(found), list(told)));
        }
    }

    /// Whether each field of a record is the name of its column, as where somebody has put files together; that is
    /// noted.
    bool RepeatsHeader(const CsvFile::Record& record) {
        qsizetype filled = 0;
        for (qsizetype column = 0; column < record.fields.size(); ++column) {
            const QByteArray& field = record.fields.at(column);
            if (field.trimmed().isEmpty()) {
                continue;
            }
            QByteArray utf8;
            m_page.AppendUtf8(field, utf8);
            if (QString::fromUtf8(utf8).simplified().toCaseFolded() != m_header.value(column)) {
                return false;
            }
            ++filled;
        }
        if (filled < 2) {
            return false; // one value may be a name by chance
        }
        m_oddities.AddRepeatedHeader(record.line);
        return true;
    }

    void AddRecord(PrivateTable& table, DecimalMarks& marks, CsvFile::Record& record) {
        QVector<QByteArray>& fields = record.fields;
        const bool isBlank = m_columns.size() > 1 && std::all_of(fields.begin(), fields.end(), [](const auto& field) {
                                 return field.trimmed().isEmpty();
                             });
        if (isBlank || RepeatsHeader(record)) { // blank as Excel writes them behind its last one: no record
            return;
        }
        while (fields.size() > m_columns.size() && fields.last().isEmpty()) {
            fields.removeLast();
        }
        if (record.damage != CsvFile::Damage::None || fields.size() > m_columns.size() || fields.size() < m_named) {
            AddUnreadable(table, record);
            return;
        }
        for (int column = 0; column < fields.size(); ++column) {
            if (!fields.at(column).isEmpty()) {
                AddField(table, marks, record.line, column, fields.at(column));
            }
        }
        table.AddRow(record.line);
    }

    void AddField(PrivateTable& table, DecimalMarks& marks, qint64 line, int column, const QByteArray& bytes) {
        const QString& name = m_columns.at(column).name;
        m_utf8.resize(0);
        if (!m_page.AppendUtf8(bytes, m_utf8)) {
            m_oddities.SpoilValue(table, column, line,
                                  QStringLiteral("il testo non è in %1; dire la code page del file in schema.ini "
                                                 "(CharacterSet)")
                                      .arg(m_page.Name()));
            return;
        }
        m_untold.Look(m_utf8, line, name, bytes);
        LookForLines(column, line, bytes);
        TakeFormula(column, line);
        spoiltCodes::Look(m_utf8, name, line, m_oddities);
        table.SetText(column, m_utf8);
        marks.Look(column, m_utf8);
    }

    /// Quotes that are none put records together: what stands between two of them is one field, whose first line has
    /// the separators of the rest of a record.
    void LookForLines(int column, qint64 line, const QByteArray& field) {
        const qsizetype behind = m_columns.size() - 1 - column;
        const qsizetype end = field.indexOf('\n');
        const bool isLikeRecord = m_columns.size() > 1 && end >= 0 &&
                                  field.first(end).count(m_schema.separator) == behind &&
                                  field.count(m_schema.separator) >= m_columns.size() - 1;
        if (isLikeRecord) {
            m_oddities.Add(QStringLiteral("CAMPO SU PIÙ RIGHE"), m_columns.at(column).name, line,
                           QStringLiteral("il campo tra virgolette va a capo e ha tanti separatori quanti una riga: se "
                                          "ne ha unite due, raddoppiare le virgolette che non lo chiudono, o dire in "
                                          "schema.ini che non ce ne sono (TextDelimiter=none)"));
        }
    }

    /// ="00123", by which programs have Excel keep the zeros of a code: it is what the formula gives.
    void TakeFormula(int column, qint64 line) {
        constexpr qsizetype around = 3;
        const bool isFormula = m_utf8.size() >= around && m_utf8.startsWith("=\"") && m_utf8.endsWith('"') &&
                               m_utf8.indexOf('"', 2) == m_utf8.size() - 1;
        if (isFormula) {
            m_oddities.Add(QStringLiteral("FORMULA DI TESTO"), m_columns.at(column).name, line,
                           QStringLiteral("'%1' si legge senza il segno = e le virgolette").arg(QString(m_utf8)));
            m_utf8 = m_utf8.sliced(2).chopped(1);
        }
    }

    /// Which of its fields are which cannot be known.
    void AddUnreadable(PrivateTable& table, const CsvFile::Record& record) {
        const QString why = record.damage != CsvFile::Damage::None
                                ? CsvFile::Tell(record.damage)
                                : QStringLiteral("ha %1 campi, le colonne sono %2; controllare separatore e virgolette")
                                      .arg(record.fields.size())
                                      .arg(m_columns.size());
        m_oddities.SpoilRow(table, record.line, why);
        table.AddRow(record.line);
    }

    void TellHowItWasRead() {
        const QString separator =
            m_schema.separator == '\t' ? QStringLiteral("tabulazione") : QString(QLatin1Char(m_schema.separator));
        if (m_schema.isFound && m_columns.size() > 1 && m_settings.note) {
            m_settings.note(QStringLiteral("FILE DI TESTO: %1: letto con il separatore '%2', in %3, %4; se non è così, "
                                           "dirlo in schema.ini")
                                .arg(m_oddities.Place(), separator, m_page.Name(),
                                     m_schema.hasHeader ? QStringLiteral("con i nomi delle colonne nella prima riga")
                                                        : QStringLiteral("senza nomi delle colonne")));
        }
    }

    const ConnectionSettings& m_settings;
    TextSchema m_schema;
    CsvFile m_file;
    PageOfFile m_pageOfFile;
    CodePage m_page;
    UntoldPage m_untold;
    Oddities m_oddities;
    QVector<ColumnInfo> m_columns;
    QStringList m_header;  ///< the names that the file gives its columns, folded; where it gives none those told
    qsizetype m_named = 0; ///< columns that have a name in the file: a record has them all
    QByteArray m_utf8;
};

} // namespace

std::unique_ptr<Engine> OpenTextFileAs(const QStringList& tables, const QString& path,
                                       const ConnectionSettings& settings) {
    std::vector<FileTable> offered;
    for (const QString& table : tables) {
        offered.push_back({table, [path, table, settings](PrivateDatabase& database) {
                               TextLoader(path, settings).Load(database, table);
                           }});
    }
    return OpenFileTables(QStringLiteral("il file '%1'").arg(path), std::move(offered), settings);
}

std::unique_ptr<Engine> OpenTextFolder(const QString& folder, const ConnectionSettings& settings) {
    const auto load = [settings](PrivateDatabase& database, const QString& name, const QString& path) {
        TextLoader(path, settings).Load(database, name);
    };
    return OpenFolderTables(folder, FindTables(folder, settings.tables), load, settings);
}

} // namespace sources
