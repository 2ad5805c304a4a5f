#pragma once

#include "app/sequence.h"
#include "tests/app/sequenceQuestions.h"
#include "tests/support/files.h"
#include "tests/support/TestTarget.h"

inline QVector<SequenceEntry::Outcome> OutcomesOf(const SequenceResult& result) {
    QVector<SequenceEntry::Outcome> outcomes;
    for (const SequenceEntry& entry : result.entries) {
        outcomes.append(entry.outcome);
    }
    return outcomes;
}

/// A target whose sequence runs over origins that note how they were called: each opens the SQLite file that the
/// setting Databasename names.
class FakeInstallation {
public:
    FakeInstallation() {
        WriteIni("[SEQUENCE]\nAzienda=Prova Uno S.r.l.\nLogFile=mig.log\nDateStart=01/02/2020\n"
                 "[ARCA EVOLUTION]\nServername=ARCASRV\nDatabasename=arca.db\nUsername=u1\nPassword=p1\n"
                 "[LANTEK 24]\nServername=LANTEKSRV\nDatabasename=lantek.db\nUsername=u2\n"
                 "[AUTOMA]\nDatabasename=automa.db\n[FERROBRIO]\nDatabasename=ferrobrio.db\n"
                 "[MEXAL]\nDatabasename=mexal.db\n[TESSERA]\nDatabasename=tessera.db\n"
                 "[VISUAL SPACE]\nDatabasename=vs.db\n");
        for (const char* name : {"automa.db", "ferrobrio.db"}) {
            WriteFile(Target.Folder.filePath(name), {});
        }
        Target.Person.AnswerTo[sequenceQuestions::Empty] = false;
        Add("Arca Evolution", {"ImportContropartiArcaEvolution"});
        Add("Lantek 24", {"ImportDocumentiLantek24", "ImportInventarioLantek24"});
        Add("AUTOMA", {"ImportInventarioAUTOMA"});
        Add("Lantek Expert 30", {"SvuotaTabelleCam"});
        Add("Ferrobrio", {"ImportSaldiFerrobrio"});
        Add("Mexal", {"ImportContropartiMEX", "ImportDocumentiMEX", "ImportSaldiMEX", "ImportUbicazioniMEX"});
        Add("Tessera", {"ImportDistinteTessera", "ImportOrdCliTessera"});
        Add("Visual Space",
            {"ImportDistinteVSP", "ImportDocVenVSP", "ImportDocAcqVSP", "ImportSaldiVSP", "ImportUbicazioniVSP"});
    }

    void WriteIni(const QString& text) const { WriteFile(Target.Folder.filePath("Sequence.ini"), text.toLatin1()); }

    SequenceSettings Settings() {
        SequenceSettings settings = ReadSequenceSettings(Target.Get());
        settings.findOrigin = [this](const QString& name) -> const contract::Origin* {
            const auto found = m_origins.find(name.toUpper());
            return found == m_origins.end() ? nullptr : &*found;
        };
        return settings;
    }
    SequenceResult Run() { return Sequence(Target.Get(), Settings(), {}); }
    SequenceResult Run2(const SequenceSteps& steps) {
        SequenceWindow window;
        window.LanciaSequenza = [steps] { return std::optional(steps); };
        return Sequence2(Target.Get(), Settings(), window);
    }

    QStringList Log() {
        QStringList lines;
        for (const QString& line : QString::fromLatin1(Target.Log("mig.log")).split("\r\n", Qt::SkipEmptyParts)) {
            lines.append(line.mid(QString("05/03/2024 10:20:30 - ").size()));
        }
        return lines;
    }
    QString Setting(const QString& key) { return Target.Get().Config.PeekAppConfig("IMPORT", key); }
    contract::Origin& OriginOf(const QString& name) { return m_origins[name.toUpper()]; }

    TestTarget Target;
    qsizetype Observed = 0;                                  ///< calls under which the history listened
    QStringList Calls;                                       ///< "procedure database"
    QHash<QString, RunResult::Outcome> Ends;                 ///< by procedure; `Done` for the others
    QHash<QString, qint64> GivenUp;                          ///< rows, by procedure
    QSet<QString> LackArticles;                              ///< procedures that find no article
    QSet<QString> Unreachable;                               ///< names of databases
    std::function<void(const QString&)> Work = [](auto&) {}; ///< what a procedure does, by name

private:
    void Add(const QString& name, const QStringList& procedures) {
        contract::Origin origin;
        origin.name = name;
        origin.module = "modImport_" + QString(name).remove(' ');
        origin.source.prepare = [this](Session& session, ovConnection& source) {
            source.Embedded = true;
            const QString database = session.Config.PeekAppConfig("IMPORT", "Databasename");
            if (Unreachable.contains(database)) {
                throw ImportError("server spento");
            }
            source.DatabaseName = Target.Folder.filePath(database);
            WriteFile(source.DatabaseName, {});
            return true;
        };
        for (const QString& procedure : procedures) {
            origin.procedures.push_back({std::nullopt,
                                         procedure,
                                         [this, procedure](Session& session, const QString& code, bool reset) {
                                             Called(session, procedure, code, reset);
                                         },
                                         {}});
        }
        m_origins.insert(name.toUpper(), origin);
    }

    void Called(Session& session, const QString& procedure, const QString& code, bool reset) {
        const QString database = session.Source ? QFileInfo(session.Source->DatabaseName).fileName() : QString("-");
        Calls.append(procedure + ' ' + database + (code.isEmpty() && !reset ? "" : " wrong arguments"));
        Observed += session.Observer != nullptr ? 1 : 0;
        Work(procedure);
        RunResult result;
        result.procedure = procedure;
        result.outcome = Ends.value(procedure, RunResult::Outcome::Done);
        result.sourceRows = 10;
        result.inserted = result.outcome == RunResult::Outcome::Done ? 10 : 4;
        result.givenUpCount = GivenUp.value(procedure);
        result.inserted -= result.givenUpCount;
        result.notReached = result.sourceRows - result.inserted - result.givenUpCount;
        result.errors = result.outcome == RunResult::Outcome::Failed ? QStringList("tabella rotta") : QStringList();
        if (LackArticles.contains(procedure)) {
            result.notes.Add("ARTICOLO NON TROVATO: riga 1: 'A'");
        }
        session.Results.append(result);
    }

    QMap<QString, contract::Origin> m_origins;
};
