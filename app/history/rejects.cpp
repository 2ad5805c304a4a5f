#include "app/history/rejects.h"

#include "adapters/registry.h"
#include "app/history/again.h"
#include "app/history/WrittenRows.h"
#include "app/startUp.h"
#include "core/italianText.h"
#include "sources/DecimalMarks.h"
#include "sources/tableFile.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace history {

namespace {

/// What stands in front of the columns of the source.
const QStringList& OwnColumns() {
    static const QStringList columns{"_SCARTO", "_RIGA_ORIGINE", "_MOTIVO"};
    return columns;
}

/// "scarti-ANAGRAFE.csv" for "scarti.csv".
QString PathFor(const QString& path, const QString& table) {
    const QFileInfo file(path);
    QString name = table;
    for (QChar& c : name) {
        c = c.isLetterOrNumber() || c == u'_' ? c : QChar(u'-');
    }
    return file.dir().filePath(QStringLiteral("%1-%2.%3").arg(file.completeBaseName(), name, file.suffix()));
}

contract::RowSelection::Row Wanted(const Reject& reject) {
    return {.procedure = reject.procedure,
            .name = reject.row.row,
            .table = reject.row.table,
            .key = reject.row.key,
            .number = reject.row.number,
            .columns = reject.row.columns,
            .values = reject.row.values,
            .reject = reject.id};
}

/// A day as it comes from a cell of dates, written like the text that it takes the place of: sources whose days are
/// texts know their own form alone. Anything else as it is.
QString InFormOf(const QString& was, const QString& now) {
    const QDate day = QDate::fromString(now, Qt::ISODate);
    static const QRegularExpression written(QStringLiteral(R"(^\d{1,2}([/.-])\d{1,2}[/.-](\d{2}|\d{4})$)"));
    static const QRegularExpression digits(QStringLiteral(R"(^(19|20)\d{6}$)"));
    const auto parts = written.match(was.trimmed());
    if (day.isValid() && parts.hasMatch()) {
        const QString mark = parts.captured(1);
        const QString year = parts.capturedLength(2) == 2 ? QStringLiteral("yy") : QStringLiteral("yyyy");
        return day.toString(QStringLiteral("dd%1MM%1").arg(mark) + year);
    }
    return day.isValid() && digits.match(was.trimmed()).hasMatch() ? day.toString(QStringLiteral("yyyyMMdd")) : now;
}

/// Reads a file with mended rows back: of one procedure, or of all.
class MendedFile {
public:
    MendedFile(const QHash<qint64, Reject>& rejects, const QString& procedure, contract::RowSelection& selection,
               QStringList& mistakes)
        : m_rejects(rejects),
          m_procedure(procedure),
          m_selection(selection),
          m_mistakes(mistakes) {}

    void Read(const QString& path) {
        const sources::TableOfFile table = sources::ReadTable(path);
        m_path = path;
        if (table.columns.mid(0, OwnColumns().size()) != OwnColumns()) {
            m_mistakes.append(QStringLiteral("file '%1': la prima riga non comincia con %2: non è un file degli scarti")
                                  .arg(path, OwnColumns().join(QStringLiteral(", "))));
            return;
        }
        for (const auto& row : table.rows) {
            Take(table.columns, row);
        }
        if (!m_ignored.isEmpty()) {
            m_selection.Remark(QStringLiteral("Colonne del file '%1' che la fonte non ha, non lette: %2")
                                   .arg(path, m_ignored.join(QStringLiteral(", "))));
            m_ignored.clear();
        }
    }
    /// Of any procedure.
    qint64 Rows() const { return m_rows; }
    /// Those of them that have been imported as they are now.
    qint64 Imported() const { return m_imported; }

private:
    void Take(const QStringList& columns, const sources::TableOfFile::Row& row) {
        const auto reject = m_rejects.constFind(row.values.first().toLongLong());
        if (reject == m_rejects.constEnd()) {
            Tell(row.number, OwnColumns().first(),
                 QStringLiteral("'%1' non è uno scarto di questa esecuzione").arg(row.values.first()));
            return;
        }
        contract::RowSelection::Row wanted = Wanted(*reject);
        wanted.isOfFile = true;
        for (qsizetype column = OwnColumns().size(); column < columns.size(); ++column) {
            const qsizetype place = reject->row.columns.indexOf(columns.at(column));
            if (place < 0) {
                TakeOther(columns, *reject, column, row.number);
                continue;
            }
            const QVariant& was = reject->row.values.at(place);
            if (row.values.at(column) != mod_ovTools::ToText(was)) {
                Mend(wanted, row, column, columns.at(column), was);
            }
        }
        ++m_rows;
        if (reject->importedBy != 0 && !reject->importedAs.isNull() && reject->importedAs == wanted.MendedText()) {
            ++m_imported;
        } else if (m_procedure.isEmpty() || m_procedure == reject->procedure) {
            m_selection.Add(wanted);
        }
    }

