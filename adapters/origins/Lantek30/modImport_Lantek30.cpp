// Lantek Expert 30, a CAM software: a SQL Server database, LANTEK30 unless the setting Databasename names another.
// Inventory of the sheets into Quadrix; and, from one CAM database into another, products and remnants. The old
// database is that of the settings Old_CAM_Server, Old_CAM_Database, Old_CAM_Username, Old_CAM_Password and
// Old_CAM_Path, the current one that of the same settings with CAM in front. Tables and columns are those of the
// releases 30 to 44; that what is in progress lessens the stock is this system's own reading. Copying takes the columns
// that both databases have. Known gaps: customers and suppliers; documents.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/Cam.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/contract/write/Stock.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"
#include "sql/Transaction.h"

#include <QDir>
#include <QSet>

#include <algorithm>

using namespace contract;

namespace modImport_Lantek30 {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Lantek30");

// --- Source tables ------------------------------------------------------------------------------------------------

using cam::Products;
const QString Inventory = QStringLiteral("WWHH_IIVV_00000100");
const QString Operations = QStringLiteral("MMNN_PPOO_00000200");
const QString Values = QStringLiteral("DIS_SHPR_PPTT_00000200");
/// The identity of every table, which its database counts.
const QString Identity = QStringLiteral("RecID");
const QString Remnants =
    QStringLiteral("\rWHERE DIS_PClass = '51' AND\r      DIS_IsRemnant = 1 AND\r      DIS_CamQuan > 0");

// --- Connections --------------------------------------------------------------------------------------------------

/// The two CAM databases.
struct Cams {
    std::unique_ptr<ovConnection> current;
    QString error; ///< why they are not open
};

/// Opens the old CAM database as the source of the import, and the current one beside it. Tells when it cannot.
bool OpenCamConnections(Session& session, Cams& cams) {
    try {
        session.Source = qdxCamOpenConnection(session, "Old_CAM");
        cams.current = qdxCamOpenConnection(session, CurrentCam, CamAccess::Write);
        return true;
    } catch (const Error& error) {
        cams.error = error.Message();
        session.Person.Message("Impossibile connettersi a Lantek Expert 30!", Icon::Exclamation);
        return false;
    }
}

void CloseCamConnections(Session& session, Cams& cams) {
    session.Source.reset();
    cams.current.reset();
}

/// The connections for the lifetime of the object. In a trial, which takes back what it writes to Quadrix, the current
/// CAM database is not changed either.
class OpenCams {
public:
    explicit OpenCams(Session& session)
        : m_session(session) {
        if (!OpenCamConnections(session, m_cams)) {
            CloseCamConnections(session, m_cams);
            throw ImportError(m_cams.error);
        }
        if (session.Quadrix.InTransaction()) {
            m_trial.emplace(*m_cams.current);
        }
    }
    ~OpenCams() {
        m_trial.reset();
        CloseCamConnections(m_session, m_cams);
    }
    OpenCams(const OpenCams&) = delete;
    OpenCams& operator=(const OpenCams&) = delete;

    ovConnection& Current() { return *m_cams.current; }
    bool IsTrial() const { return m_trial.has_value(); }

private:
    Session& m_session;
    Cams m_cams;
    std::optional<Transaction> m_trial;
};

// --- Copies -------------------------------------------------------------------------------------------------------

/// Copies products from the old CAM database into the current one, with what belongs to them.
class Copier {
public:
    /// @param pattern of the files that are copied with a product, such as "*.bmp"
    Copier(ImportRun& run, OpenCams& cams, const QString& pattern);

    /// Copies a product that the current database lacks. @param parts also its operations and CAM values
    RowOutcome Product(const SourceRow& row, bool parts);
    int Copied() const { return m_copied; }

private:
    /// @param product as it was read
    QString OfProduct(const QString& keyColumn, const QVariant& product) const {
        return " WHERE " + keyColumn + " = " + LiteralOf(m_cams.Current(), product);
    }
    void Insert(const QString& table, const SourceRow& row);
    void CopyParts(const QString& table, const QString& keyColumn, const QVariant& product);
    void Remove(const QVariant& product, bool parts);
    void CopyFiles(const QString& product);
    QStringList CommonColumns(const QString& table);

