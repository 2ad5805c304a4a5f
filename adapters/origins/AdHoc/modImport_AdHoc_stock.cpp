// Stock of Ad Hoc Revolution: MVM_MAST and MVM_DETT hold the movements, SALDIART what is in the warehouses today.
// Left out: unit of a movement (MMUNIMIS), as quantities are read in the first unit of the article; reserved, committed
// and ordered quantities (SLQTRPER, SLQTIPER, SLQTOPER), which follow from orders; names of warehouses (MAGAZZIN),
// which MAG_AZZ has.

#include "adapters/origins/AdHoc/modImport_AdHoc.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/contract/write/Warehouses.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AdHoc {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString MvmMast = QStringLiteral("MVM_MAST");
const QString MvmDett = QStringLiteral("MVM_DETT");
const QString Serial = QStringLiteral("MMSERIAL");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// Movement that is no load.
const QString OtherMovement = QStringLiteral("M");

/// What a row moves, in the first unit of the article: below zero for what leaves.
double QuantityOf(const SourceRow& row) { return NumberOf(row, "MMQTAUM1") * (row.Text("MMFLCASC") == u"-" ? -1 : 1); }

/// The price of the movement's unit, for the first unit of the article; a row without a quantity of its own counts in
/// that one.
double PriceOf(const SourceRow& row) {
    const double quantity = NumberOf(row, "MMQTAUM1");
    const double moved = NumberOf(row, "MMQTAMOV");
    const double price = NumberOf(row, "MMPREZZO");
    return RoundedTo(quantity == 0 || moved == 0 ? price : price * moved / quantity, UnitDecimals);
}

double ValueOf(const SourceRow& row) {
    const double quantity = QuantityOf(row);
    const double value = NumberOf(row, "MMVALMAG");
    return RoundCurrency(value == 0 ? quantity * PriceOf(row) : std::copysign(value, quantity));
}

Rule Calculated(const QString& text, double (*of)(const SourceRow&)) {
    return {text, [of](const RuleInput& input) { return RuleValue(of(input.row)); }};
}

Rule Quantity() { return Calculated("com'è letto; negativo se la seconda colonna è \"-\"", QuantityOf); }

Rule Year() {
    return {"anno della data", [day = Day().apply](const RuleInput& input) -> RuleValue {
                const QVariant date = *day(input);
                if (date.isNull()) {
                    throw ImportError(QStringLiteral("'%1' non è una data").arg(input.Text()));
                }
                return date.toDate().year();
            }};
}

const Mapping& MovimentoMapping() {
    static const Mapping mapping{
        "MOV_MAG",
        MvmMast,
        {
            {"MMANN", "MMDATREG", Year()},
            {"MMNUM", "MMNUMREG", RoundedTo(0)},
            {"MMDAT", "MMDATREG", Day()},
            {"MMCAM", "MMTCAMAG", Or(Translated(MvmMast, "MMTCAMAG"), QVariant())},
            {"MMESR", "MMDATREG", Year()},
            {"MMSTA", "", Constant(schema::defaults::Closed)},
            {"MMINV", "", Constant(false)},
        },
    };
    return mapping;
}

const Mapping& RigaMapping() {
    static const Mapping mapping{
        "MOV_MAR",
        MvmDett,
        {
            {"MRNUM", "CPROWORD", RoundedTo(0)},
            {"MRART", "MMCODART", Code()},
            {"MRQTA", "MMQTAUM1, MMFLCASC", Quantity()},
            {"MRQTI", "MMQTAUM1, MMFLCASC", Quantity()},
            {"MRPRZ", "MMPREZZO, MMQTAMOV, MMQTAUM1",
             Calculated("la prima colonna per la seconda diviso la terza, se ci sono; arrotondato a 6 decimali",
                        PriceOf)},
            {"MRVAL", "MMVALMAG, MMPREZZO, MMQTAMOV, MMQTAUM1, MMFLCASC",
             Calculated("la prima colonna in centesimi, col segno della quantità; se è zero, quantità per prezzo",
                        ValueOf)},
            {"MRTPM", "MMFLCASC", Choice({{"+", schema::defaults::LoadMovement}}, OtherMovement)},
            {"MRSTA", "", Constant(schema::defaults::Closed)},
            {"MRCAM", "MMCAUMAG", Or(Translated(MvmDett, "MMCAUMAG"), QVariant())},
            {"MRMAG", "MMCODMAG", WarehouseWritten(MvmDett, "MMCODMAG")},
        },
    };
    return mapping;
}

// --- Movements ----------------------------------------------------------------------------------------------------

