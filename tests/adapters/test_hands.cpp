#include "adapters/contract/run/RowSelection.h"
#include "core/RunObserver.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

namespace {

/// Where rows that are there get the codes that they lack and nothing else, with what hangs on them.
const QStringList Tables{"CON_TRO", "CON_SED", "CON_RIF", "NUM_TEL", "IND_WEB", "ART_ICO", "ART_FOR",
                         "ART_COD", "ART_FMT", "SYS_LNG", "STO_COS", "STO_PRZ", "LIS_LAV", "LIS_LAS"};

using Values = QMap<QString, QString>; ///< by column

/// Hears which rows wait for codes, and which rows of the target they have made.
class Waiting final : public RunObserver {
public:
    void CodeIsOpen(const QString& row, const OpenCode& code) noexcept override {
        Rows.insert(row);
        Codes.append(code);
    }
    bool KeepsImages() const noexcept override { return true; }
    bool NamesRows() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override {
        if (change.kind == TargetChange::Kind::Inserted) {
            m_made.append(change);
        }
    }
    /// RECORD_ID of the last row of a table that a row has made which waits; 0: there is none.
    qint64 LastMade(const QString& table) const {
        qint64 last = 0;
        for (const TargetChange& change : m_made) {
            last = change.table == table && Rows.contains(change.row) ? change.id : last;
        }
        return last;
    }

    QSet<QString> Rows;
    QVector<OpenCode> Codes;

private:
    QVector<TargetChange> m_made;
};

/// A fixture whose rows are given codes when they are there, and hands have been at them.
class Later : public Fixture {
public:
    explicit Later(const QString& module)
        : Fixture(FixtureFolder(module), *FixtureOrigins().value(module)) {}

    /// @return whether rows wait
    bool Import() {
        bool waits = false;
        for (const QString& line : Lines()) {
            Waiting& waiting = m_waiting[NameOf(line)];
            Target().Get().Observer = &waiting;
            RunLine(line);
            Target().Get().Observer = nullptr;
            waits = waits || !waiting.Rows.isEmpty();
        }
        return waits;
    }

    /// Deletes a row that waits of each kind, and changes what is no code of the others.
    void Edit() {
        for (const QString& table : {QStringLiteral("CON_TRO"), QStringLiteral("ART_ICO")}) {
            const QString name = Target().Db().GetFullTableName(table);
            for (const Waiting& waiting : m_waiting) {
                Target().Execute(QString("DELETE FROM %1 WHERE RECORD_ID = %2").arg(name).arg(waiting.LastMade(name)));
            }
            QStringList changes;
            for (const schema::Column& column : schema::FindTable(table)->columns) {
                if (column.type == DataType::Double) {
                    changes.append(column.name + " = COALESCE(" + column.name + ", 0) + 1");
                } else if (column.words && !column.name.startsWith("CORA")) {
                    changes.append(column.name + " = 'A mano'");
                }
            }
            Target().Execute("UPDATE " + name + " SET " + changes.join(", "));
        }
    }

    void GiveCodes() {
        Target().Execute("UPDATE SYS_IMP SET TBNEW = 'Q' WHERE COALESCE(TBNEW, '') = ''");
        Target().Get().Translations.clear();
        QSet<QString> done;
        for (const QString& line : Lines()) {
            const QString procedure = NameOf(line);
            const Waiting waiting = m_waiting[procedure];
            if (waiting.Rows.isEmpty() || line.contains(" code=") || done.contains(procedure)) {
                continue;
            }
            done.insert(procedure);
            contract::RowSelection only;
            only.FillCodes();
            for (const OpenCode& code : waiting.Codes) {
                only.FillCode(code.list, code.field, code.code);
                m_codes.insert(code.code.toUpper());
            }
            for (const QString& row : waiting.Rows) {
                only.Add({.procedure = procedure, .name = row, .table = {}, .key = {}});
            }
            only.Begin(procedure);
            Target().Get().Selection = &only;
            RunLine(QString(line).remove(" reset"));
            Target().Get().Selection = nullptr;
        }
    }

    QMap<QString, Values> Rows() {
        QMap<QString, Values> all;
        for (const QString& table : Tables) {
            Recordset rows = Target().Db().ExecuteWC("SELECT * FROM " + Target().Db().GetFullTableName(table));
            for (; !rows.Eof(); rows.MoveNext()) {
                Values& row = all[table + ' ' + rows.Value("RECORD_ID").toString()];
                for (const QString& column : rows.Columns()) {
                    row.insert(column, mod_ovTools::ToText(rows.Value(column)));
                }
            }
        }
        return all;
    }

    /// What has changed beside codes that were missing, or that something stood in for.
    QStringList Wrong(const QMap<QString, Values>& before, const QMap<QString, Values>& after) const {
        QStringList wrong;
        for (const QString& row : before.keys()) {
            if (!after.contains(row)) {
                wrong.append("gone: " + row);
            }
        }
        for (const auto& [row, now] : after.asKeyValueRange()) {
            if (!before.contains(row)) {
                wrong.append("new: " + row);
                continue;
            }
            for (const auto& [column, value] : now.asKeyValueRange()) {
                const QString was = before[row][column];
                const bool isStandIn = was == schema::defaults::VatCode || was == schema::defaults::Currency ||
                                       m_codes.contains(was.toUpper()) || column == "CONAZ"; // a code beside it
                if (value != was && !was.isEmpty() && !isStandIn && column != "USMDF" && column != "DTMDF") {
                    wrong.append(QString("%1 %2: '%3' -> '%4'").arg(row, column, was, value));
                }
            }
        }
        return wrong;
    }

private:
    static QString NameOf(const QString& line) { return line.section(' ', 0, 0); }

    QMap<QString, Waiting> m_waiting; ///< by procedure
    QSet<QString> m_codes;            ///< that were given, in upper case
};

} // namespace

/// What hands have done to rows that an import has written.
class TestHands : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void StayWhereCodesAreGiven_data() { EachModule(); }
    /// Rows get the codes that they lack, and those that are gone do not come back.
    void StayWhereCodesAreGiven() {
        QFETCH(const QString, module);
        Later later(module);
        if (!later.Import()) {
            return;
        }
        later.Edit();
        const auto before = later.Rows();
        later.GiveCodes();
        const QStringList wrong = later.Wrong(before, later.Rows());
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join('\n')));
    }

    void StayWhereTheSourceHasNone_data() {
        Columns<QString>("module");
        for (const char* module : {"AdHoc", "AdHocWindows", "Arca2000", "Esatto", "Gemini", "Sigla"}) {
            Row(module, QString("modImport_") + module);
        }
    }
    /// An account of a counterparty.
    void StayWhereTheSourceHasNone() {
        QFETCH(const QString, module);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        fixture.Target().Execute(
            "UPDATE X01_CON_TRO SET COMAC = CASE WHEN COALESCE(COMAC, '') = '' THEN 'M' ELSE COMAC END, "
            "COMAF = CASE WHEN COALESCE(COMAF, '') = '' THEN 'M' ELSE COMAF END");
        const QString accounts = "SELECT CDCON, COMAC, COMAF FROM X01_CON_TRO ORDER BY CDCON";
        const QStringList before = fixture.Target().Rows(accounts);
        for (const QString& line : fixture.Lines()) {
            fixture.RunLine(QString(line).remove(" reset"));
        }
        QCOMPARE(fixture.Target().Rows(accounts), before);
    }
};

QUADRIX_TEST(TestHands)
#include "test_hands.moc"