    ImportRun& m_run;
    OpenCams& m_cams;
    QMultiHash<QString, QFileInfo> m_files; ///< by product, in upper case
    QString m_folder;                       ///< of the current database; empty: files stay where they are
    QHash<QString, QStringList> m_columns;  ///< that both databases have, by table
    int m_copied = 0;
};

Copier::Copier(ImportRun& run, OpenCams& cams, const QString& pattern)
    : m_run(run),
      m_cams(cams),
      m_folder(cams.IsTrial() ? QString() : CamProductsFolder(run.GetSession())) {
    const QString old = CamProductsFolder(run.GetSession(), "Old_CAM");
    if (!old.isEmpty() && !m_folder.isEmpty()) {
        for (const QFileInfo& file : QDir(old).entryInfoList({pattern}, QDir::Files, QDir::Name)) {
            m_files.insert(file.completeBaseName().toUpper(), file);
        }
    }
}

/// The columns that both databases have. One that the current database lacks is told once.
QStringList Copier::CommonColumns(const QString& table) {
    if (const auto known = m_columns.constFind(table); known != m_columns.cend()) {
        return *known;
    }
    QSet<QString> present;
    for (const ColumnInfo& column : m_cams.Current().GetColumns(table)) {
        present.insert(column.name.toUpper());
    }
    QStringList columns;
    for (const ColumnInfo& column : m_run.GetSession().SourceConnection().GetColumns(table)) {
        if (present.contains(column.name.toUpper())) {
            columns.append(column.name);
        } else {
            m_run.Log(
                QStringLiteral("COLONNA NON COPIATA: '%1.%2' manca nel database CAM attuale").arg(table, column.name));
        }
    }
    columns.removeIf([](const QString& column) { return column.compare(Identity, Qt::CaseInsensitive) == 0; });
    return *m_columns.insert(table, columns);
}

void Copier::Insert(const QString& table, const SourceRow& row) {
    const QStringList columns = CommonColumns(table);
    QStringList values;
    for (const QString& column : columns) {
        values.append(LiteralOf(m_cams.Current(), row.Value(column)));
    }
    m_cams.Current().Execute("INSERT INTO " + table + " (" + columns.join(", ") + ")\rVALUES (" + values.join(", ") +
                             ')');
}

void Copier::CopyParts(const QString& table, const QString& keyColumn, const QVariant& product) {
    ForEachChild(m_run.GetSession(), "SELECT * FROM " + table + OfProduct(keyColumn, product), table, keyColumn,
                 [&](const SourceRow& row) { Insert(table, row); });
}

/// Takes back a product that was copied by halves.
void Copier::Remove(const QVariant& product, bool parts) {
    m_cams.Current().Execute("DELETE FROM " + Products + OfProduct("PrdRef", product));
    if (parts) {
        m_cams.Current().Execute("DELETE FROM " + Operations + OfProduct("PrdRef", product));
        m_cams.Current().Execute("DELETE FROM " + Values + OfProduct("PartRef", product));
    }
}

/// A file that is there already is the newer one, and stays.
void Copier::CopyFiles(const QString& product) {
    for (const QFileInfo& file : m_files.values(product.toUpper())) {
        const QString target = QDir(m_folder).filePath(file.fileName());
        if (!QFileInfo::exists(target) && !QFile::copy(file.filePath(), target)) {
            m_run.Log(QStringLiteral("FILE NON COPIATO: '%1' in '%2'").arg(file.filePath(), m_folder));
        }
    }
}

RowOutcome Copier::Product(const SourceRow& row, bool parts) {
    const QVariant product = row.Value("PrdRef");
    if (m_cams.Current().ExecuteCommand("SELECT COUNT(*) FROM " + Products + OfProduct("PrdRef", product)) > 0) {
        return m_run.Skip("già nella banca dati CAM corrente");
    }
    try {
        Insert(Products, row);
        if (parts) {
            CopyParts(Operations, "PrdRef", product);
            CopyParts(Values, "PartRef", product);
        }
    } catch (...) {
        Remove(product, parts);
        throw;
    }
    CopyFiles(row.Text("PrdRef"));
    ++m_copied;
    return RowOutcome::Inserted;
}

QString AndCode(const ImportRun& run, const QString& first, const QString& singleCode) {
    return singleCode.isEmpty() ? QString() : QString(u'\r' + first + " PrdRef = " + run.Quoted(singleCode));
}

const Needs& ProdottiNeeds() {
    static const Needs needs{
        {}, {{Products, {"PrdRef", Identity}}, {Operations, {"PrdRef"}}, {Values, {"PartRef"}}}, {}};
    return needs;
}

/// Products that the current database has stay as they are; nothing is emptied.
void CopyProductsFromLantekToLantek(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CopyProductsFromLantekToLantek", singleCode);
    run.Guard([&] {
        run.Announce("Inizio copia prodotti da Lantek a Lantek");
        OpenCams cams(session);
        run.Preflight(ProdottiNeeds());
        Copier copier(run, cams, "*");
        const QString from = Products + AndCode(run, "WHERE", singleCode);
        run.Rows({"Prodotti Lantek", Products, "PrdRef", "SELECT COUNT(*) FROM " + from,
                  "SELECT * FROM " + from + "\rORDER BY RecID"},
                 [&](const SourceRow& row) { return copier.Product(row, true); });
        run.Complete("Prodotti copiati correttamente: " + QString::number(copier.Copied()));
    });
}

const Needs& SfridiNeeds() {
    static const Needs needs{{}, {{Products, {"PrdRef", "DIS_PClass", "DIS_IsRemnant", "DIS_CamQuan"}}}, {}};
    return needs;
}

void CopyScrapsFromLantekToLantek(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CopyScrapsFromLantekToLantek", singleCode);
    run.Guard([&] {
        run.Announce("Inizio copia ritagli da Lantek a Lantek");
        OpenCams cams(session);
        run.Preflight(SfridiNeeds());
        Copier copier(run, cams, "*.bmp");
        const QString from = Products + Remnants + AndCode(run, "AND", singleCode);
        const qint64 expected = session.SourceConnection().ExecuteCommand("SELECT COUNT(*) FROM " + from);
        run.Rows({"Ritagli Lantek", Products, "PrdRef", "SELECT COUNT(*) FROM " + from,
                  "SELECT * FROM " + from + "\rORDER BY PrdRef"},
                 [&](const SourceRow& row) { return copier.Product(row, false); });
        run.Complete("mhhh.. ne avevi da importare " + QString::number(expected) + "\n MA.. " +
                     "ne hai importati invece " + QString::number(copier.Copied()));
    });
}

// --- Emptying -----------------------------------------------------------------------------------------------------

const Needs& SvuotaNeeds() {
    static const Needs needs{{}, {{Products, {}}, {Operations, {}}, {Values, {}}}, {}};
    return needs;
}

/// Empties the current CAM database: all three tables, or none.
void SvuotaTabelleCam(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "SvuotaTabelleCam", singleCode);
    run.Guard([&] {
        const auto cam = qdxCamOpenConnection(session, CurrentCam, CamAccess::Write);
        cam->BeginTrans();
        QStringList emptied;
        for (const QString& table : {Products, Operations, Values}) {
            const qint64 rows = cam->ExecuteCommand("SELECT COUNT(*) FROM " + table);
            cam->Execute("TRUNCATE TABLE " + table);
            emptied.append(QStringLiteral("Tabella %1: svuotata, righe %2").arg(table).arg(rows));
        }
        if (session.Quadrix.InTransaction()) { // a trial
            cam->RollbackTrans();
        } else {
            cam->CommitTrans();
        }
        cam->CloseConnection();
        for (const QString& line : emptied) {
            run.Log(line);
        }
    });
}