/// The movements have their number of the source, unless another movement of the year has it: then the next free one.
/// SYS_IMP keeps year and number of each in a list of the company, so that a later import finds it whatever day and
/// number the source gives it then.
class MovementImporter final : public Importer {
public:
    explicit MovementImporter(ImportRun& run)
        : Importer(run),
          m_warehouses(run, MvmDett, "MMCODMAG") {}

    void Begin() override;
    RowOutcome Row(const SourceRow& row) override;
    void EndGroup() override;
    bool End() override;

private:
    struct Movement {
        qint64 id = 0; ///< 0: no row of it has been carried over
        QString name = {};
        QMultiMap<qint64, qint64> rows = {}; ///< that an earlier import wrote and this one has not: number, RECORD_ID
    };

    /// A movement that has a number.
    struct Numbered {
        qint64 id = 0; ///< 0: none has it
        int year = 0;
        qint64 number = 0;
        bool isOurs = false; ///< an import has written it, and no row of this run is it
    };

    void BeginMovement(const SourceRow& row);
    Numbered WithNumber(int year, qint64 number) const;
    qint64 Wanted(const SourceRow& row) const;
    Numbered Known(const SourceRow& row, int year) const;
    qint64 NumberFor(const SourceRow& row, int year, const Numbered& known);
    qint64 HighestInSource();
    QString List() const { return Run().FullName("MOV_MAG"); }
    QString Kept() const {
        return Equals(GetSession(), "TBNAM", List()) + " AND " + Equals(GetSession(), "TBFLD", Serial);
    }
    void Keep(const QString& serial, const QString& number);
    void ReadRows();

    Movement m_movement;
    Warehouses m_warehouses;
    QHash<QString, QString> m_numbers;    ///< year and number, as SYS_IMP keeps them, by MMSERIAL
    QHash<QString, QString> m_serials;    ///< the other way round
    QSet<qint64> m_written;               ///< RECORD_IDs of the movements of this run
    std::optional<qint64> m_highest = {}; ///< number in the source
};

QString MovementName(int year, qint64 number) { return QStringLiteral("movimento %1/%2").arg(number).arg(year); }

QString YearAndNumber(int year, qint64 number) { return QStringLiteral("%1/%2").arg(year).arg(number); }

void MovementImporter::Begin() {
    Recordset rows = GetSession().Quadrix.ExecuteWC("SELECT TBOLD, TBNEW FROM SYS_IMP WHERE " + Kept());
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        m_numbers.insert(row.Text("TBOLD"), row.Text("TBNEW"));
        m_serials.insert(row.Text("TBNEW"), row.Text("TBOLD"));
    }
}

RowOutcome MovementImporter::Row(const SourceRow& row) {
    Session& session = GetSession();
    if (const QString sign = row.Text("MMFLCASC"); sign != u"+" && sign != u"-") {
        return Run().Skip(QStringLiteral("riga che non muove la giacenza"));
    }
    const QString article = ArticleCodeOf(session, ArtIcol, "ARCODART", row.Text("MMCODART"));
    if (!IsImported(Run(), article)) {
        return Run().Skip(ArticleMissing);
    }
    Run().Restores(m_movement);
    if (m_movement.id == 0) {
        BeginMovement(row);
    }
    TargetRow target(Run(), "MOV_MAR");
    RigaMapping().Apply(target, session, row, {article});
    target.Set("MRTES", m_movement.id);
    target.Set("MRDES", LookUp(session, "ART_ICO", "CDART", article, "ARDES"));
    target.Set("MRUMS", LookUp(session, "ART_ICO", "CDART", article, "ARUMS"));
    target.Set("MRMAG", m_warehouses.CodeOf(row.Text("MMCODMAG")));
    const auto known = m_movement.rows.find(target.Value("MRNUM").toLongLong());
    if (known == m_movement.rows.end()) {
        target.Insert();
        return RowOutcome::Inserted;
    }
    target.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", *known));
    m_movement.rows.erase(known);
    return RowOutcome::Updated;
}

/// Kind and warehouse of the movement are those of its first row.
void MovementImporter::BeginMovement(const SourceRow& row) {
    TargetRow head(Run(), "MOV_MAG");
    MovimentoMapping().Apply(head, GetSession(), row, {});
    const int year = head.Value("MMANN").toInt();
    const Numbered known = Known(row, year);
    const qint64 number = NumberFor(row, year, known);
    head.Set("MMNUM", number);
    head.Set("MMMAG", m_warehouses.CodeOf(row.Text("MMCODMAG")));
    head.Set("MMTPM", row.Text("MMFLCASC") == u"+" ? schema::defaults::LoadMovement : OtherMovement);
    if (known.id == 0) {
        head.Insert();
        m_movement = {Run().LastId("MOV_MAG"), MovementName(year, number)};
    } else {
        head.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known.id));
        m_movement = {known.id, MovementName(year, number)};
        ReadRows();
    }
    Run().Remember(m_written, m_movement.id);
    Keep(row.Text(Serial), YearAndNumber(year, number));
}

