#include "adapters/contract/write/SheetFormat.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/qdxProduction_sheets.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

namespace contract {

namespace {

const QString FormatTable = QStringLiteral("ART_FMT");

double WeightOf(Session& session, const SheetFormat& format) {
    return format.weight != 0 || format.density == 0
               ? format.weight
               : qdxProduction::qdxPesoFormato(session, format.article, format.length, format.width, format.density);
}

} // namespace

std::vector<TableNeed> SheetFormatNeeds() {
    return {
        {FormatTable,
         {"CDART", "CDFMT", "LMDES", "LMDMX", "LMDMY", "LMPES", "LMPSR", "LMSFR", "LMEXT", "LMOLD", "LMATT", "LMANN"}}};
}

RowOutcome WriteSheetFormat(ImportRun& run, const SheetFormat& format, qint64* id) {
    Session& session = run.GetSession();
    const qint64 known = IdOfCode(session.Quadrix, FormatTable,
                                  Equals(session, "CDART", format.article) + QStringLiteral(" AND ") +
                                      Equals(session, "CDFMT", format.code),
                                  "CDFMT", format.code);
    TargetRow row(run, FormatTable);
    const auto setText = [&row](const QString& column, const QString& text) {
        if (!text.isEmpty()) {
            row.Set(column, text);
        }
    };
    const auto setNumber = [&row](const QString& column, double number) {
        if (number != 0) {
            row.Set(column, number);
        }
    };
    row.Set("CDART", format.article);
    row.Set("CDFMT", format.code);
    setText("LMDES", format.description);
    setNumber("LMDMX", format.length);
    setNumber("LMDMY", format.width);
    setNumber("LMPES", WeightOf(session, format));
    setNumber("LMPSR", format.density);
    setText("LMSFR", format.offcut);
    setText("LMEXT", format.external);
    setText("LMOLD", format.old);
    row.Set("LMATT", format.isActive);
    row.Set("LMANN", false);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
    }
    if (id != nullptr) {
        *id = known != 0 ? known : run.LastId(FormatTable);
    }
    return known != 0 ? RowOutcome::Updated : RowOutcome::Inserted;
}

QString FreeFormatCode(ImportRun& run, const SheetFormat& format,
                       const std::function<bool(const QString& external)>& isInSource) {
    QHash<QString, QString> taken; // code in the source by CDFMT
    Recordset rows = run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT CDFMT, LMEXT FROM ") +
                                                        run.FullName(FormatTable) + QStringLiteral(" WHERE ") +
                                                        Equals(run.GetSession(), "CDART", format.article));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString code = row.Text("CDFMT");
        const QString external = row.Text("LMEXT");
        const bool isOfMeasures = code == format.code || code.startsWith(format.code + u'-');
        if (isOfMeasures && external.compare(format.external, Qt::CaseInsensitive) == 0) {
            return code;
        }
        if (!external.isEmpty()) {
            taken.insert(code.toUpper(), external);
        }
    }
    const auto isTaken = [&](const QString& code) {
        const QString external = taken.value(code.toUpper());
        return !external.isEmpty() && isInSource(external);
    };
    QString free = format.code;
    for (int number = 2; isTaken(free); ++number) {
        free = format.code + u'-' + QString::number(number);
    }
    if (const QString before = taken.value(free.toUpper()); !before.isEmpty()) {
        run.Log(QStringLiteral("FORMATO RINOMINATO: %1: il formato '%2' di '%3' era di '%4', che l'origine non ha più")
                    .arg(run.RowKey(), free, format.article, before));
    } else if (free != format.code) {
        run.Log(QStringLiteral("FORMATO RINUMERATO: %1: il formato '%2' di '%3' è di '%4': scritto come '%5'")
                    .arg(run.RowKey(), format.code, format.article, taken.value(format.code.toUpper()), free));
    }
    return free;
}

QString SearchText(const QString& code, const QString& description) {
    return FirstOf(code + QStringLiteral(" - ") + description, schema::FindTable("ART_ICO")->FindColumn("ARCDR")->size);
}

KnownFormat FindFormat(ImportRun& run, const QString& externalCode, const std::function<QString()>& sheet) {
    Session& session = run.GetSession();
    std::vector<KnownFormat> formats;
    if (!externalCode.isEmpty()) {
        Recordset found = session.Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM ") + run.FullName(FormatTable) +
                                                    QStringLiteral(" WHERE ") + Equals(session, "LMEXT", externalCode));
        for (const SourceRow row(found); StepToCode(found, "LMEXT", externalCode); found.MoveNext()) {
            formats.push_back({row.Text("CDART"), row.Text("CDFMT"), row.Text("LMSFR"),
                               mod_ovTools::ToDouble(row.Value("LMDMX")), mod_ovTools::ToDouble(row.Value("LMDMY"))});
        }
    }
    if (formats.size() > 1 && sheet) {
        const QString now = sheet();
        const auto ofSheet =
            std::ranges::find_if(formats, [&now](const KnownFormat& one) { return IsSameCode(one.article, now); });
        return ofSheet == formats.end() ? formats.front() : *ofSheet;
    }
    return formats.empty() ? KnownFormat() : formats.front();
}

void TellFormerOffcuts(ImportRun& run, const SheetFormat& format) {
    Session& session = run.GetSession();
    QStringList former;
    Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT CDART, CDFMT, LMEXT FROM ") + run.FullName(FormatTable) + QStringLiteral(" WHERE ") +
        Equals(session, "LMEXT", format.external) + QStringLiteral(" AND LMSFR > '' AND ") + OfImports(session) +
        QStringLiteral(" ORDER BY RECORD_ID"));
    for (const SourceRow row(found); StepToCode(found, "LMEXT", format.external); found.MoveNext()) {
        if (!IsSameCode(row.Text("CDART"), format.article)) {
            former.append(QStringLiteral("'%1' di '%2'").arg(row.Text("CDFMT"), row.Text("CDART")));
        }
    }
    TellNoLongerThere(
        run, QStringLiteral("FORMATI"),
        QStringLiteral("%1, ora di '%2': %3").arg(run.RowKey(), format.article, former.join(QStringLiteral(", "))),
        former.size());
}

} // namespace contract
