#pragma once

#include "app/merge.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

/// Two companies, X01 merged into X02.
struct MergePair {
    TestTarget target;

    explicit MergePair(TestTarget::On engine = TestTarget::On::Embedded)
        : target(engine) {
        target.AddCompany("X02", "Prova Due S.p.A.");
        target.Execute("DELETE FROM X01_MAG_AZZ");
    }
    void Add(const QString& company, const QString& code, const QString& name, const QString& vatNumber = {},
             const QString& taxCode = {}) {
        const auto quoted = [](QString text) -> QString { return "'" + text.replace("'", "''") + "'"; };
        target.Execute("INSERT INTO " + company + "_CON_TRO (CDCON, CORAS, COIVA, COFIS) VALUES (" + quoted(code) +
                       ", " + quoted(name) + ", " + quoted(vatNumber) + ", " + quoted(taxCode) + ")");
    }
    bool Merge(bool updateReferences, modMain::MergeResult* result = nullptr,
               const modMain::MergeConsent& consent = {}) {
        return modMain::FusioneControparti(target.Get(), "X01", "X02", updateReferences, result, consent);
    }
    /// With references; cancelled behind the counterparty that is copied first.
    bool MergeUntilTheFirstCopy(modMain::MergeResult* result = nullptr) {
        target.Db().Trace = [this](const QString& statement) {
            if (statement.startsWith("INSERT") && statement.contains("X02_CON_TRO")) {
                target.Person.CancelAt = 0;
            }
        };
        const bool ended = Merge(true, result);
        target.Db().Trace = nullptr;
        target.Person.CancelAt.reset();
        return ended;
    }
    QString Error() { return target.Person.Reported.isEmpty() ? QString() : target.Person.Reported.last().message; }
};

/// A merge with something of everything: matches of each kind, children, references of each kind.
inline void FillAll(MergePair& pair) {
    pair.Add("X02", "000007", "Rossi Mario & C. S.n.c.", "01234567890");
    pair.Add("X02", "000009", "Bianchi", "", "BNCLRA80A01F205X");
    pair.Add("X01", "000001", "Rossi Mario", "01234567890");
    pair.Add("X01", "000002", "Bianchi Laura", "", "BNCLRA80A01F205X");
    pair.Add("X01", "000003", "Bianchi");
    pair.Add("X01", "000007", "Verdi S.r.l.", "99999999999");
    pair.Add("X01", "000010", "Neri d'Est S.p.A.");
    for (const char* statement :
         {"UPDATE X01_CON_TRO SET COVEP = '000001', COCLI = 1, DTINS = '20240115 08:30:00', COFID = 1234.5, "
          "CONOT = 'note' WHERE CDCON = '000007'",
          "UPDATE X01_CON_TRO SET COVEP = '000010' WHERE CDCON = '000001'",
          "INSERT INTO X01_NUM_TEL (TBNAM, TBKEY, NRNUM) VALUES ('CON_TRO', '000007', '041'), "
          "('CON_TRO', '000001', '042'), ('CON_SED', '000007', '043'), ('CON_SED', '1', '044'), "
          "('CON_SED', '2', '045'), ('CON_RIF', '2', '046')",
          "INSERT INTO X01_IND_WEB (TBNAM, TBKEY, WBIND) VALUES ('CON_TRO', '000007', 'a@b.it'), "
          "('CON_RIF', '1', 'eva@b.it'), ('CON_RIF', '3', 'ugo@b.it')",
          "INSERT INTO X01_CON_RIF (CDCON, RFNOM) VALUES ('000001', 'Eva'), ('000007', 'Anna'), ('000010', 'Ugo')",
          "INSERT INTO X01_CON_SED (CDCON, CDSED, SERAS) VALUES ('000001', '001', 'Sede'), "
          "('000007', '001', 'Deposito')",
          "INSERT INTO X02_CON_SED (CDCON, CDSED) VALUES ('000007', '001'), ('000007', '002'), ('000009', '001')",
          "INSERT INTO X01_ART_ICO (CDART, ARCLI) VALUES ('A', '000001'), ('B', '000007'), ('C', NULL)",
          "INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (1, '000007'), (2, '000002'), (3, '000003'), (4, "
          "'000999')",
          "INSERT INTO X01_FLD_VAL (FLTAB, FLKEY, FLVAL) VALUES ('CON_TRO', '000010', 'x'), "
          "('ART_ICO', '000001', 'y'), ('ART_ICO', 'MIX', 'z')",
          "INSERT INTO X02_DOC_VEN (DTNUM, DTCON) VALUES (1, '000007')"}) {
        pair.target.Execute(statement);
    }
}

/// Everything that the companies hold of counterparties.
inline QStringList Contents(TestTarget& target, const QStringList& companies = {"X01", "X02"}) {
    QStringList contents;
    for (const QString& company : companies) {
        for (const char* table :
             {"CON_TRO", "CON_SED", "CON_RIF", "NUM_TEL", "IND_WEB", "ART_ICO", "DOC_VEN", "FLD_VAL"}) {
            const QString name = company + '_' + table;
            contents += name;
            contents += target.Rows("SELECT * FROM " + name + " ORDER BY RECORD_ID");
        }
    }
    return contents;
}

/// How many lines of a kind a merge has noted.
inline qint64 Noted(const modMain::MergeResult& result, const QString& kind) {
    qint64 count = 0;
    for (const Notes::Kind& one : result.notes.kinds) {
        count += one.name == kind ? one.count : 0;
    }
    return count;
}

inline void Engines() {
    Columns<TestTarget::On>("engine");
    Row("embedded", TestTarget::On::Embedded);
    if (TestTarget::HasMariaDb()) {
        Row("MariaDB", TestTarget::On::MariaDb);
    }
}
