#include "app/report/names.h"

#include "core/italianText.h"
#include "sql/mod_ovTools.h"

#include <array>

namespace proof {

namespace {

/// A table as people know it.
struct Known {
    const char* table;
    const char* title;
    const char* tells = "";  ///< columns that tell its rows; empty: its key
    const char* link = "";   ///< column with the RECORD_ID of the row that a row belongs to
    const char* parent = ""; ///< table of that one
};

constexpr std::array Tables{
    Known{"CON_TRO", "Controparti", "CDCON CORAS"},
    Known{"CON_SED", "Sedi e destinazioni", "CDCON CDSED SERAS"},
    Known{"CON_RIF", "Contatti", "CDCON RFNOM"},
    Known{"NUM_TEL", "Telefoni", "TBNAM TBKEY NRTEL"},
    Known{"IND_WEB", "Indirizzi web e posta", "TBNAM TBKEY WBIND"},
    Known{"BAN_CHE", "Banche", "CDBAN BADES"},
    Known{"DIC_INT", "Lettere d'intento", "DICON DIANN DINUM"},
    Known{"AGE_NTI", "Agenti"},
    Known{"ART_ICO", "Articoli", "CDART ARDES"},
    Known{"ART_FOR", "Fornitori degli articoli"},
    Known{"ART_COD", "Codici alternativi"},
    Known{"ART_FMT", "Formati di lamiera"},
    Known{"ART_SAL", "Saldi"},
    Known{"ART_MAG", "Articoli per magazzino"},
    Known{"MAG_AZZ", "Magazzini"},
    Known{"UBI_MAG", "Ubicazioni"},
    Known{"UBI_ART", "Ubicazioni degli articoli"},
    Known{"MOV_MAG", "Movimenti di magazzino", "MMNUM MMANN"},
    Known{"MOV_MAR", "Righe dei movimenti", "MRNUM MRART", "MRTES", "MOV_MAG"},
    Known{"LIS_TES", "Listini", "CDLIS LTTIP"},
    Known{"LIS_ART", "Articoli dei listini", "CDLIS CDART LAINV"},
    Known{"LIS_ARS", "Prezzi dei listini", "SCQTA", "IDLSD", "LIS_ART"},
    Known{"LIS_LAV", "Listini di lavorazione", "CDLAV CDART CDFOR LLINV"},
    Known{"LIS_LAS", "Prezzi di lavorazione", "SCQTA", "IDLSD", "LIS_LAV"},
    Known{"PRO_MOZ", "Promozioni"},
    Known{"STO_PRZ", "Storico dei prezzi"},
    Known{"STO_COS", "Storico dei costi"},
    Known{"DIS_BAS", "Distinte base", "DBART DBREV"},
    Known{"DIS_COM", "Componenti", "DCPOS DCART", "IDDIS", "DIS_BAS"},
    Known{"DIS_FAS", "Fasi", "DLSEQ DLLAV", "IDDIS", "DIS_BAS"},
    Known{"ORD_PRO", "Ordini di produzione"},
    Known{"DOC_VEN", "Documenti di vendita", "DTCAU DTNUM DTANN"},
    Known{"DOC_VER", "Righe di vendita", "DRNUM DRART", "IDTES", "DOC_VEN"},
    Known{"DOC_ACQ", "Documenti di acquisto", "DTCAU DTNUM DTANN"},
    Known{"DOC_ACR", "Righe di acquisto", "DRNUM DRART", "IDTES", "DOC_ACQ"},
    Known{"DOC_CTL", "Documenti di conto lavoro", "DTCAU DTNUM DTANN"},
    Known{"DOC_CTR", "Righe di conto lavoro", "DRNUM DRART", "IDTES", "DOC_CTL"},
    Known{"DOC_ICO", "Documenti interni", "DTCAU DTNUM DTANN"},
    Known{"DOC_ICR", "Righe interne", "DRNUM DRART", "IDTES", "DOC_ICO"},
    Known{"PIA_CON", "Piano dei conti", "CDCNT PCDES"},
    Known{"MAS_TRI", "Mastri", "CDMAS MCDES"},
    Known{"CON_CON", "Conti", "CDCNT CCDES"},
    Known{"TAB_IVA", "Codici IVA"},
    Known{"TAB_MOP", "Modi di pagamento"},
    Known{"TAB_MPR", "Rate dei pagamenti"},
    Known{"TAB_MPT", "Tipi di pagamento"},
    Known{"TAB_NAZ", "Nazioni"},
    Known{"TAB_LNG", "Lingue"},
    Known{"TAB_UMS", "Unità di misura"},
    Known{"TAB_VAL", "Valute"},
    Known{"TAB_MAT", "Materiali"},
    Known{"TAB_PRF", "Profili"},
    Known{"FAM_PRO", "Famiglie"},
    Known{"SYS_LNG", "Testi in lingua", "LNTBL LNKEY LNFLD LNLNG"},
    Known{"SYS_ATT", "Allegati", "ATTBL ATKEY ATNAM"},
    Known{"FLD_VAL", "Attributi liberi", "FLTAB FLKEY FLFLD"},
    Known{"IMA_GES", "Immagini"},
};

struct KnownColumn {
    const char* column;
    const char* title;
};

constexpr std::array Columns{
    KnownColumn{"DTIMP", "Imponibile"},
    KnownColumn{"DTIVA", "Imposta"},
    KnownColumn{"DTTOT", "Totale"},
    KnownColumn{"DTMER", "Merce"},
    KnownColumn{"DTDAT", "Data"},
    KnownColumn{"DTCON", "Controparte"},
    KnownColumn{"DTRAS", "Intestatario"},
    KnownColumn{"DTCAU", "Causale"},
    KnownColumn{"DTNUM", "Numero"},
    KnownColumn{"DTANN", "Anno"},
    KnownColumn{"DTSTA", "Stato"},
    KnownColumn{"DRART", "Articolo"},
    KnownColumn{"DRDES", "Descrizione"},
    KnownColumn{"DRQTR", "Quantità"},
    KnownColumn{"DRQTE", "Evaso"},
    KnownColumn{"DRPRZ", "Prezzo"},
    KnownColumn{"DRTOT", "Importo"},
    KnownColumn{"DRIVA", "Codice IVA"},
    KnownColumn{"DRUMS", "Unità di misura"},
    KnownColumn{"DRSCO", "Sconto"},
    KnownColumn{"DRNUM", "Riga"},
    KnownColumn{"MRQTA", "Quantità"},
    KnownColumn{"MRVAL", "Valore"},
    KnownColumn{"MRPRZ", "Prezzo"},
    KnownColumn{"MRART", "Articolo"},
    KnownColumn{"MRMAG", "Magazzino"},
    KnownColumn{"SCPRZ", "Prezzo"},
    KnownColumn{"SCCOS", "Costo"},
    KnownColumn{"SCQTA", "Fino a quantità"},
    KnownColumn{"DCQTA", "Quantità"},
    KnownColumn{"DCART", "Componente"},
    KnownColumn{"DBART", "Articolo"},
    KnownColumn{"CDART", "Articolo"},
    KnownColumn{"ARDES", "Descrizione"},
    KnownColumn{"ARCOS", "Costo"},
    KnownColumn{"ARPRZ", "Prezzo"},
    KnownColumn{"ARUMS", "Unità di misura"},
    KnownColumn{"ARIVA", "Codice IVA"},
    KnownColumn{"CDCON", "Controparte"},
    KnownColumn{"CORAS", "Ragione sociale"},
    KnownColumn{"COIVA", "Partita IVA"},
    KnownColumn{"COFIS", "Codice fiscale"},
    KnownColumn{"COIND", "Indirizzo"},
    KnownColumn{"COCIT", "Città"},
    KnownColumn{"COCAP", "CAP"},
    KnownColumn{"COPRO", "Provincia"},
    KnownColumn{"COMOP", "Pagamento"},
    KnownColumn{"COFID", "Fido"},
    KnownColumn{"CDCNT", "Conto"},
    KnownColumn{"PCDES", "Descrizione"},
    KnownColumn{"CCDES", "Descrizione"},
    KnownColumn{"MCDES", "Descrizione"},
    KnownColumn{"CDLIS", "Listino"},
    KnownColumn{"LAINV", "Valido dal"},
    KnownColumn{"LNTXT", "Testo"},
};

const Known* Find(const QString& table) {
    const auto known = std::find_if(Tables.begin(), Tables.end(),
                                    [&table](const Known& each) { return table == QLatin1String(each.table); });
    return known == Tables.end() ? nullptr : known;
}

QStringList Words(const char* words) { return QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts); }

/// The columns that tell a row of a table.
QStringList TellingColumns(const schema::Table& table, const Known* known) {
    if (known != nullptr && *known->tells != '\0') {
        return Words(known->tells);
    }
    QStringList columns = table.key;
    for (const schema::Column& column : table.columns) {
        if (table.key.isEmpty() && column.essential) {
            columns.append(column.name);
        }
    }
    return columns;
}

QString Parent(Session& session, const Known& known, const QVariant& id) {
    const schema::Table* table = schema::FindTable(QString::fromLatin1(known.parent));
    if (table == nullptr || id.isNull()) {
        return {};
    }
    const Recordset rows = session.Quadrix.ExecuteWC(u"SELECT * FROM " + session.Quadrix.GetFullTableName(table->name) +
                                                     u" WHERE RECORD_ID = " + QString::number(id.toLongLong()));
    return rows.Eof() ? QString() : RowTitle(session, *table, [&rows](const QString& column) {
        return rows.HasColumn(column) ? rows.Value(column) : QVariant();
    });
}

} // namespace