/// Has SYS_IMP say which movement one of the source is. Another one that it said so of is gone, as by a reset.
void MovementImporter::Keep(const QString& serial, const QString& number) {
    const QString before = m_numbers.value(serial);
    const QString other = m_serials.value(number);
    if (before == number && other == serial) {
        return;
    }
    if (!other.isEmpty() && other != serial) {
        Run().DeleteRows("SYS_IMP", Kept() + " AND " + Equals(GetSession(), "TBOLD", other));
        Run().RestoresEntry(m_numbers, other);
        m_numbers.remove(other);
    }
    StoreNewCode(Run(), List(), Serial, serial, number);
    Run().RestoresEntry(m_numbers, serial);
    m_numbers.insert(serial, number);
    if (m_serials.value(before) == serial) {
        Run().RestoresEntry(m_serials, before);
        m_serials.remove(before);
    }
    Run().RestoresEntry(m_serials, number);
    m_serials.insert(number, serial);
}

MovementImporter::Numbered MovementImporter::WithNumber(int year, qint64 number) const {
    const Recordset found = GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID, MMINV, USINS FROM " + List() + " WHERE " +
                                                           Equals("MMANN", year) + " AND " + Equals("MMNUM", number));
    if (found.Eof()) {
        return {};
    }
    const SourceRow movement(found);
    const qint64 id = movement.Value("RECORD_ID").toLongLong();
    const bool isImported = IsImportUser(movement.Text("USINS")) && NumberOf(movement, "MMINV") == 0;
    return {id, year, number, isImported && !m_written.contains(id)};
}

/// The number that was given to a movement whose own was taken, else that of the source.
qint64 MovementImporter::Wanted(const SourceRow& row) const {
    const QString given = modImport::GetNewCode(GetSession(), MvmMast, Serial, row.Text(Serial), false);
    return given.isEmpty() ? static_cast<qint64>(NumberOf(row, "MMNUMREG")) : given.toLongLong();
}

/// The movement that an earlier import has written of it: as SYS_IMP keeps it, else, of a release that did not keep all
/// of them, the one of its number that no other one of the source is.
MovementImporter::Numbered MovementImporter::Known(const SourceRow& row, int year) const {
    Numbered movement;
    if (const QString kept = m_numbers.value(row.Text(Serial)); !kept.isEmpty()) {
        movement = WithNumber(kept.section(u'/', 0, 0).toInt(), kept.section(u'/', 1).toLongLong());
    }
    if (const qint64 wanted = Wanted(row); !movement.isOurs && !m_serials.contains(YearAndNumber(year, wanted))) {
        movement = WithNumber(year, wanted);
    }
    return movement.isOurs ? movement : Numbered();
}

/// One that is there goes on having its number as long as another one has that of the source.
qint64 MovementImporter::NumberFor(const SourceRow& row, int year, const Numbered& known) {
    const qint64 wanted = Wanted(row);
    if (const qint64 holder = WithNumber(year, wanted).id; holder == 0 || holder == known.id) {
        return wanted;
    }
    if (known.id != 0 && known.year == year) {
        return known.number;
    }
    const QString ofYear = QStringLiteral("WHERE ") + Equals("MMANN", year);
    const qint64 highest = GetSession().Quadrix.GetMaxValue("MOV_MAG", "MMNUM", ofYear).toLongLong();
    const qint64 number = std::max(highest, HighestInSource()) + 1;
    StoreNewCode(Run(), MvmMast, Serial, row.Text(Serial), QString::number(number));
    Run().Log(QStringLiteral("NUMERO DI MOVIMENTO OCCUPATO: %1: il %2 è di un altro, prende il numero %3")
                  .arg(Run().RowKey(), MovementName(year, wanted))
                  .arg(number));
    return number;
}

/// A number behind all of them takes none from a movement that is still to come.
qint64 MovementImporter::HighestInSource() {
    if (!m_highest) {
        const Recordset found =
            GetSession().SourceConnection().ExecuteWC("SELECT MAX(MMNUMREG) AS MMNUMREG FROM MVM_MAST");
        m_highest = found.Eof() ? 0 : static_cast<qint64>(NumberOf(SourceRow(found), "MMNUMREG"));
    }
    return *m_highest;
}