    /// A column that the source does not have is somebody's note; it may be one of the source with its header changed
    /// where the file lacks one.
    void TakeOther(const QStringList& columns, const Reject& reject, qsizetype column, qint64 row) {
        const QString& name = columns.at(column);
        QStringList lacking = reject.row.columns;
        lacking.removeIf([&columns](const QString& each) { return columns.contains(each); });
        if (!lacking.isEmpty()) {
            Tell(row, name,
                 QStringLiteral("la fonte non ha questa colonna, e nel file manca '%1'")
                     .arg(lacking.join(QStringLiteral("', '"))));
        } else if (!name.isEmpty() && !m_ignored.contains(name)) {
            m_ignored.append(name);
        }
    }

    /// The new value is of the kind of the old one.
    void Mend(contract::RowSelection::Row& wanted, const sources::TableOfFile::Row& row, qsizetype place,
              const QString& column, const QVariant& was) {
        const QString& text = row.values.at(place);
        QVariant now = text.isEmpty() ? QVariant() : QVariant(text);
        QString doubtful = text; // where its marks may divide thousands
        const int type = was.typeId();
        const bool isNumber = type == QMetaType::Double || type == QMetaType::LongLong || type == QMetaType::Int;
        if (!text.isEmpty() && isNumber) {
            doubtful = QString::fromUtf8(sources::WithoutThousands(text.toUtf8()));
            const auto number = mod_ovTools::ReadNumber(QString(doubtful).replace(u',', u'.'));
            if (!number) {
                Tell(row.number, column, QStringLiteral("'%1' non è un numero").arg(text));
                return;
            }
            now = *number;
        } else if (!text.isEmpty() && (type == QMetaType::QDate || type == QMetaType::QDateTime)) {
            const auto date = mod_ovTools::ReadDate(text);
            if (!date) {
                Tell(row.number, column, QStringLiteral("'%1' non è una data").arg(text));
                return;
            }
            now = *date;
        } else if (!text.isEmpty() && type == QMetaType::QString) {
            now = InFormOf(was.toString(), text);
        }
        const bool mayDivide = (isNumber || now.typeId() == QMetaType::QString) && !row.numbers.contains(place) &&
                               sources::MayDivideThousands(doubtful.toUtf8());
        wanted.mended.insert(column, {was, now, mayDivide ? doubtful : QString()});
    }

    void Tell(qint64 row, const QString& column, const QString& what) {
        m_mistakes.append(
            QStringLiteral("file '%1', riga %2, colonna '%3': %4").arg(m_path, QString::number(row), column, what));
    }

