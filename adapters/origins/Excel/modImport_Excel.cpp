// Excel: a workbook that the operator chooses, of customers or of articles. The first row of the sheet (the one called
// "CLIENTI" or "ARTICOLI", else the first) names columns of Quadrix, in any order: "CORAS" of the record itself,
// "ART_FOR.COFGE" of what hangs on it, "NUM_TEL.Ufficio" with the label of the number, "FLD:Lega" with the name of a
// free attribute. The second row is for who reads the sheet, but where a layout file calls the codes otherwise; data
// end at the first row without a code. The layout is this system's own; codes are translated under EXCEL. A header that
// is none of these is told once and not imported. Known gaps: columns of the system itself (who wrote a record when,
// the codes of a counterparty), branches, contacts.

#include "adapters/origins/Excel/modImport_Excel.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/write/FreeAttribute.h"
#include "adapters/sheetCells.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Excel {

namespace {

const QString Module = QStringLiteral("modImport_Excel");

const QString Clienti = QStringLiteral("CLIENTI");
const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString ClientiCode = QStringLiteral("COCGE"); ///< header of the codes of the rows
const QString ArticoliCode = QStringLiteral("CDART");
const QString Codes = QStringLiteral("EXCEL"); ///< by which SYS_IMP knows the codes of both
constexpr int FirstRow = 3;

const QString Telephone = QStringLiteral("NUM_TEL.");
const QString Attribute = QStringLiteral("FLD:");

// --- Headers that the declarations do not name --------------------------------------------------------------------

/// A header that names a column of the record.
struct Further {
    QString column;
    DataType type;
};

/// The further headers of the sheet under way.
struct Headers {
    std::vector<Further> columns = {};
    QStringList marked = {}; ///< that begin with the mark of what hangs on the record
};

/// What a sheet may have beyond its declaration.
struct Beyond {
    QString target;                                               ///< table of the record
    QString mark;                                                 ///< beginning of the headers of what hangs on it
    std::shared_ptr<Headers> found = std::make_shared<Headers>(); ///< by the run under way
};

QStringList ColumnsReadBy(const Needs& needs) {
    QStringList columns{sources::RowNumberColumn};
    for (const Mapping* mapping : needs.mappings) {
        columns += mapping->SourceColumns();
    }
    for (const TableNeed& need : needs.reads) {
        columns += need.columns + need.optional;
    }
    return columns;
}

/// Whether a column can be given by a sheet: not those that tell who wrote the record when, nor the codes that a
/// counterparty is given and known again by.
bool IsForSheets(const schema::Table& table, const QString& name) {
    static const QStringList ofTheSystem{"RECORD_ID", "USINS", "DTINS", "USMDF", "DTMDF", "CDCON", "COFGE"};
    return table.FindColumn(name) != nullptr && !ofTheSystem.contains(name, Qt::CaseInsensitive);
}

/// Whether a header names what hangs on the record: the mark, and a name behind it.
bool IsMarked(const Beyond& beyond, const QString& header) {
    return header.startsWith(beyond.mark, Qt::CaseInsensitive) && header.size() > beyond.mark.size();
}

/// Finds the further headers, and logs those that are none.
void FindHeaders(ImportRun& run, const QString& sheet, const QStringList& read, const Beyond& beyond) {
    Session& session = run.GetSession();
    const schema::Table& target = *schema::FindTable(beyond.target);
    *beyond.found = {};
    for (const ColumnInfo& header : session.SourceConnection().GetColumns(sheet)) {
        if (read.contains(header.name, Qt::CaseInsensitive)) {
            continue;
        }
        if (IsMarked(beyond, header.name)) {
            beyond.found->marked.append(header.name);
        } else if (IsForSheets(target, header.name)) {
            const QString column = target.FindColumn(header.name)->name;
            beyond.found->columns.push_back({column, GetDataTypeFromSysSys(session, beyond.target, column)});
        } else {
            modImport::LogNote(session,
                               QStringLiteral("INTESTAZIONE SCONOSCIUTA: tabella '%1', colonna '%2': non è una "
                                              "colonna di %3 che un foglio può dare, e non si importa")
                                   .arg(sheet, header.name, beyond.target));
        }
    }
}

/// A blank cell leaves what the record has of the usual lines, and the day that a new one has been given.
void SetFurther(const Beyond& beyond, const SourceRow& row, TargetRow& target) {
    static const QString day = QStringLiteral("ARINV");
    for (const Further& further : beyond.found->columns) {
        const bool hasUsual = target.Value(further.column).isValid() || further.column == day;
        if (hasUsual && row.IsBlank(further.column)) {
            continue;
        }
        target.Set(further.column, sheetCells::GetXlsValue(row, further.column, further.type));
    }
}

/// What the usual lines write of a supplier who is there, out of the columns for customers, unless the sheet has the
/// columns for suppliers.
void SetOfSupplier(const Beyond& beyond, const SourceRow& row, TargetRow& party) {
    static const QStringList columns{"COMOA", "COLSF", "COSF1"};
    if (!party.IsSet("COFOR")) { // his role is not written
        return;
    }
    for (const Further& further : beyond.found->columns) {
        if (columns.contains(further.column) && !row.IsBlank(further.column)) {
            party.Set(further.column, sheetCells::GetXlsValue(row, further.column, further.type));
        }
    }
}

/// The procedure of a declaration whose hooks write the further headers.
template<class Declared>
Procedure OverSheet(Button button, const Declared& declared, const Beyond& beyond) {
    ImportPart part = PartOf(declared);
    const QStringList read = ColumnsReadBy(part.needs);
    part.make = [make = part.make, read, beyond, sheet = part.source.table](ImportRun& run, const QString& code) {
        FindHeaders(run, sheet, read, beyond);
        return make(run, code);
    };
    Procedure procedure = ProcedureOf(button, FrameOf(declared), {part});
    procedure.readsAlso = [beyond](const QString& column) {
        return IsMarked(beyond, column) || IsForSheets(*schema::FindTable(beyond.target), column);
    };
    return procedure;
}

SourceTable RowsOf(const QString& sheet, const QString& key) {
    return {.table = sheet, .key = key, .order = sources::RowNumberColumn};
}

// --- Customers ----------------------------------------------------------------------------------------------------

/// Who is neither marked as a customer nor as a supplier is a customer.
RoleTeller RolesOfSheet() {
    const auto of = [](const SourceRow& row) {
        const bool supplier = sheetCells::IsYes(row, "COFOR");
        return Roles{sheetCells::IsYes(row, "COCLI") || (!supplier && row.IsBlank("COCLI")), supplier};
    };
    return {{}, of};
}

const PartyColumns Columns{
    .name = "CORAS",
    .name2 = "CORA2",
    .street = "COIND",
    .houseNumber = "CONRC",
    .postCode = "COCAP",
    .town = "COCIT",
    .province = "COPRO",
    .country = "CONAZ",
    .vatNumber = "COIVA",
    .taxCode = "COFIS",
    .abi = "COABI",
    .cab = "COCAB",
    .account = "COCOC",
    .iban = "COIBA",
    .discount1 = "COSC1",
    .agent = "COAGE",
    .currency = "COVAL",
    .note = "CONOT",
};

/// A code of Quadrix, or one that SYS_IMP translates.
Rule CodeOf(const QString& column, const QString& table) { return TranslatedOrKnown(Codes, column, table); }

Procedure ImportClientiExcel() {
    const Beyond beyond{"CON_TRO", Telephone};
    const LineGroup usual(PartyLines(Codes, Columns).Over({}));
    const Counterparties customers{
        .frame = {.module = Module, .procedure = "ImportClientiExcel", .confirmation = "Importare i Clienti?"},
        .source = RowsOf(Clienti, ClientiCode),
        .roles = RolesOfSheet(),
        .name = "CORAS, CORA2",
        .vatNumber = "COIVA",
        .taxCode = "COFIS",
        .codeTable = Codes,
        .lines =
            {
                usual,
                ByRole("COMOP", "COMOA", "COMOP", CodeOf("COMOP", "TAB_MOP")),
                ByRole("COLSC", "COLSF", "COLSC", CodeOf("COLSC", "LIS_TES")),
                {"COCLI", "", IsCustomer()},
                {"COFOR", "", IsSupplier()},
            },
        .numbers = {.office = "NUM_TEL.Ufficio",
                    .fax = "NUM_TEL.Fax (uff.)",
                    .mobile = "NUM_TEL.Cellulare",
                    .mail = "IND_WEB.E",
                    .web = "IND_WEB.W"},
        .more =
            [beyond](ImportRun& /*run*/, const SourceRow& row, TargetRow& party) {
                if (party.Value("CDCON").isValid()) { // one that was there before only gains its role
                    SetFurther(beyond, row, party);
                } else {
                    SetOfSupplier(beyond, row, party);
                }
            },
        .after =
            [beyond](ImportRun& /*run*/, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
                for (const QString& header : beyond.found->marked) {
                    writer.Telephone(owner, header.mid(Telephone.size()), row.Text(header));
                }
            },
        .further = {{}, {{Clienti, {}, {"COCLI", "COFOR"}}}, {}},
    };
    return OverSheet(Button::Cli, customers, beyond);
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// The mark of an article of another class is somebody's own.
Rule MarksTube() {
    return {"vero per \"TB\"; niente per ogni altra", [](const RuleInput& input) -> RuleValue {
                return input.Text().compare(u"TB", Qt::CaseInsensitive) == 0 ? RuleValue(true) : RuleValue();
            }};
}

Procedure ImportArticoliExcel() {
    const Beyond beyond{"ART_ICO", Attribute};
    const Articles articles{
        .frame = {.module = Module, .procedure = "ImportArticoliExcel"},
        .source = RowsOf(ArticoliTable, ArticoliCode),
        .code = {"CDART", ArticleCode(Codes, "CDART")},
        .description = "ARDES",
        .lines =
            {
                {"CDEXT", "CDART", First(50)},
                {"ARDE2", "ARDE2", First(100)},
                {"ARUMS", "ARUMS", Unit(Codes, "ARUMS", schema::defaults::Unit)},
                {"ARUM2", "ARUM2", Unit(Codes, "ARUM2", "")},
                {"ARCOE", "ARCOE", NotZero()},
                {"ARIVA", "ARIVA", VatCode(Codes, "ARIVA")},
                {"ARCLA", "ARCLA", NotBlank(FirstUpper(10))},
                {"ARLAM", "ARCLA", WithDefault(Is("LM"))},
                {"ARTUB", "ARCLA", MarksTube()},
                {"ARFAM", "ARFAM", CodeOf("ARFAM", "FAM_PRO")},
                {"ARMAT", "ARMAT", CodeOf("ARMAT", "TAB_MAT")},
                {"ARCOS", "ARCOS", RoundedTo(6)},
                {"ARPRZ", "ARPRZ", RoundedTo(6)},
                {"ARRIC", "ARPRZ, ARCOS", MarkUp()},
                {"ARPSN", "ARPSN", RoundedTo(3)},
                {"ARPSL", "ARPSL", RoundedTo(3)},
                {"ARDMX", "ARDMX", RoundedTo(6)},
                {"ARDMY", "ARDMY", RoundedTo(6)},
                {"ARDMZ", "ARDMZ", RoundedTo(6)},
                {"ARSMN", "ARSMN", RoundedTo(6)},
                {"ARLOR", "ARLOR", RoundedTo(6)},
                {"ARGGA", "ARGGA", RoundedTo(0)},
                {"ARNOT", "ARNOT", Text()},
            },
        .suppliers = {{.supplier = {"ART_FOR.COFGE", KnownSupplier()},
                       .ownCode = "ART_COD.CDCOD",
                       .price = "ARCOS",
                       .leadDays = "ARGGA",
                       .lot = "ARLOR"}},
        .location = "UBI_ART.CDUBI",
        .empties = ArticleEmptying() + FreeAttributeEmptying("ART_ICO"),
        .more = [beyond](ImportRun& /*run*/, const SourceRow& row,
                         TargetRow& article) { SetFurther(beyond, row, article); },
        .attributes =
            [beyond](ImportRun& /*run*/, FreeAttributeWriter& writer, const SourceRow& row, const QString& article) {
                for (const QString& header : beyond.found->marked) {
                    writer.Write({.table = "ART_ICO",
                                  .key = article,
                                  .name = header.mid(Attribute.size()),
                                  .value = row.Text(header)});
                }
            },
        .further = {{}, {}, FreeAttributeNeeds()},
    };
    return OverSheet(Button::Art, articles, beyond);
}

} // namespace

DataType GetDataTypeFromSysSys(Session& session, const QString& table, const QString& column) {
    const Recordset rows =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT COLTP FROM SYS_SYS_COL WHERE TABNM = %1 AND COLNM = %2")
                                      .arg(LiteralOf(session.Quadrix, table), LiteralOf(session.Quadrix, column)));
    return rows.Eof() ? DataType::VarChar : static_cast<DataType>(rows.Fields(0).Value().toInt());
}

