// Articles of Arca Evolution: AR holds a row for each article, and its companions the units, the prices, the codes at
// counterparties, other codes and the texts of other languages.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Attachment.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"

#include <QDir>

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Misure = QStringLiteral("ARARMisura");
const QString CodiciCf = QStringLiteral("ARCodCF");
const QString AliasTable = QStringLiteral("ARAlias");
const QString Lingue = QStringLiteral("ARLingua");
const QString Ubicazioni = QStringLiteral("MGUbicazione");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// An article that heads a bill, of a kit or a phantom, is a product.
Rule HeadsBill() {
    return {"\"PF\" when one of them is set, else \"CM\"", [](const RuleInput& input) {
                const bool heads = std::any_of(input.columns.begin(), input.columns.end(), [&](const QString& column) {
                    return mod_ovTools::ToBoolean(input.row.Value(column));
                });
                return RuleValue(heads ? "PF" : "CM");
            }};
}

/// The point at which an article is ordered again: its minimum stock, for the articles that are reordered below it.
Rule ReorderPoint() {
    return {"the second when the first is 2, else 0", [](const RuleInput& input) {
                constexpr double belowMinimum = 2;
                return RuleValue(
                    NumberOf(input.row, "MrpPuntoRiordino") == belowMinimum ? NumberOf(input.row, "ScortaMinima") : 0);
            }};
}

const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        Ar,
        {
            {"CDEXT", "Cd_AR", Text()},
            {"IDEST", "Id_AR", Text()},
            {"DTINS", "TimeIns", NotBlank(AsRead())},
            {"ARANN", "Obsoleto", Flag()},
            {"ARDES", "Descrizione", First(100)},
            {"ARDE2", "DescrizioneBreve", First(100)},
            {"ARCDR", "Descrizione", CodeAndText(100)},
            {"ARNOT", "Note_AR", Text()},
            {"AROBS", "Cd_ARStato", NotBlank(Text())},
            {"ARCLA", "DBFantasma, DBKit", HeadsBill()},
            {"ARTIP", "Cd_ARClasse1", Translated(Ar, "Cd_ARClasse1")},
            {"ARFAM", "Cd_ARGruppo1", Translated(Ar, "Cd_ARGruppo1")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(false)},
            {"ARIVA", "Cd_Aliquota_V", VatCode(Ar, "Cd_Aliquota_V")},
            {"ARCAC", "Cd_CGConto_VI", NotBlank(Text())},
            {"ARMAG", "Fittizio", Not(Flag())},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "ScortaMinima", RoundedTo(6)},
            {"ARSMX", "ScortaMassima", RoundedTo(6)},
            {"ARPUR", "MrpPuntoRiordino, ScortaMinima", ReorderPoint()},
            {"ARQMR", "LottoMinimo", RoundedTo(6)},
            {"ARLOR", "LottoRiordino", RoundedTo(6)},
            {"ARGGA", "MrpGiorniRiordino", RoundedTo(0)},
            // Arca Evolution measures in metres, Quadrix in millimetres.
            {"ARDMX", "LunghezzaMks", Times(1000)},
            {"ARDMY", "LarghezzaMks", Times(1000)},
            {"ARDMZ", "AltezzaMks", Times(1000)},
            {"ARVOL", "VolumeMks", RoundedTo(6)},
            {"ARPSN", "PesoNettoMks, PesoNetto", FirstNotZero()},
            {"ARPSL", "PesoLordoMks, PesoLordo", FirstNotZero()},
            {"ARCOS", "CostoStandard", RoundedTo(6)},
            {"ARSCO", "Sconto", Discount(1)},
            {"ARSC2", "Sconto", Discount(2)},
            {"ARSC3", "Sconto", Discount(3)},
        },
    };
    return mapping;
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// Files of a folder by the code that they are named after, in upper case.
using FilesByCode = QMultiHash<QString, QString>;

FilesByCode FilesIn(const QString& folder, const QString& pattern) {
    FilesByCode files;
    if (!folder.isEmpty()) {
        for (const QFileInfo& file : QDir(folder).entryInfoList({pattern}, QDir::Files, QDir::Name)) {
            files.insert(file.completeBaseName().toUpper(), file.filePath());
        }
    }
    return files;
}

/// What the settings say to the import of articles.
struct ArticleSettings {
    bool ownUnits;     ///< units come from ARARMisura
    QString condition; ///< on AR; empty for none
    FilesByCode attachments;
    bool logAttachments;
    FilesByCode notes;
};