    const QHash<qint64, Reject>& m_rejects;
    const QString& m_procedure; ///< empty: all
    contract::RowSelection& m_selection;
    QStringList& m_mistakes;
    QString m_path;
    QStringList m_ignored; ///< columns of the file under way
    qint64 m_rows = 0;
    qint64 m_imported = 0;
};

/// Hands those rows of a run to `work` that no later run has imported.
void ForEachOpen(const History& history, qint64 run, const std::function<void(const Reject&)>& work) {
    history.ForEachReject(run, [&work](const Reject& reject) {
        if (reject.importedBy == 0) {
            work(reject);
        }
    });
}

/// Why a row was given up; where the reason names columns of another table, such as that of the rows of a document, the
/// file has none of them to be mended.
QString ReasonOf(const RejectedRow& row) {
    static const QRegularExpression named(QStringLiteral("colonna '([^']+)'"));
    QStringList columns;
    for (const auto& match : named.globalMatch(row.reason)) {
        columns += match.captured(1);
    }
    const bool isElsewhere = !columns.isEmpty() && !row.columns.isEmpty() &&
                             std::none_of(columns.begin(), columns.end(), [&row](const QString& column) {
                                 return row.columns.contains(column, Qt::CaseInsensitive);
                             });
    return isElsewhere
               ? row.reason + QStringLiteral(" (il valore sta in una riga di un'altra tabella, che qui non c'è: "
                                             "si corregge nella sorgente)")
               : row.reason;
}

/// Whether a table stands where another one of its kind is about to be written, with something else in it.
bool IsOther(const QString& there, const QString& fresh) {
    if (!QFileInfo(there).isFile() || QFileInfo(there).size() == 0) {
        return false;
    }
    const sources::TableOfFile old = sources::ReadTable(there);
    const sources::TableOfFile now = sources::ReadTable(fresh);
    constexpr int kind = 2; // first columns, by which a file that may be written over is told
    return old.columns.mid(0, kind) == now.columns.mid(0, kind) &&
           !(old.columns == now.columns &&
             std::equal(old.rows.begin(), old.rows.end(), now.rows.begin(), now.rows.end(),
                        [](const auto& a, const auto& b) { return a.values == b.values; }));
}

} // namespace

QStringList WriteRejects(const History& history, qint64 run, const QString& path) {
    QStringList tables; // each with the shape of its rows
    ForEachOpen(history, run, [&tables](const Reject& reject) {
        const QString shape = reject.row.table + u'\x1e' + reject.row.columns.join(u'\x1f');
        if (!tables.contains(shape)) {
            tables.append(shape);
        }
    });
    QStringList files;
    std::vector<std::unique_ptr<sources::TableWriter>> writers;
    for (const QString& shape : std::as_const(tables)) {
        const QString table = shape.section(u'\x1e', 0, 0);
        QString file = tables.size() == 1 ? path : PathFor(path, table);
        if (files.contains(file)) {
            file = PathFor(path, table + QString::number(files.size() + 1));
        }
        files.append(file);
        writers.push_back(
            sources::TableWriter::Create(file, table, OwnColumns() + shape.section(u'\x1e', 1).split(u'\x1f')));
    }
    ForEachOpen(history, run, [&](const Reject& reject) {
        const QString shape = reject.row.table + u'\x1e' + reject.row.columns.join(u'\x1f');
        QVector<QVariant> values{reject.id, reject.row.row, ReasonOf(reject.row)};
        writers[static_cast<size_t>(tables.indexOf(shape))]->AddRow(values + reject.row.values);
    });
    for (const auto& writer : writers) {
        writer->Close();
    }
    return files;
}

QStringList ChangedRejects(const History& history, qint64 run, const QString& path) {
    const QTemporaryDir folder;
    QStringList changed;
    try {
        for (const QString& file : WriteRejects(history, run, folder.filePath(QFileInfo(path).fileName()))) {
            const QString there = QFileInfo(path).dir().filePath(QFileInfo(file).fileName());
            changed += IsOther(there, file) ? QStringList(QDir::toNativeSeparators(there)) : QStringList();
        }
    } catch (const ImportError&) {
        return changed; // what cannot be written or read is told by the writing
    }
    return changed;
}

QStringList PressesOf(const History& history, const Run& run, bool areMended) {
    QStringList procedures;
    if (!run.origin.isEmpty()) {
        return {QString()};
    }
    history.ForEachReject(run.id, [&](const Reject& reject) {
        if ((areMended || reject.importedBy == 0) && !procedures.contains(reject.procedure)) {
            procedures.append(reject.procedure);
        }
    });
    return procedures.isEmpty() ? QStringList(QString()) : procedures;
}

