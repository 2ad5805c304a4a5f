#include "adapters/contract/write/Stock.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <algorithm>
#include <cmath>

namespace contract {

using namespace schema::defaults;

namespace {

const QString Movements = QStringLiteral("MOV_MAG");
const QString NumberInYear = QStringLiteral("MMANN/MMNUM");

constexpr double LeastQuantity = 0.000001; // quantities have 6 decimals

/// What a line may have beyond its article and quantity.
void SetParticulars(TargetRow& row, const StockLine& line) {
    const auto setText = [&row](const QString& column, const QString& text) {
        if (!text.isEmpty()) {
            row.Set(column, text);
        }
    };
    setText("MRUBI", line.location);
    setText("MRFMT", line.format);
    setText("MRSFR", line.offcut);
    if (line.length != 0 || line.width != 0) {
        row.Set("MRLMX", line.length);
        row.Set("MRLMY", line.width);
    }
}

} // namespace

std::vector<TableNeed> StockNeeds() {
    return {
        {"MOV_MAG", {"MMANN", "MMNUM", "MMDAT", "MMMAG", "MMTPM", "MMSTA", "MMINV", "MMESR"}},
        {"MOV_MAR",
         {"MRTES", "MRNUM", "MRART", "MRDES", "MRUMS", "MRQTA", "MRQTI", "MRPRZ", "MRVAL", "MRMAG", "MRTPM", "MRSTA"}},
        {"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}}};
}

Emptying StockEmptying() { return Deleted({"ART_MAG", "MOV_MAR", "MOV_MAG"}); }

StockWriter::Movement& StockWriter::FindMovement(const StockLine& line) {
    const auto known = m_movements.find({line.warehouse, line.sheet});
    // One that could not be looked up is not remembered: the next row would make a second one.
    return known != m_movements.end()
               ? known->second
               : m_movements.emplace(std::pair(line.warehouse, line.sheet), ReadMovement(line)).first->second;
}

/// The module that a movement is of; empty while nobody has taken it.
QString StockWriter::KeeperOf(const QString& code) const {
    return modImport::GetNewCode(m_run.GetSession(), m_run.FullName(Movements), NumberInYear, code, false);
}

/// A movement that is there, without the number of its last row.
StockWriter::Movement StockWriter::KnownMovement(qint64 id, qint64 number) const {
    const int year = m_run.GetSession().UserManager.DataElaborazione.year();
    const QString code = QStringLiteral("%1/%2").arg(year).arg(number);
    return {.id = id,
            .code = code,
            .name = QStringLiteral("movimento %1/%2").arg(number).arg(year),
            .wasThere = true,
            .isKept = KeeperOf(code) == m_run.Module()};
}

qint64 StockWriter::LastRow(const Movement& movement) const {
    return m_run.GetSession().Quadrix.ExecuteCommand("SELECT MAX(MRNUM) FROM " + m_run.FullName("MOV_MAR") + " WHERE " +
                                                     Equals("MRTES", movement.id));
}

/// The movement of this module, else the first that is nobody's.
StockWriter::Movement StockWriter::ReadMovement(const StockLine& line) const {
    Movement movement;
    Session& session = m_run.GetSession();
    const int year = session.UserManager.DataElaborazione.year();
    Recordset found = session.Quadrix.ExecuteWC(
        u"SELECT RECORD_ID, MMNUM FROM " + m_run.FullName(Movements) + u" WHERE " + Equals("MMANN", year) + u" AND " +
        Equals(session, "MMMAG", line.warehouse) + u" AND MMINV = 1 AND COALESCE(MMLAM, 0) = " +
        QString::number(line.sheet ? 1 : 0) + u" AND " + OfImports(session) + u" ORDER BY RECORD_ID");
    for (; !found.Eof() && !movement.isKept; found.MoveNext()) {
        const Movement one = KnownMovement(found.Fields(0).Value().toLongLong(), found.Fields(1).Value().toLongLong());
        if (one.isKept || (movement.id == 0 && KeeperOf(one.code).isEmpty())) {
            movement = one;
        }
    }
    found.Close();
    if (movement.wasThere) {
        movement.last = LastRow(movement);
        movement.lastBefore = movement.last;
    }
    return movement;
}

void StockWriter::InsertMovement(Movement& movement, const StockLine& line) {
    Session& session = m_run.GetSession();
    const QDate today = session.UserManager.DataElaborazione;
    TargetRow row(m_run, Movements);
    row.Set("MMANN", today.year());
    const QString year = QStringLiteral("WHERE ") + Equals("MMANN", today.year());
    const qint64 number = session.Quadrix.GetMaxValue(Movements, "MMNUM", year).toLongLong() + 1;
    row.Set("MMNUM", number);
    row.Set("MMDAT", today);
    row.Set("MMMAG", line.warehouse);
    row.Set("MMTPM", LoadMovement);
    row.Set("MMSTA", Closed);
    row.Set("MMINV", true);
    row.Set("MMESR", today.year());
    if (line.sheet) {
        row.Set("MMLAM", true);
    }
    row.Insert();
    m_run.Restores(movement);
    movement.id = m_run.LastId(Movements);
    movement.code = QStringLiteral("%1/%2").arg(today.year()).arg(number);
}

/// Has SYS_IMP say that the movement is of this module, also in place of what it says of one of that number that is
/// gone.
void StockWriter::Keep(Movement& movement) {
    m_run.Restores(movement.isKept);
    StoreNewCode(m_run, m_run.FullName(Movements), NumberInYear, movement.code, m_run.Module());
    movement.isKept = true;
}

/// The rows of a movement that may be of that balance and are still to be rewritten: several may be alike.
std::vector<StockWriter::Known> StockWriter::FindRows(const Movement& movement, const StockLine& line) const {
    std::vector<Known> known;
    if (!movement.wasThere) {
        return known;
    }
    Session& session = m_run.GetSession();
    const auto same = [&](const QString& column, const QString& text) {
        return QString(u" AND " + Equals(session, QStringLiteral("COALESCE(%1, '')").arg(column), text));
    };
    // An inventory has all of its rows in one movement: it is the article that finds few of them.
    Recordset rows = session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, MRQTA, MRNUM FROM " + m_run.FullName("MOV_MAR") +
                                               u" WHERE " + Equals("COALESCE(MRTES, 0)", movement.id) + u" AND " +
                                               Equals(session, "MRART", line.article) + same("MRUBI", line.location) +
                                               same("MRFMT", line.format) + same("MRSFR", line.offcut) + u" AND " +
                                               OfImports(session) + u" ORDER BY RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        const qint64 id = rows.Fields(0).Value().toLongLong();
        const bool isNew = rows.Fields(2).Value().toLongLong() > movement.lastBefore;
        if (!isNew && !movement.rewritten.contains(id) && !m_run.HasWrittenBefore("MOV_MAR", id)) {
            known.push_back({id, mod_ovTools::ToDouble(rows.Fields(1).Value())});
        }
    }
    return known;
}

/// The row of a balance that an earlier import has written.
StockWriter::Known StockWriter::FindKnown(const StockLine& line) {
    const std::vector<Known> rows = FindRows(FindMovement(line), line);
    if (line.left.isEmpty()) {
        return rows.empty() ? Known() : rows.front();
    }
    const auto isSame = [&line](const Known& row) {
        return std::abs(row.quantity - line.quantity) < LeastQuantity / 2;
    };
    StockLine before = line;
    before.warehouse = line.left;
    const std::vector<Known> left = FindRows(FindMovement(before), line);
    if (const auto row = std::ranges::find_if(left, isSame); row != left.end()) {
        return {row->id, row->quantity, line.left != line.warehouse};
    }
    if (!left.empty()) {
        throw ImportError(QStringLiteral("l'articolo '%1' non ha nel magazzino '%2', dove stava senza la traduzione, "
                                         "una giacenza di %3: i saldi vanno importati da capo, svuotando")
                              .arg(line.article, line.left, mod_ovTools::NumberText(line.quantity)));
    }
    const auto row = std::ranges::find_if(rows, isSame);
    return row == rows.end() ? Known() : *row;
}

RowOutcome StockWriter::Balance(const StockLine& line) {
    Movement& movement = FindMovement(line);
    const Known known = FindKnown(line);
    if (known.id == 0 && line.quantity == 0) {
        return m_run.Skip(QStringLiteral("giacenza a zero"));
    }
    if (known.id == 0 && FillsCodes(m_run)) {
        return SkipGone(m_run);
    }
    const Recordset found = m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM ") +
                                                                 m_run.FullName("ART_ICO") + QStringLiteral(" WHERE ") +
                                                                 Equals(m_run.GetSession(), "CDART", line.article));
    if (found.Eof()) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(m_run.RowKey(), line.article));
        return m_run.Skip(ArticleMissing);
    }
    if (movement.id == 0) {
        InsertMovement(movement, line);
    }
    if (!movement.isKept) {
        Keep(movement);
    }
    const double price = mod_ovTools::ToDouble(line.price.isNull() ? found.Value("ARCOS") : line.price);
    TargetRow row(m_run, "MOV_MAR");
    row.Set("MRTES", movement.id);
    row.Set("MRART", line.article);
    row.Set("MRDES", found.Value("ARDES"));
    row.Set("MRUMS", line.unit.isEmpty() ? found.Value("ARUMS") : QVariant(line.unit));
    row.Set("MRQTA", line.quantity);
    row.Set("MRQTI", line.quantity);
    row.Set("MRPRZ", price);
    row.Set("MRVAL", RoundedTo(line.quantity * price, 2));
    row.Set("MRMAG", line.warehouse);
    row.Set("MRTPM", LoadMovement);
    row.Set("MRSTA", Closed);
    SetParticulars(row, line);
    WritesLike(line);
    if (known.id == 0 || known.isElsewhere) {
        row.Set("MRNUM", movement.last + 1);
        m_run.Restores(movement.last);
        ++movement.last;
    }
    if (known.id == 0) {
        row.Insert();
        return RowOutcome::Inserted;
    }
    row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known.id));
    m_run.Remember(movement.rewritten, known.id);
    return RowOutcome::Updated;
}