ArticleSettings ReadSettings(Session& session) {
    const QString section = QStringLiteral("IMPORT");
    const auto folder = [&](const QString& key) {
        return modMain::GetAppConfig(session, section, key, "").replace(u'\\', u'/');
    };
    const QString condition = modMain::GetAppConfig(session, section, "WhereArticoli", "0");
    return {modMain::IsAppConfigOn(session, section, "ARARMisura", "1"), condition == "0" ? QString() : condition,
            FilesIn(folder("SourcePathAttachArticoli"), "*"),
            modMain::IsAppConfigOn(session, section, "DebugAttach", "0"),
            FilesIn(folder("SourcePathFileDBCNote"), "*.txt")};
}

/// The text of a note file: UTF-8, or the code page of Windows when it is none.
QString ReadNote(const QString& path) {
    const QByteArray bytes = ovDatabase::FileToBinary(path);
    QByteArray text;
    return CodePage("UTF-8").AppendUtf8(bytes, text) ? QString::fromUtf8(text) : DecodeText(bytes, CodePage());
}

QString UnitOf(Session& session, const QString& unit) {
    const QString code = modImport::GetNewCode(session, Ar, "Cd_ARMisura", unit, true);
    return code.isEmpty() ? unit.toUpper() : code;
}

/// Writes what the importer of an article needs beyond its row.
class Importer {
public:
    explicit Importer(ImportRun& run)
        : m_run(run),
          m_settings(ReadSettings(run.GetSession())) {}

    RowOutcome Row(const SourceRow& row);
    const ArticleSettings& Settings() const { return m_settings; }

private:
    void SetUnits(const SourceRow& row, TargetRow& target);
    void SetPrice(const SourceRow& row, TargetRow& target);
    void SetNote(const SourceRow& row, TargetRow& target);
    void WriteCodes(const QString& sourceCode, const QString& article, double cost);
    void WriteSupplier(const SourceRow& row, const QString& article, double cost, bool preferred);
    void WriteCustomerCode(const SourceRow& row, const QString& article);
    void WriteLanguages(const QString& sourceCode, const QString& article);
    void Attach(const QString& sourceCode, const QString& article);
    QString OfArticle(const QString& table, const QString& sourceCode, const QString& order) const {
        return QStringLiteral("SELECT * FROM %1\rWHERE Cd_AR = %2\rORDER BY %3")
            .arg(table, m_run.Quoted(sourceCode), order);
    }

    ImportRun& m_run;
    ArticleSettings m_settings;
};

/// The unit of the article and a second one, with the units of sales and purchases. Further ones have no place in
/// Quadrix and are told.
void Importer::SetUnits(const SourceRow& row, TargetRow& target) {
    Session& session = m_run.GetSession();
    QString unit = row.HasColumn("Cd_ARMisura") ? row.Text("Cd_ARMisura") : QString();
    if (m_settings.ownUnits) {
        bool second = false;
        ForEachChild(session, OfArticle(Misure, row.Text("Cd_AR"), "DefaultMisura DESC, Cd_ARMisura"), Misure,
                     "Cd_AR, Cd_ARMisura", [&](const SourceRow& measure) {
                         const QString code = measure.Text("Cd_ARMisura");
                         const QString kind = measure.Text("TipoARMisura").toUpper();
                         if (mod_ovTools::ToBoolean(measure.Value("DefaultMisura"))) {
                             unit = code;
                         } else if (!second) {
                             second = true;
                             target.Set("ARUM2", UnitOf(session, code));
                             target.Set("ARCOE", NumberOf(measure, "UMFatt"));
                         } else {
                             m_run.Log(QStringLiteral("UNITÀ DI MISURA ULTERIORE: %1: '%2' (fattore %3) non ha posto "
                                                      "nell'articolo, che ne tiene due")
                                           .arg(m_run.RowKey(), code, measure.Text("UMFatt")));
                         }
                         if (kind == "V" || kind == "E") {
                             target.Set("ARUMV", UnitOf(session, code));
                         }
                         if (kind == "A" || kind == "E") {
                             target.Set("ARUMP", UnitOf(session, code));
                         }
                     });
    }
    target.Set("ARUMS", unit.isEmpty() ? schema::defaults::Unit : UnitOf(session, unit));
}

