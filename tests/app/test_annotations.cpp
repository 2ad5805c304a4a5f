#include "app/history/Annotations.h"
#include "app/history/Recorder.h"
#include "sources/tableFile.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using history::Annotations;
using history::NoteOrder;
using history::WantedNotes;

namespace {

/// A run of two procedures that is kept: two rows given up, three kinds of notes.
class KeptRun {
public:
    explicit KeptRun(int further = 0) {
        Recorder = std::make_unique<history::Recorder>(
            Target.Get(), history::RunFacts{.origin = "Gescom", .data = "cli", .work = "prova"});
        Recorder->ProcedureBegins("modImport_Gescom", "ImportContropartiGescom");
        Tell("riga 9", "TELEFONO: corto");
        GiveUp("riga 3", "manca il nome");
        Tell("riga 10", "CAP: 'abc' non è un CAP: vuoto");
        Tell("riga 2", "TELEFONO: È lungo");
        GiveUp("riga 4", "codice doppio");
        for (int i = 0; i < further; ++i) {
            Tell(QStringLiteral("riga %1").arg(100 + i), QStringLiteral("TELEFONO: numero %1").arg(i));
        }
        Recorder->ProcedureEnds({});
        Recorder->ProcedureBegins("modImport_Gescom", "ImportVettoriGescom");
        Tell({}, "TELEFONO: di un vettore");
        Recorder->ProcedureEnds({});
        Recorder.reset();
        History = std::make_unique<history::History>(Path());
    }

    QString Path() const { return Target.Folder.filePath("Cronologia.sqlite"); }
    Annotations Notes(const WantedNotes& wanted = {}) const { return {*History, 1, wanted}; }

    TestTarget Target;
    std::unique_ptr<history::Recorder> Recorder;
    std::unique_ptr<history::History> History;

private:
    void Tell(const QString& row, const QString& note) { Recorder->NoteStands(row, note); }
    void GiveUp(const QString& row, const QString& reason) {
        Recorder->RowIsGivenUp({row, "ARCLFR", "1", 0, reason, {"CODCLFOR", "SALDO"}, {"007", 1.5}});
    }
};

/// "KIND 2/1: row, row; ...": kinds with their number and ticks, and the rows of their notes.
QString TextOf(Annotations notes) {
    QStringList kinds;
    for (size_t kind = 0; kind < notes.Kinds().size(); ++kind) {
        const history::NoteKind& each = notes.Kinds()[kind];
        QStringList rows;
        for (qint64 place = 0; place < each.count; ++place) {
            rows.append(notes.At(kind, place).row);
        }
        kinds.append(QStringLiteral("%1 %2/%3: %4").arg(each.kind).arg(each.count).arg(each.done).arg(rows.join(", ")));
    }
    return kinds.join("; ");
}

} // namespace

/// What a run told, looked through by kind.
class TestAnnotations : public QObject {
    Q_OBJECT

private slots:
    void AreFoundAndOrdered_data() {
        Columns<WantedNotes, QString>("wanted", "found");
        const QString givenUp = "RIGA ABBANDONATA 2/0: riga 3, riga 4";
        Row("all", WantedNotes{}, QString(givenUp + "; TELEFONO 3/0: riga 9, riga 2, ; CAP 1/0: riga 10"));
        Row("of a kind", WantedNotes{"CAP", {}}, QString("CAP 1/0: riga 10"));
        Row("given up", WantedNotes{history::GivenUpKind, {}}, givenUp);
        Row("by text, whatever its case", WantedNotes{{}, "MANCA"}, QString("RIGA ABBANDONATA 1/0: riga 3"));
        Row("by row and by text", WantedNotes{{}, "riga 2"}, QString("TELEFONO 1/0: riga 2"));
        Row("by name of the kind", WantedNotes{{}, "cap: "}, QString("CAP 1/0: riga 10"));
        Row("signs are what they are", WantedNotes{{}, "'abc' non"}, QString("CAP 1/0: riga 10"));
        Row("no wildcards", WantedNotes{{}, "%"}, QString());
        Row("by row", WantedNotes{"TELEFONO", {}, NoteOrder::Row}, QString("TELEFONO 3/0: , riga 2, riga 9"));
        Row("by text", WantedNotes{history::GivenUpKind, {}, NoteOrder::Text},
            QString("RIGA ABBANDONATA 2/0: riga 4, riga 3"));
    }
    void AreFoundAndOrdered() {
        QFETCH(WantedNotes, wanted);
        const KeptRun run;
        QTEST(TextOf(run.Notes(wanted)), "found");
    }

