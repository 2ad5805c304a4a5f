#pragma once

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/ImportRun.h"
#include "app/history/History.h"
#include "app/importFlow.h"
#include "tests/support/TestTarget.h"

/// Articles of a small source into a target whose runs are kept.
class Kept {
public:
    explicit Kept(TestTarget::On engine = TestTarget::On::Embedded)
        : Target(engine) {
        m_origin.name = "Prova";
        m_origin.source.prepare = [this](Session&, ovConnection& source) {
            source.Embedded = true;
            source.DatabaseName = Target.Folder.filePath("source.db");
            return true;
        };
        m_origin.procedures.push_back({contract::Button::Art,
                                       "ImportArticoliProva",
                                       [this](Session& session, const QString&, bool) {
                                           Import(session);
                                           if (Meanwhile) {
                                               Meanwhile();
                                               Import(session);
                                           }
                                       },
                                       {}});
        ovConnection source;
        source.Embedded = true;
        source.DatabaseName = Target.Folder.filePath("source.db");
        source.OpenConnection();
        source.Execute("CREATE TABLE ART (CODICE TEXT, NOME TEXT, COSTO TEXT, UM TEXT)");
        for (const char* row : {"'A', 'Vite', '1.5', 'PZ'", "'B', 'Dado', 'due', 'XX'", "'C', 'Rondella', '3', 'XX'",
                                "'D', 'Perno', 'quattro', 'PZ'"}) {
            source.Execute(QStringLiteral("INSERT INTO ART VALUES (%1)").arg(QLatin1String(row)));
        }
        Target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('PROVA', 'UM', 'PZ', 'NR')");
    }

    /// @param resumes the run that `only` goes on with
    FlowOutcome Run(const std::shared_ptr<contract::RowSelection>& only = {}, bool dryRun = false, qint64 resumes = 0) {
        ImportRequest request;
        request.choice = {"Prova Uno S.r.l.", {}, &m_origin, ErrorAction::Ignore};
        request.button = contract::Button::Art;
        request.confirmed = true;
        request.reset = false;
        request.dryRun = dryRun;
        request.only = only;
        request.resumes = resumes;
        Target.Get().Results.clear();
        return RunImport(Target.Get(), request);
    }
    void Source(const QString& statement) const {
        ovConnection source;
        source.Embedded = true;
        source.DatabaseName = Target.Folder.filePath("source.db");
        source.OpenConnection();
        source.Execute(statement);
    }
    QStringList Articles() { return Target.Rows("SELECT CDART, ARDES, ARCOS FROM X01_ART_ICO ORDER BY CDART"); }
    QString Account() {
        const RunResult& result = Target.Get().Results.last();
        return QStringLiteral("%1 = %2 + %3 + %4 + %5")
            .arg(result.sourceRows)
            .arg(result.inserted)
            .arg(result.updated)
            .arg(result.skipped)
            .arg(result.givenUpCount);
    }
    /// The codes that rows wait for, each with them.
    QStringList Waiting() const {
        QStringList codes;
        for (const history::WaitingCode& one : history::History(Path()).WaitingCodes("X01", 10)) {
            codes += one.code.list + '.' + one.code.field + '=' + one.code.code + ' ' + one.first.join(", ");
        }
        return codes;
    }
    QString Path() const { return history::FilePath(Target.Get().Config.ConfigFile()); }

    mutable TestTarget Target;
    std::function<void()> Meanwhile; ///< happens under way, before the rows are imported once more

private:
    static void Import(Session& session) {
        contract::ImportRun run(session, "modImport_Prova", "ImportProva", {});
        run.Guard([&] {
            run.Announce("Inizio importazione articoli");
            run.Rows({"Articoli", "ART", "CODICE", "SELECT COUNT(*) FROM ART", "SELECT * FROM ART ORDER BY CODICE"},
                     [&](const contract::SourceRow& row) { return ImportRow(run, row); });
            run.Complete("Articoli importati correttamente!");
        });
    }

    static contract::RowOutcome ImportRow(contract::ImportRun& run, const contract::SourceRow& row) {
        Session& session = run.GetSession();
        const QString isIt = contract::Equals(session, "CDART", row.Text("CODICE"));
        if (row.Text("NOME") == "-") {
            run.DeleteRows("ART_ICO", isIt);
            return contract::RowOutcome::Updated;
        }
        const qint64 known = contract::IdWhere(session, "ART_ICO", isIt);
        contract::TargetRow article(run, "ART_ICO");
        article.Set("CDART", row.Value("CODICE")).Set("ARDES", row.Value("NOME")).Set("ARCOS", row.Value("COSTO"));
        if (modImport::GetNewCode(session, "PROVA", "UM", row.Text("UM"), true).isEmpty()) {
            run.Log("UNITÀ NON TROVATA: " + row.Text("UM"));
        }
        if (known != 0) {
            article.Update("WHERE " + contract::Equals("RECORD_ID", known));
            return contract::RowOutcome::Updated;
        }
        article.Insert();
        return contract::RowOutcome::Inserted;
    }

    contract::Origin m_origin;
};