/// The sale price: of the list of prices (kind 1, else 0) that was published last.
void Importer::SetPrice(const SourceRow& row, TargetRow& target) {
    double price = 0;
    {
        const Recordset found = m_run.GetSession().SourceConnection().ExecuteWC(
            "SELECT A.Prezzo FROM LSArticolo A\rJOIN LSRevisione R ON R.Id_LSRevisione = A.Id_LSRevisione\r"
            "JOIN LS L ON L.Cd_LS = R.Cd_LS\rWHERE A.Cd_AR = " +
            m_run.Quoted(row.Text("Cd_AR")) +
            " AND L.TipoLS IN (0, 1)\rORDER BY L.TipoLS DESC, R.DataPubblicazione DESC");
        price = found.Eof() ? 0 : NumberOf(SourceRow(found), "Prezzo");
    }
    target.Set("ARPRZ", price);
    target.Set("ARRIC", MarkUpOf(price, NumberOf(row, "CostoStandard")));
}

/// A note file of the article follows the note of its row.
void Importer::SetNote(const SourceRow& row, TargetRow& target) {
    const QString file = m_settings.notes.value(row.Text("Cd_AR").toUpper());
    if (!file.isEmpty()) {
        const QString own = row.Text("Note_AR");
        target.Set("ARNOT", QString(own + (own.isEmpty() ? "" : "\n") + ReadNote(file).trimmed()));
    }
}

void Importer::WriteSupplier(const SourceRow& row, const QString& article, double cost, bool preferred) {
    const ArticleWriter writer(m_run);
    const QString supplier = LookUp(m_run.GetSession(), "CON_TRO", "COFGE", row.Text("Cd_CF"), "CDCON");
    if (supplier.isEmpty()) {
        m_run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(m_run.RowKey(), row.Text("Cd_CF")));
        return;
    }
    writer.Link(article, supplier, cost, preferred);
    if (!row.IsBlank("CodiceAlternativo")) {
        writer.CodeAtCounterparty(article, row.Text("CodiceAlternativo"), supplier);
    }
}

void Importer::WriteCustomerCode(const SourceRow& row, const QString& article) {
    const QString customer = LookUp(m_run.GetSession(), "CON_TRO", "COCGE", row.Text("Cd_CF"), "CDCON");
    if (customer.isEmpty()) {
        m_run.Log(QStringLiteral("CLIENTE NON TROVATO: %1: '%2'").arg(m_run.RowKey(), row.Text("Cd_CF")));
    } else if (!row.IsBlank("CodiceAlternativo")) {
        ArticleWriter(m_run).CodeAtCounterparty(article, row.Text("CodiceAlternativo"), customer);
    }
}

/// Suppliers and codes at counterparties, then the other codes. The first supplier is the preferred one.
void Importer::WriteCodes(const QString& sourceCode, const QString& article, double cost) {
    Session& session = m_run.GetSession();
    bool first = true;
    ForEachChild(session, OfArticle(CodiciCf, sourceCode, "FornitorePreferenziale DESC, Cd_CF"), CodiciCf,
                 "Cd_AR, Cd_CF", [&](const SourceRow& row) {
                     if (row.Text("Cd_CF").startsWith(u'F', Qt::CaseInsensitive)) {
                         WriteSupplier(row, article, cost, std::exchange(first, false));
                     } else {
                         WriteCustomerCode(row, article);
                     }
                 });
    ForEachChild(session, OfArticle(AliasTable, sourceCode, "Riga"), AliasTable, "Cd_AR, Riga",
                 [&](const SourceRow& row) {
                     if (!row.IsBlank("Alias")) {
                         ArticleWriter(m_run).InternalCode(article, row.Text("Alias"));
                     }
                 });
}

void Importer::WriteLanguages(const QString& sourceCode, const QString& article) {
    Session& session = m_run.GetSession();
    ForEachChild(
        session, OfArticle(Lingue, sourceCode, "Id_Lingua"), Lingue, "Cd_AR, Id_Lingua", [&](const SourceRow& row) {
            const QString language = LanguageOf(session, row.Text("Id_Lingua"));
            if (language.isEmpty()) {
                m_run.Log(QStringLiteral("LINGUA NON TROVATA: %1: '%2'").arg(m_run.RowKey(), row.Text("Id_Lingua")));
            } else if (!row.IsBlank("Descrizione")) {
                ArticleWriter(m_run).Text(article, "ARDES", row.Text("Descrizione"), language);
            }
        });
}

void Importer::Attach(const QString& sourceCode, const QString& article) {
    QStringList files = m_settings.attachments.values(sourceCode.toUpper());
    files.sort();
    for (const QString& file : files) {
        contract::WriteAttachment(m_run, {"ART_ICO", article, file});
        if (m_settings.logAttachments) {
            m_run.Log(QStringLiteral("ALLEGATO: %1: '%2'").arg(article, file));
        }
    }
}