std::unique_ptr<contract::RowSelection> RejectsOf(const History& history, qint64 run, const QString& press) {
    auto selection = std::make_unique<contract::RowSelection>();
    ForEachOpen(history, run, [&](const Reject& reject) {
        if (press.isEmpty() || reject.procedure == press) {
            selection->Add(Wanted(reject));
        }
    });
    if (selection->Count() == 0) { // without a row to be limited to everything would be imported
        throw ImportError(
            QStringLiteral("l'esecuzione %1 non ha righe abbandonate, o sono già state importate").arg(run));
    }
    return selection;
}

std::unique_ptr<contract::RowSelection> MendedRejects(const History& history, qint64 run, const QStringList& files,
                                                      const QString& press) {
    QHash<qint64, Reject> rejects;
    history.ForEachReject(run, [&rejects](const Reject& reject) { rejects.insert(reject.id, reject); });
    auto selection = std::make_unique<contract::RowSelection>();
    QStringList mistakes;
    MendedFile reader(rejects, press, *selection, mistakes);
    for (const QString& file : files) {
        reader.Read(file);
    }
    if (!mistakes.isEmpty()) {
        throw ImportError(mistakes.join(u'\n'));
    }
    if (reader.Rows() > 0 && reader.Rows() == reader.Imported()) {
        throw ImportError(QStringLiteral("file '%1': le righe sono già state importate così come sono nel file")
                              .arg(files.join(QStringLiteral("', '"))));
    }
    if (reader.Rows() > 0 && selection->Count() == 0) {
        return nullptr;
    }
    if (reader.Imported() > 0) {
        selection->Remark(QStringLiteral("Righe del file già importate così come sono, lasciate fuori: %1")
                              .arg(italian::NumberText(reader.Imported())));
    }
    if (reader.Rows() == 0) {
        throw ImportError(QStringLiteral("file '%1': non c'è nessuna riga").arg(files.join(QStringLiteral("', '"))));
    }
    return selection;
}

void Repeat(Session& session, const Run& run, const QString& procedure, ImportRequest& request) {
    if (run.isElsewhere) {
        throw ImportError(QStringLiteral("l'esecuzione %1 %2").arg(QString::number(run.id), ElsewhereText(run)));
    }
    const bool isOfSeveral = run.origin.isEmpty();
    const auto own = std::find_if(run.procedures.begin(), run.procedures.end(),
                                  [&procedure](const auto& each) { return each.result.procedure == procedure; });
    const QString origin = isOfSeveral && own != run.procedures.end() ? own->origin : run.origin;
    const QString data = isOfSeveral ? procedure : run.data;
    request.choice.origin = registry::Find(origin);
    if (request.choice.origin == nullptr) {
        throw ImportError(QStringLiteral("l'esecuzione %1 non è l'importazione di un'origine").arg(run.id));
    }
    for (const modMain::Company& company : modMain::GetCompanies(session)) {
        if (company.code == run.company) {
            request.choice.company = company.name;
            request.choice.companyCode = company.code;
        }
    }
    if (request.choice.companyCode.isEmpty()) {
        throw ImportError(
            QStringLiteral("l'azienda %1 dell'esecuzione %2 non c'è più").arg(run.company, QString::number(run.id)));
    }
    request.singleCode = run.code;
    if (ProcedureOf(*request.choice.origin, data) != nullptr) {
        request.procedure = data;
    } else if (const auto button = contract::ButtonFromName(data)) {
        request.button = *button;
    } else {
        throw ImportError(QStringLiteral("l'origine %1 non ha più '%2'").arg(origin, data));
    }
}