// --- Sheets as people fill them in --------------------------------------------------------------------------------

namespace {

Sheet SheetOf(const Procedure& procedure, const QString& name, const QString& target, const QString& code) {
    Sheet sheet{name, target, {code}, &procedure};
    sheet.headers += ColumnsReadBy(procedure.needs);
    sheet.headers.removeAll(sources::RowNumberColumn);
    sheet.headers.removeDuplicates();
    return sheet;
}

} // namespace

std::vector<Sheet> Sheets() {
    const std::vector<Procedure>& procedures = Entry().procedures;
    return {SheetOf(procedures.at(0), Clienti, "CON_TRO", ClientiCode),
            SheetOf(procedures.at(1), ArticoliTable, "ART_ICO", ArticoliCode)};
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Excel",
        Module,
        {.kind = "Excel",
         .prepare = sourceSettings::OpenFileExcel(
             {{.table = Clienti, .sheet = Clienti + "/#1", .firstRow = FirstRow, .end = {ClientiCode}},
              {.table = ArticoliTable, .sheet = ArticoliTable + "/#1", .firstRow = FirstRow, .end = {ArticoliCode}}})},
        Buttons("YYNNN---"),
        Shown::Keep,
        {ImportClientiExcel(), ImportArticoliExcel()},
    };
    return origin;
}

} // namespace modImport_Excel