RowOutcome Importer::Row(const SourceRow& row) {
    const ArticleWriter writer(m_run);
    const QString sourceCode = row.Text("Cd_AR");
    const Facts facts{writer.CodeOf(Ar, "Cd_AR", sourceCode)};
    const RowOutcome outcome = writer.Write(Articoli(), row, facts, [&](TargetRow& target) {
        SetUnits(row, target);
        SetPrice(row, target);
        SetNote(row, target);
    });
    writer.Texts(facts.code, row.Text("Descrizione"));
    WriteLanguages(sourceCode, facts.code);
    WriteCodes(sourceCode, facts.code, NumberOf(row, "CostoStandard"));
    Attach(sourceCode, facts.code);
    return outcome;
}

// --- Locations ----------------------------------------------------------------------------------------------------

/// The locations of the warehouses, for the articles to be put into.
RowOutcome ImportUbicazione(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString warehouse = TranslatedCode(session, "MG", "Cd_MG", row.Text("Cd_MG"), "MAG_AZZ");
    const QString code = warehouse.isEmpty() ? schema::defaults::Warehouse : warehouse;
    const QString location = row.Text("Cd_MGUbicazione");
    if (IdWhere(session, "UBI_MAG", Equals(session, "CDMAG", code) + " AND " + Equals(session, "CDUBI", location)) !=
        0) {
        return run.Skip("ubicazione già presente");
    }
    TargetRow target(run, "UBI_MAG");
    target.Set("CDMAG", code);
    target.Set("CDUBI", location);
    target.Set("UBDES", location);
    target.Insert();
    return RowOutcome::Inserted;
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()},
                  {{Misure, {"Cd_AR", "Cd_ARMisura", "UMFatt", "DefaultMisura", "TipoARMisura"}},
                   {"LS", {"Cd_LS", "TipoLS"}},
                   {"LSRevisione", {"Id_LSRevisione", "Cd_LS", "DataPubblicazione"}},
                   {"LSArticolo", {"Id_LSRevisione", "Cd_AR", "Prezzo"}},
                   {CodiciCf, {"Cd_AR", "Cd_CF", "CodiceAlternativo", "FornitorePreferenziale"}},
                   {AliasTable, {"Cd_AR", "Riga", "Alias"}},
                   {Lingue, {"Cd_AR", "Id_Lingua", "Descrizione"}},
                   {Ubicazioni, {"Cd_MG", "Cd_MGUbicazione"}}},
                  ArticleNeeds()};
        all.writes.push_back({"ART_ICO", {"ARUMS", "ARUM2", "ARCOE", "ARUMP", "ARUMV", "ARPRZ", "ARRIC"}});
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        all.writes.push_back({"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}});
        const std::vector<TableNeed> attachments = AttachmentNeeds();
        all.writes.insert(all.writes.end(), attachments.begin(), attachments.end());
        return all;
    }();
    return needs;
}

void ImportArticoliArcaEvolution(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliArcaEvolution", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        Importer importer(run);
        Empty(run, reset, ArticleEmptying());
        Empty(run, reset, AttachmentEmptying("ART_ICO"));
        QStringList conditions;
        if (!importer.Settings().condition.isEmpty()) {
            conditions.append(u'(' + importer.Settings().condition + u')');
        }
        if (!singleCode.isEmpty()) {
            conditions.append("Cd_AR = " + run.Quoted(singleCode));
        }
        const QString where = conditions.isEmpty() ? QString() : QString("\rWHERE " + conditions.join(" AND "));
        bool toTheEnd = run.Rows({"Articoli", Ar, "Cd_AR", "SELECT COUNT(*) FROM AR" + where,
                                  "SELECT * FROM AR" + where + "\rORDER BY Cd_AR"},
                                 [&](const SourceRow& row) { return importer.Row(row); });
        if (toTheEnd && !run.IsSingle()) {
            run.Rows({"Ubicazioni", Ubicazioni, "Cd_MG, Cd_MGUbicazione", "SELECT COUNT(*) FROM MGUbicazione",
                      "SELECT * FROM MGUbicazione\rORDER BY Cd_MG, Cd_MGUbicazione"},
                     [&](const SourceRow& row) { return ImportUbicazione(run, row); });
        }
        run.Complete("Articoli importati correttamente!");
    });
}

} // namespace modImport_ArcaEvolution
