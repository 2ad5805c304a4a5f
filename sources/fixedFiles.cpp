#include "sources/fixedFiles.h"

#include "sources/fileTables.h"
#include "sources/findFile.h"
#include "sources/FixedValue.h"
#include "sources/Oddities.h"
#include "sources/TextLines.h"
#include "sources/UntoldPage.h"
#include "sql/errors.h"

namespace sources {

namespace {

QString TypeOf(const FixedField& field) {
    switch (field.kind) {
    case FixedField::Kind::Text:
        return QStringLiteral("TEXT");
    case FixedField::Kind::Number:
    case FixedField::Kind::SignedNumber: // a text of more digits than a number keeps stays one
        return QStringLiteral("BLOB NUMERIC(%1,%2)").arg(field.length).arg(field.decimals);
    default:
        return QStringLiteral("DATE TEXT");
    }
}

void SetValue(PrivateTable& table, int column, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::LongLong:
        table.SetInteger(column, value.toLongLong());
        break;
    case QMetaType::Double:
        table.SetReal(column, value.toDouble());
        break;
    case QMetaType::QString:
        table.SetText(column, value.toString().toUtf8());
        break;
    default:
        break;
    }
}

/// The code page of a file: its own, the one of the settings, or UTF-8 where all its accented letters are.
QString PageOf(const TextLines& lines, const ConnectionSettings& settings) {
    if (const auto& told = lines.TellsPage()) {
        return *told;
    }
    const QString page = PlainPage(settings);
    return page.isEmpty() && TextLines::IsUtf8(lines.Path()) ? QStringLiteral("UTF-8") : page;
}

/// Fills a table with the lines of a file that are of its kind.
class FixedLoader {
public:
    /// @param others every kind of record of the file
    FixedLoader(const QString& path, const FixedRecord& record, const std::vector<FixedRecord>& others,
                const ConnectionSettings& settings)
        : m_settings(settings),
          m_record(record),
          m_others(others),
          m_lines(path),
          m_page(PageOf(m_lines, settings)),
          m_untold(settings, m_page.Name() == u"UTF-8", path, m_page.Name()),
          m_oddities(settings, QStringLiteral("file '%1'").arg(path)) {}

    void Load(PrivateDatabase& database) {
        QVector<ColumnInfo> columns;
        for (const FixedField& field : m_record.fields) {
            columns.append({field.name, TypeOf(field)});
        }
        {
            PrivateTable table(database, m_record.table, columns, RowNumberColumn);
            QByteArray bytes;
            while (NextLine(bytes)) {
                ++m_line;
                AddLine(table, bytes);
            }
        }
        AddLookupIndexes(database, m_record.table, columns, m_settings.lookupColumns);
        m_oddities.Tell();
    }

private:
    bool NextLine(QByteArray& bytes) {
        if (m_lines.HasLines()) {
            return m_lines.Next(bytes);
        }
        bytes = m_lines.Take(m_record.length, m_page.Name() == u"UTF-8");
        return !bytes.isEmpty();
    }

    void AddLine(PrivateTable& table, QByteArrayView bytes) {
        constexpr QChar formFeed(0x0c);
        const QByteArrayView content = WithoutEnd(bytes);
        QString line = DecodeText(content, m_page);
        line.replace(formFeed, u' ');
        if (line.trimmed().isEmpty()) {
            return;
        }
        if (m_record.isOne && !m_record.isOne(line)) {
            const bool isOther = std::any_of(m_others.begin(), m_others.end(), [&line](const FixedRecord& other) {
                return !other.isOne || other.isOne(line);
            });
            if (!isOther) {
                m_oddities.Add(QStringLiteral("RIGA TRALASCIATA"), QString(), m_line,
                               QStringLiteral("non è un record: '%1'").arg(line.trimmed().left(shown)));
            }
            return;
        }
        if (const QString wrong = WhatIsWrong(line); !wrong.isEmpty()) {
            m_oddities.SpoilRow(table, m_line, wrong);
        } else {
            for (int column = 0; column < static_cast<int>(m_record.fields.size()); ++column) {
                AddField(table, column, line);
            }
        }
        m_untold.Look(line.toUtf8(), m_line, QString(), content);
        table.AddRow(m_line);
    }

    /// Why a line is not one of its kind; empty when it is.
    QString WhatIsWrong(const QString& line) const {
        const bool isLonger = line.size() > m_record.length && !line.mid(m_record.length).trimmed().isEmpty();
        const bool isShorter = line.size() < m_record.length && !m_record.mayBeShort;
        if (line.contains(QChar::ReplacementCharacter)) {
            return QStringLiteral("il testo non è in %1; indicare la code page con CodePage").arg(m_page.Name());
        }
        return isLonger || isShorter
                   ? QStringLiteral("è lunga %1 caratteri, un record ne ha %2").arg(line.size()).arg(m_record.length)
                   : QString();
    }

    void AddField(PrivateTable& table, int column, const QString& line) {
        const FixedField& field = m_record.fields[static_cast<size_t>(column)];
        const qsizetype end = field.start - 1 + field.length;
        const bool isCut = field.kind != FixedField::Kind::Text && line.size() >= field.start && line.size() < end;
        if (isCut) {
            m_oddities.SpoilValue(table, column, m_line, QStringLiteral("la riga finisce dentro il valore"));
            return;
        }
        SetValue(table, column, ReadFixedValue(QStringView(line).mid(field.start - 1, field.length), field));
    }

    static constexpr qsizetype shown = 60;
    const ConnectionSettings& m_settings;
    const FixedRecord& m_record;
    const std::vector<FixedRecord>& m_others;
    TextLines m_lines;
    CodePage m_page;
    UntoldPage m_untold;
    Oddities m_oddities;
    qint64 m_line = 0;
};

} // namespace

std::unique_ptr<Engine> OpenFixedFiles(const QString& folder, const std::vector<FixedRecord>& records,
                                       const ConnectionSettings& settings) {
    FilesOf(folder, QStringLiteral("dei file a larghezza fissa"));
    std::vector<FileTable> tables;
    for (const FixedRecord& record : records) {
        std::vector<FixedRecord> ofFile;
        std::copy_if(records.begin(), records.end(), std::back_inserter(ofFile), [&record](const FixedRecord& other) {
            return other.file.compare(record.file, Qt::CaseInsensitive) == 0;
        });
        tables.push_back({record.table, [folder, record, ofFile, settings](PrivateDatabase& database) {
                              const QString path = FindFile(folder + u'/' + record.file);
                              if (path.isEmpty()) {
                                  throw ImportError(
                                      QStringLiteral("la cartella '%1' non contiene il file '%2': copiarlo "
                                                     "dall'origine")
                                          .arg(folder, record.file));
                              }
                              FixedLoader(path, record, ofFile, settings).Load(database);
                          }});
    }
    return OpenFileTables(QStringLiteral("la cartella '%1'").arg(folder), std::move(tables), settings);
}

} // namespace sources