void StockWriter::WritesAll() {
    for (const bool sheets : {false, true}) {
        m_written.insert({sheets, false});
        m_written.insert({sheets, true});
    }
}

void StockWriter::TellRowsLeft() {
    if (m_run.IsPart()) {
        return;
    }
    for (const auto& [place, movement] : m_movements) {
        if (movement.wasThere) {
            TellRowsLeft(movement, place.first, place.second);
        }
    }
    TellWarehousesLeft();
}

void StockWriter::TellRowsLeft(const Movement& movement, const QString& warehouse, bool sheets) const {
    Session& session = m_run.GetSession();
    qint64 left = 0;
    Recordset rows = session.Quadrix.ExecuteWC(
        u"SELECT RECORD_ID, MRSFR FROM " + m_run.FullName("MOV_MAR") + u" WHERE " + Equals("MRTES", movement.id) +
        u" AND " + OfImports(session) + u" AND MRNUM <= " + QString::number(movement.lastBefore));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        // Sheets, offcuts and what is none may come by imports of their own.
        const bool isOurs = m_written.contains({sheets, !row.IsBlank("MRSFR")});
        left += isOurs && !movement.rewritten.contains(row.Value("RECORD_ID").toLongLong()) ? 1 : 0;
    }
    TellNotMetAgain(m_run, QStringLiteral("GIACENZE"),
                    QStringLiteral("%1, magazzino '%2'").arg(movement.name, warehouse), left);
}

/// A warehouse in which the source has nothing any more is met by no row.
void StockWriter::TellWarehousesLeft() const {
    Session& session = m_run.GetSession();
    const int year = session.UserManager.DataElaborazione.year();
    QSet<qint64> met;
    for (const auto& [place, movement] : m_movements) {
        met.insert(movement.id);
    }
    Recordset rows = session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, MMNUM, MMMAG, MMLAM FROM " +
                                               m_run.FullName(Movements) + u" WHERE " + Equals("MMANN", year) +
                                               u" AND MMINV = 1 AND " + OfImports(session) + u" ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        Movement movement = KnownMovement(row.Value("RECORD_ID").toLongLong(), row.Value("MMNUM").toLongLong());
        if (movement.isKept && !met.contains(movement.id)) {
            movement.lastBefore = LastRow(movement);
            TellRowsLeft(movement, row.Text("MMMAG"), mod_ovTools::ToBoolean(row.Value("MMLAM")));
        }
    }
}

} // namespace contract