void MovementImporter::ReadRows() {
    Recordset rows = GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID, MRNUM FROM " + Run().FullName("MOV_MAR") +
                                                    " WHERE " + Equals("MRTES", m_movement.id) + " AND " +
                                                    OfImports(GetSession()) + " ORDER BY RECORD_ID DESC");
    for (; !rows.Eof(); rows.MoveNext()) { // of several with one number the one inserted last is found first
        m_movement.rows.insert(rows.Value("MRNUM").toLongLong(), rows.Value("RECORD_ID").toLongLong());
    }
}

void MovementImporter::EndGroup() {
    Run().Restores(m_movement);
    TellNoLongerThere(Run(), QStringLiteral("RIGHE DI MOVIMENTO"), m_movement.name, m_movement.rows.size());
    m_movement = {};
}

/// Movements that the source has deleted, or that move nothing any more: what they moved still counts.
bool MovementImporter::End() {
    if (Run().IsPart()) {
        return true;
    }
    Recordset movements = GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID, MMANN, MMNUM FROM " + List() +
                                                         " WHERE COALESCE(MMINV, 0) = 0 AND " +
                                                         OfImports(GetSession()) + " ORDER BY RECORD_ID");
    for (const SourceRow row(movements); !movements.Eof(); movements.MoveNext()) {
        if (!m_written.contains(row.Value("RECORD_ID").toLongLong())) {
            TellNotMetAgain(
                Run(), QStringLiteral("MOVIMENTI"),
                MovementName(static_cast<int>(NumberOf(row, "MMANN")), static_cast<qint64>(NumberOf(row, "MMNUM"))), 1);
        }
    }
    return true;
}

} // namespace

Procedure Movimenti() {
    Needs needs = NeedsOf(MovimentoMapping()) + NeedsOf(RigaMapping());
    needs.reads.push_back({MvmDett, {"MMCODMAG"}});
    needs.codes.push_back({.list = MvmMast, .field = Serial, .table = "MOV_MAG", .column = "MMNUM"});
    needs.writes = StockNeeds() + std::vector<TableNeed>{{"MOV_MAG", {"MMCAM"}},
                                                         {"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}},
                                                         {"MOV_MAR", {"MRCAM"}},
                                                         LookedUp("MAG_AZZ", {"CDMAG"}),
                                                         {"ART_ICO", {"CDART", "ARDES", "ARUMS"}}};
    const Frame frame{.module = Module,
                      .procedure = "ImportMovimentiAhr",
                      .announcement = "Inizio importazione movimenti di magazzino",
                      .step = "Movimenti di magazzino",
                      .completion = "Movimenti di magazzino importati correttamente!"};
    return ProcedureOf(
        Button::Saldi, frame,
        {{.step = frame.step,
          .source = {.table = MvmMast,
                     .key = Serial,
                     .order = "MMSERIAL, CPROWNUM",
                     .naming = "MMSERIAL, CPROWNUM",
                     .group = {Serial},
                     .joins = {{.table = MvmDett,
                                .on = {{Serial}},
                                .columns = {"CPROWNUM", "CPROWORD", "MMCODART", "MMCODMAG", "MMQTAMOV", "MMQTAUM1",
                                            "MMCAUMAG", "MMFLCASC", "MMPREZZO", "MMVALMAG"},
                                .isOptional = false}}},
          .needs = needs,
          .empties = StockEmptying(),
          .make = [](ImportRun& run, const QString&) { return std::make_unique<MovementImporter>(run); }}});
}

// --- Balances -----------------------------------------------------------------------------------------------------

/// The movements stand under the same button and have emptied the tables: nothing is emptied here. A balance is an
/// inventory: it tells what is there, whatever was moved before.
Procedure Inventario() {
    const Balances saldi{
        .frame = {.module = Module,
                  .procedure = "ImportInventarioAhr",
                  .announcement = "Inizio importazione Inventario",
                  .log = LogStart::Behind,
                  .completion = "Inventario importato correttamente!",
                  .asksReset = false},
        .source = {.table = SaldiArt,
                   .key = "SLCODICE",
                   .order = "SLCODMAG, SLCODICE",
                   .where = "SLQTAPER <> 0",
                   .naming = "SLCODMAG, SLCODICE"},
        .warehouse = "SLCODMAG",
        .article = {"SLCODICE", Article()},
        .quantity = "SLQTAPER",
        .price = {"SLVALUCA", NotZero()},
    };
    ImportPart part = PartOf(saldi);
    part.empties = {};
    return ProcedureOf(Button::Saldi, FrameOf(saldi), {part});
}

} // namespace modImport_AdHoc