// --- Inventory ----------------------------------------------------------------------------------------------------

/// Writes the stock of the sheets. The CAM counts a sheet once, whatever warehouses hold it.
class Stocktaker {
public:
    explicit Stocktaker(ImportRun& run)
        : m_run(run),
          m_writer(run) {
        m_writer.WritesAll();
    }

    RowOutcome Row(const SourceRow& row);
    void TellRowsLeft() { m_writer.TellRowsLeft(); }

private:
    double QuantityOf(const SourceRow& row);
    QString SheetOf(const SourceRow& row, bool isRemnant) const;

    ImportRun& m_run;
    StockWriter m_writer;
    QString m_last;     ///< product of the row before
    double m_taken = 0; ///< what is in progress, and still to be taken off
};

/// What the CAM counts, else what the warehouse does, less what is being cut.
double Stocktaker::QuantityOf(const SourceRow& row) {
    const QString product = row.Text("PrdRef");
    const bool again = product == m_last;
    m_run.Restores(m_last);
    m_run.Restores(m_taken);
    m_last = product;
    const double counted = NumberOf(row, "DIS_CamQuan");
    m_taken = again ? m_taken : NumberOf(row, "DIS_InProgress");
    double quantity = counted != 0 ? (again ? 0 : counted) : NumberOf(row, "StockQ");
    const double taken = std::min(m_taken, quantity);
    m_taken -= taken;
    return std::max(0.0, quantity - taken);
}

/// The article whose sheet a product is by now.
QString Stocktaker::SheetOf(const SourceRow& row, bool isRemnant) const {
    const bool tellsSheet =
        std::ranges::all_of(cam::SheetColumns, [&row](const QString& column) { return row.HasColumn(column); });
    return isRemnant && tellsSheet ? cam::SheetOfRemnant(m_run, row) : cam::ArticleOf(m_run, row.Text("PrdRef"));
}