QString TableTitle(const QString& table) {
    const Known* known = Find(table);
    return known == nullptr ? table : QString::fromUtf8(known->title);
}

QString ColumnTitle(const QString& column) {
    const auto known = std::find_if(Columns.begin(), Columns.end(), [&column](const KnownColumn& each) {
        return column == QLatin1String(each.column);
    });
    return known == Columns.end() ? column : QString::fromUtf8(known->title);
}

QString Shown(const schema::Column* column, const QVariant& value) {
    if (value.isNull()) {
        return {};
    }
    const DataType type = column == nullptr ? DataType::NVarChar : column->type;
    if (type == DataType::Double) {
        const auto number = mod_ovTools::ReadNumber(value);
        return number ? italian::Locale().toString(*number, 'f', QLocale::FloatingPointShortest)
                      : mod_ovTools::ToText(value);
    }
    if (type == DataType::Bit) {
        return mod_ovTools::ToBoolean(value) ? QStringLiteral("Sì") : QStringLiteral("No");
    }
    if (type == DataType::DateTime) {
        const auto day = mod_ovTools::ReadDate(value);
        const bool isMidnight = day && day->time() == QTime(0, 0);
        return !day         ? mod_ovTools::ToText(value)
               : isMidnight ? italian::DayText(day->date())
                            : italian::MomentText(*day);
    }
    return type == DataType::Object ? QStringLiteral("(file)") : mod_ovTools::ToText(value);
}

QString RowTitle(Session& session, const schema::Table& table, const ValueOf& value) {
    const Known* known = Find(table.name);
    QStringList parts;
    for (const QString& column : TellingColumns(table, known)) {
        const QString part = Shown(table.FindColumn(column), value(column)).trimmed();
        parts += part.isEmpty() ? QStringList() : QStringList(part);
    }
    const QString own =
        parts.isEmpty() ? QStringLiteral("RECORD_ID %1").arg(value("RECORD_ID").toLongLong()) : parts.join(u' ');
    const bool hasParent = known != nullptr && *known->link != '\0';
    const QString above = hasParent ? Parent(session, *known, value(QString::fromLatin1(known->link))) : QString();
    return above.isEmpty() ? own : QString(above + QStringLiteral(" - ") + own);
}

} // namespace proof