namespace {

/// Raises `ImportError` where rows that a run has written, or one that it goes on with, are there no more.
void CheckStands(const History& history, const Run& run, qint64 resumed) {
    if (run.IsUndone()) {
        throw ImportError(
            (run.id == resumed
                 ? QStringLiteral("l'esecuzione %1 è stata annullata").arg(run.id)
                 : QStringLiteral("l'esecuzione %1, che la %2 riprende, è stata annullata").arg(run.id).arg(resumed)) +
            QStringLiteral(": non si riprende, importare da capo"));
    }
    if (const History::Emptied emptied = history.EmptiedBehind(run.id); emptied.run != 0) {
        throw ImportError(
            QStringLiteral("l'esecuzione %1 ha svuotato dopo la tabella %2, in cui la %3 aveva scritto: non "
                           "si riprende, importare da capo")
                .arg(QString::number(emptied.run), emptied.table, QString::number(run.id)));
    }
}

/// The run and those that it goes on with, the latest first.
std::vector<Run> ChainOf(const History& history, const Run& run) {
    std::vector<Run> chain{run};
    while (chain.back().resumes != 0) {
        chain.push_back(history.Load(chain.back().resumes));
    }
    return chain;
}

QString WhyNotToGoOn(const Run& run) {
    if (run.isElsewhere) {
        return ElsewhereText(run);
    }
    if (run.isTrial) {
        return QStringLiteral("era una prova e non ha scritto nulla: non c'è nulla da riprendere");
    }
    const bool brokeOff = run.WasKilled() || run.ending == Ending::Interrupted || run.ending == Ending::Failed;
    return brokeOff && !run.isUnderWay && run.origin.isEmpty()
               ? QStringLiteral("non è l'importazione di una sola origine: una sequenza non si riprende, si ripete "
                                "dall'inizio")
               : QStringLiteral("non si è interrotta: non c'è nulla da riprendere");
}

/// Whether a row was given up behind what a run has reached, so that going on comes to it again.
bool ComesAgain(const RejectedRow& row, const contract::RowSelection::Reached& reached) {
    return row.loop > reached.loop || (row.loop == reached.loop && row.place > reached.rows);
}

} // namespace

std::unique_ptr<contract::RowSelection> RestOf(const History& history, const Run& run) {
    const std::vector<Run> chain = ChainOf(history, run);
    for (const Run& each : chain) {
        CheckStands(history, each, run.id);
    }
    if (!CanGoOn(run)) {
        throw ImportError(QStringLiteral("l'esecuzione %1 %2").arg(QString::number(run.id), WhyNotToGoOn(run)));
    }
    auto selection = std::make_unique<contract::RowSelection>();
    QMap<QString, contract::RowSelection::Reached> reached; // by procedure, what the latest run has
    QMap<QString, QStringList> numbers;                     ///< of its runs
    QMap<QString, qint64> whole;                            ///< with what it has given up
    for (const Run& each : chain) {
        for (const ProcedureRun& procedure : each.procedures) {
            const QString& name = procedure.result.procedure;
            numbers[name].append(QString::number(procedure.id));
            if (procedure.hasEnded && procedure.result.outcome == RunResult::Outcome::Done) {
                whole[name] += procedure.rejects - procedure.imported;
            } else if (const auto later = reached.find(name); later != reached.end()) {
                later->givenUp += procedure.reached.givenUp; // a run begins behind the one that it goes on with
            } else if (procedure.reached.rows > 0) {
                reached.insert(name, procedure.reached);
            }
        }
    }
    for (const Run& each : chain) {
        ForEachOpen(history, each.id, [&](const Reject& reject) {
            if (!whole.contains(reject.procedure) && ComesAgain(reject.row, reached.value(reject.procedure))) {
                selection->Await(Wanted(reject));
            }
        });
    }
    for (const auto& [name, givenUp] : whole.asKeyValueRange()) {
        selection->LeaveOut(name, givenUp + reached.take(name).givenUp);
    }
    for (auto place = reached.begin(); place != reached.end(); ++place) {
        const auto written = std::make_shared<WrittenRows>(history.Path(), numbers.value(place.key()));
        place->hasWritten = [written](const QString& table, qint64 id) { return written->Has(table, id); };
        selection->GoOn(place.key(), *place);
    }
    return selection;
}

} // namespace history