    void TicksAreKept() {
        const KeptRun run;
        Annotations notes = run.Notes({{}, {}, NoteOrder::OpenFirst});
        notes.SetDone(0, 0, true);
        notes.SetDone(0, 1, true); // riga 3 stands there now, which has its tick
        notes.SetDone(1, 0, true);
        QCOMPARE(notes.At(1, 0).row, QString("riga 2"));
        QCOMPARE(notes.At(1, 2).row, QString("riga 9"));
        QCOMPARE(TextOf(run.Notes()),
                 QString("RIGA ABBANDONATA 2/1: riga 3, riga 4; TELEFONO 3/1: riga 9, riga 2, ; CAP 1/0: riga 10"));

        // Of a kind those alone that are found; what another kind has in common with it stays.
        Annotations found = run.Notes({{}, "riga 2"});
        found.SetKindDone(0, true);
        QVERIFY(found.At(0, 0).isDone);
        QCOMPARE(run.Notes().Kinds().at(1).done, 2);
        Annotations all = run.Notes();
        all.SetKindDone(1, false);
        all.SetKindDone(0, true);
        QCOMPARE(TextOf(run.Notes()),
                 QString("RIGA ABBANDONATA 2/2: riga 3, riga 4; TELEFONO 3/0: riga 9, riga 2, ; CAP 1/0: riga 10"));
    }

    /// Every one is there once, from wherever they are read, and few are held.
    void ManyAreReadInPieces() {
        constexpr int further = 20'000;
        const KeptRun run(further);
        Annotations notes = run.Notes({"TELEFONO", {}});
        QCOMPARE(notes.Kinds().at(0).count, further + 3);
        QCOMPARE(notes.At(0, further + 2).text, QString("di un vettore"));
        for (int i = further - 1; i >= 0; --i) {
            if (notes.At(0, i + 2).text != QStringLiteral("numero %1").arg(i)) {
                QCOMPARE(notes.At(0, i + 2).text, QStringLiteral("numero %1").arg(i));
            }
        }
        QVERIFY2(notes.Held() < further / 2, qPrintable(QString::number(notes.Held())));
    }

    void AreWrittenAsATable_data() {
        Columns<QString>("file");
        Row("csv", QString("note.csv"));
        Row("workbook", QString("note.xlsx"));
    }
    void AreWrittenAsATable() {
        QFETCH(QString, file);
        const KeptRun run;
        Annotations notes = run.Notes({{}, "a"});
        notes.SetDone(0, 0, true);
        const QString path = run.Target.Folder.filePath(file);
        QCOMPARE(notes.Write(path), 5);
        const sources::TableOfFile table = sources::ReadTable(path);
        QCOMPARE(table.columns, QStringList({"Tipo", "Procedura", "Riga dell'origine", "Testo", "Fatta"}));
        QCOMPARE(table.rows.at(0).values,
                 QStringList({"RIGA ABBANDONATA", "ImportContropartiGescom", "riga 3", "manca il nome", "sì"}));
        QCOMPARE(table.rows.back().values,
                 QStringList({"CAP", "ImportContropartiGescom", "riga 10", "'abc' non è un CAP: vuoto", "no"}));
    }

    void ARejectIsFoundByItsNote() {
        const KeptRun run;
        Annotations notes = run.Notes();
        const auto reject = run.History->FindReject(notes.At(0, 1).id);
        QVERIFY(reject && reject->row.reason == "codice doppio");
        QCOMPARE(reject->row.values, QVector<QVariant>({"007", 1.5}));
        QVERIFY(!run.History->FindReject(99));
    }
};

QUADRIX_TEST(TestAnnotations)
#include "test_annotations.moc"