RowOutcome Stocktaker::Row(const SourceRow& row) {
    const QString product = row.Text("PrdRef");
    const bool isRemnant = mod_ovTools::ToBoolean(row.Value("DIS_IsRemnant"));
    const KnownFormat format = FindFormat(m_run, product, [&] { return SheetOf(row, isRemnant); });
    const QString warehouse = TranslatedCode(m_run.GetSession(), "WWHH_IIVV", "WrhRef", row.Text("WrhRef"), "MAG_AZZ");
    StockLine line;
    line.quantity = QuantityOf(row);
    line.warehouse = warehouse.isEmpty() ? schema::defaults::Warehouse : warehouse;
    line.article = format.article.isEmpty() ? cam::ArticleOf(m_run, product) : format.article;
    const double price = NumberOf(row, "DIS_Price");
    line.price = price != 0 ? price : NumberOf(row, "CurCost");
    line.location = row.Text("LocDefault");
    line.sheet = true;
    line.format = format.code;
    if (isRemnant) {
        line.offcut = format.offcut.isEmpty() ? product : format.offcut;
    }
    line.length = NumberOf(row, "DIS_Length");
    line.width = NumberOf(row, "DIS_Width");
    return m_writer.Balance(line);
}

const Needs& InventarioNeeds() {
    static const Needs needs = [] {
        Needs all{{},
                  {{Products,
                    {"PrdRef", "DIS_PClass", "DIS_CamQuan", "DIS_InProgress", "DIS_Length", "DIS_Width",
                     "DIS_IsRemnant", "DIS_Price", "CurCost"},
                    cam::SheetColumns},
                   {Inventory, {"PrdRef", "StockQ", "WrhRef", "LocDefault"}}},
                  StockNeeds(),
                  {{.list = "WWHH_IIVV", .field = "WrhRef", .table = "MOV_MAR", .column = "MRMAG"}}};
        all.writes.push_back({"MOV_MAG", {"MMLAM"}});
        all.writes.push_back({"MOV_MAR", {"MRUBI", "MRFMT", "MRSFR", "MRLMX", "MRLMY"}});
        return all;
    }();
    return needs;
}

void ImportInventarioLantek30(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportInventarioLantek30", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione saldi di magazzino");
        run.Preflight(InventarioNeeds());
        Empty(run, reset, StockEmptying());
        Stocktaker stocktaker(run);
        const QString from = Products + " P\rLEFT JOIN " + Inventory +
                             " I ON I.PrdRef = P.PrdRef\rWHERE P.DIS_PClass = 51" +
                             (singleCode.isEmpty() ? QString() : QString(" AND P.PrdRef = " + run.Quoted(singleCode)));
        const bool toTheEnd =
            run.Rows({"Saldi di magazzino",
                      Products,
                      "PrdRef",
                      "SELECT COUNT(*) FROM " + from,
                      "SELECT P.*, I.StockQ, I.WrhRef, I.LocDefault FROM " + from + "\rORDER BY P.PrdRef, I.WrhRef",
                      {"PrdRef"}}, // what the CAM counts is shared out among the warehouses
                     [&](const SourceRow& row) { return stocktaker.Row(row); });
        if (toTheEnd) {
            stocktaker.TellRowsLeft();
        }
        run.Complete("Saldi di magazzino importati correttamente!");
    });
}

/// A procedure that works on the two CAM databases of the settings, whatever the origin's source is.
Procedure BetweenCams(std::optional<Button> button, const QString& name, decltype(Procedure::run) run, Needs needs,
                      const QString& confirmation) {
    return {.button = button,
            .name = name,
            .run = std::move(run),
            .needs = std::move(needs),
            .confirmation = confirmation,
            .opensSource = false,
            .asksReset = false};
}

Procedure Emptying() {
    Procedure emptying = BetweenCams({}, "SvuotaTabelleCam", SvuotaTabelleCam, SvuotaNeeds(),
                                     "Attenzione: desideri svuotare anche il database del software CAM collegato?");
    emptying.takesCode = false;
    emptying.destroys =
        QStringLiteral("Si svuota il database CAM: tutte le righe di %1, %2 e %3").arg(Products, Operations, Values);
    return emptying;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Lantek Expert 30",
        Module,
        {"SQL Server", sourceSettings::Server("LANTEK30")},
        Buttons("NNYNN---", {{Button::Dis, "Sposta Ritagli"}}),
        Shown::Keep,
        {
            {Button::Saldi, "ImportInventarioLantek30", ImportInventarioLantek30, InventarioNeeds(), StockEmptying()},
            BetweenCams(Button::Dis, "CopyScrapsFromLantekToLantek", CopyScrapsFromLantekToLantek, SfridiNeeds(),
                        "Spostare i ritagli?"),
            BetweenCams({}, "CopyProductsFromLantekToLantek", CopyProductsFromLantekToLantek, ProdottiNeeds(),
                        "Copiare i prodotti?"),
            Emptying(),
        },
    };
    return origin;
}

} // namespace modImport_Lantek30
