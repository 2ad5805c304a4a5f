#include "app/codes/codeFile.h"

#include "sources/tableFile.h"

#include <QFileInfo>
#include <QHash>

namespace codes {

namespace {

/// The columns of the file, in their order.
enum Column {
    ListColumn,
    FieldColumn,
    OldColumn,
    WordsColumn,
    RowsColumn,
    FeedsColumn,
    KindColumn,
    NewColumn,
    MakeColumn,
    SuggestedColumn,
    GroundColumn
};

const QStringList& Headers() {
    static const QStringList headers{"Tabella",  "Campo",        "Codice origine", "Descrizione",
                                     "Righe",    "Destinazione", "Valore ammesso", "Nuovo codice",
                                     "Crea (S)", "Proposta",     "Motivo"};
    return headers;
}

QVector<QVariant> RowOf(Worklist& worklist, Suggester& suggester, const Code& code) {
    const CodeList& list = worklist.ListOf(code);
    QString suggested;
    QString ground;
    if (code.IsOpen()) {
        if (const std::vector<Suggestion> found = suggester.For(code); !found.empty()) {
            suggested = found.front().code;
            ground = found.front().reason;
        }
    }
    return {code.table,
            code.field,
            code.oldCode,
            code.description,
            code.waiting ? QVariant(code.waiting->rows) : QVariant(),
            FeedsText(list),
            KindText(list),
            code.newCode,
            QString(),
            suggested,
            ground};
}

/// Whoever fills the file in sees which codes there are to choose from.
void AddChoices(Worklist& worklist, const std::vector<Code>& codes, sources::TableWriter& file) {
    std::vector<BaseTable> bases;
    for (const Code& code : codes) {
        for (const BaseTable& base : worklist.ListOf(code).bases) {
            if (std::find(bases.begin(), bases.end(), base) == bases.end()) {
                bases.push_back(base);
            }
        }
    }
    if (bases.empty() || !file.AddSheet(QStringLiteral("Codici di Quadrix"), {"Tabella", "Codice", "Descrizione"})) {
        return;
    }
    for (const BaseTable& base : bases) {
        for (const TargetCode& each : worklist.Targets(base).All()) {
            file.AddRow({base.table, each.code, each.description});
        }
    }
}

/// Takes the rows of a file apart, and looks at each.
class Plan {
public:
    Plan(Worklist& worklist, const QStringList& headers)
        : m_worklist(worklist) {
        for (const QString& header : Headers()) {
            m_columns.append(headers.indexOf(header));
        }
        for (const Column needed : {ListColumn, FieldColumn, OldColumn, NewColumn}) {
            if (m_columns.at(needed) < 0) {
                throw ImportError(QStringLiteral("manca la colonna '%1'").arg(Headers().at(needed)));
            }
        }
    }

    void Take(const sources::TableOfFile::Row& row) {
        Change change{.table = Cell(row, ListColumn).trimmed(),
                      .field = Cell(row, FieldColumn).trimmed(),
                      .oldCode = Cell(row, OldColumn),
                      .newCode = Cell(row, NewColumn).trimmed(),
                      .description = Cell(row, WordsColumn).trimmed()};
        const Code* known = m_worklist.Find(change.table, change.field, change.oldCode);
        if (known == nullptr) {
            Refuse(row, OldColumn,
                   QStringLiteral("'%1' non è tra i codici di %2.%3").arg(change.oldCode, change.table, change.field));
            return;
        }
        const QString key = KeyOf(change.table, change.field) + QChar(0) + change.oldCode;
        if (const auto first = m_seen.constFind(key); first != m_seen.constEnd()) {
            Refuse(row, OldColumn,
                   QStringLiteral("'%1' sta già alla riga %2").arg(change.oldCode, QString::number(*first)));
            return;
        }
        m_seen.insert(key, row.number);
        if (!TakeMark(row, change)) {
            return;
        }
        if (change.newCode.isEmpty()) {
            ++Result.leftOpen;
        } else if (change.newCode == known->newCode) {
            ++Result.unchanged;
        } else {
            Check(row, change);
        }
    }

    /// Whether somebody has filled in what Quadrix does not have.
    bool IsWork(const sources::TableOfFile::Row& row) const {
        const QString code = Cell(row, NewColumn).trimmed();
        const Code* known =
            m_worklist.Find(Cell(row, ListColumn).trimmed(), Cell(row, FieldColumn).trimmed(), Cell(row, OldColumn));
        return code.isEmpty() ? !Cell(row, MakeColumn).trimmed().isEmpty()
                              : known == nullptr || known->newCode.compare(code, Qt::CaseInsensitive) != 0;
    }

    FilePlan Result;

private:
    QString Cell(const sources::TableOfFile::Row& row, Column column) const {
        const qsizetype place = m_columns.at(column);
        return place < 0 ? QString() : row.values.value(place);
    }

    void Refuse(const sources::TableOfFile::Row& row, Column column, const QString& why) {
        Result.mistakes.append(
            QStringLiteral("Riga %1, colonna '%2': %3").arg(QString::number(row.number), Headers().at(column), why));
    }

    bool TakeMark(const sources::TableOfFile::Row& row, Change& change) {
        const QString mark = Cell(row, MakeColumn).trimmed();
        static const QStringList yes{"S", "SI", "SÌ"};
        change.isMade = yes.contains(mark, Qt::CaseInsensitive);
        if (!change.isMade && !mark.isEmpty() && mark.compare(u"N", Qt::CaseInsensitive) != 0) {
            Refuse(row, MakeColumn, QStringLiteral("'%1' non è S né N").arg(mark));
            return false;
        }
        return true;
    }

    void Check(const sources::TableOfFile::Row& row, const Change& change) {
        try {
            Result.changes.push_back(Checked(m_worklist, change));
        } catch (const ImportError& error) {
            Refuse(row, NewColumn, error.Message());
        }
    }

    Worklist& m_worklist;
    QVector<qsizetype> m_columns; ///< place of each in the file; -1: it does not have it
    QHash<QString, qint64> m_seen;
};

} // namespace

QString FilePlan::Text() const {
    return QStringLiteral("Codici da cambiare: %1; uguali a prima: %2; senza nuovo codice: %3")
        .arg(changes.size())
        .arg(unchanged)
        .arg(leftOpen);
}

void WriteFile(Worklist& worklist, const std::vector<Code>& codes, const QString& path) {
    Suggester suggester(worklist);
    const auto file = sources::TableWriter::Create(path, QStringLiteral("Codici"), Headers());
    for (const Code& code : codes) {
        file->AddRow(RowOf(worklist, suggester, code));
    }
    AddChoices(worklist, codes, *file);
    file->Close();
}

bool HoldsWork(Worklist& worklist, const QString& path) {
    if (!QFileInfo(path).isFile() || QFileInfo(path).size() == 0) {
        return false;
    }
    try {
        const sources::TableOfFile file = sources::ReadTable(path);
        const Plan plan(worklist, file.columns);
        return std::any_of(file.rows.begin(), file.rows.end(), [&plan](const auto& row) { return plan.IsWork(row); });
    } catch (const ImportError&) {
        return false; // no file of codes: it is not written over
    }
}

FilePlan ReadFile(Worklist& worklist, const QString& path) {
    const sources::TableOfFile file = sources::ReadTable(path);
    try {
        Plan plan(worklist, file.columns);
        for (const sources::TableOfFile::Row& row : file.rows) {
            plan.Take(row);
        }
        return std::move(plan.Result);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1'").arg(path));
        throw;
    }
}

} // namespace codes
