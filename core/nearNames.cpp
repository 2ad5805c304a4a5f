#include "core/nearNames.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <vector>

namespace {

constexpr qsizetype MostNames = 3;

/// Number of characters to add, drop or change to get from one text to the other.
qsizetype Distance(const QString& from, const QString& to) {
    std::vector<qsizetype> row(static_cast<size_t>(to.size()) + 1);
    for (size_t column = 0; column < row.size(); ++column) {
        row[column] = static_cast<qsizetype>(column);
    }
    for (qsizetype line = 0; line < from.size(); ++line) {
        qsizetype diagonal = row[0];
        row[0] = line + 1;
        for (size_t column = 1; column < row.size(); ++column) {
            const bool same = from[line] == to[static_cast<qsizetype>(column) - 1];
            const qsizetype best = std::min({row[column] + 1, row[column - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = std::exchange(row[column], best);
        }
    }
    return row.back();
}

/// A name that holds what was written, or the other way round, is as near as one wrong character.
qsizetype Remoteness(const QString& name, const QString& candidate) {
    const bool holds =
        !name.isEmpty() && (candidate.contains(name) || (name.contains(candidate) && candidate.size() > 1));
    const qsizetype distance = Distance(name, candidate);
    return holds ? std::min<qsizetype>(distance, 1) : distance;
}

/// What the words of names are often cut to.
const QHash<QString, QString>& Words() {
    static const QHash<QString, QString> words{
        {"AG", "AGENTE"},         {"ANN", "ANNO"},        {"ART", "ARTICOLO"},     {"CAT", "CATEGORIA"},
        {"CDA", "CODICE"},        {"CD", "CODICE"},       {"CIT", "CITTA"},        {"CLI", "CLIENTE"},
        {"COD", "CODICE"},        {"COM", "COMUNE"},      {"CONS", "CONSEGNA"},    {"COS", "COSTO"},
        {"DAT", "DATA"},          {"DT", "DATA"},         {"DES", "DESCRIZIONE"},  {"DESC", "DESCRIZIONE"},
        {"DESCR", "DESCRIZIONE"}, {"DOC", "DOCUMENTO"},   {"FAM", "FAMIGLIA"},     {"FIS", "FISCALE"},
        {"FISC", "FISCALE"},      {"FLG", "FLAG"},        {"FOR", "FORNITORE"},    {"FORN", "FORNITORE"},
        {"IND", "INDIRIZZO"},     {"INDIR", "INDIRIZZO"}, {"LIS", "LISTINO"},      {"LOC", "LOCALITA"},
        {"MAG", "MAGAZZINO"},     {"MAIL", "EMAIL"},      {"MIS", "MISURA"},       {"NAZ", "NAZIONE"},
        {"NR", "NUMERO"},         {"NUM", "NUMERO"},      {"ORD", "ORDINE"},       {"PAG", "PAGAMENTO"},
        {"PAGAM", "PAGAMENTO"},   {"PART", "PARTITA"},    {"P", "PARTITA"},        {"PIVA", "PARTITAIVA"},
        {"PREZ", "PREZZO"},       {"PRZ", "PREZZO"},      {"PROG", "PROGRESSIVO"}, {"PROV", "PROVINCIA"},
        {"QT", "QUANTITA"},       {"QTA", "QUANTITA"},    {"RAG", "RAGIONE"},      {"RIF", "RIFERIMENTO"},
        {"RIG", "RIGA"},          {"SC", "SCONTO"},       {"SCO", "SCONTO"},       {"SOC", "SOCIALE"},
        {"TEL", "TELEFONO"},      {"TIP", "TIPO"},        {"UBI", "UBICAZIONE"},   {"UM", "UNITAMISURA"},
        {"UNI", "UNITA"},         {"VAL", "VALUTA"},
    };
    return words;
}

/// Words and beginnings of words that stand in names which are run together of several, beside those of `Words`.
const QHash<QString, QString>& FurtherPieces() {
    static const QHash<QString, QString> pieces{
        {"ABI", "ABI"},     {"ACQ", "ACQUISTO"}, {"AGE", "AGENTE"}, {"ALI", "ALIQUOTA"},  {"BAN", "BANCA"},
        {"BAR", "BARRE"},   {"CAB", "CAB"},      {"CAP", "CAP"},    {"CEL", "CELLULARE"}, {"CLA", "CLASSE"},
        {"CON", "CONTO"},   {"COR", "CORRENTE"}, {"DIV", "DIVISA"}, {"ESE", "ESENZIONE"}, {"FAT", "FATTURA"},
        {"FAX", "FAX"},     {"FID", "FIDO"},     {"FIN", "FINE"},   {"GRU", "GRUPPO"},    {"IBAN", "IBAN"},
        {"IMP", "IMPORTO"}, {"INI", "INIZIO"},   {"IVA", "IVA"},    {"LIN", "LINGUA"},    {"LOR", "LORDO"},
        {"LOT", "LOTTO"},   {"MAX", "MASSIMO"},  {"MIN", "MINIMO"}, {"NET", "NETTO"},     {"NOM", "NOME"},
        {"NOT", "NOTE"},    {"PAR", "PARTITA"},  {"PES", "PESO"},   {"PRE", "PREZZO"},    {"RIO", "RIORDINO"},
        {"STA", "STATO"},   {"STD", "STANDARD"}, {"ULT", "ULTIMO"}, {"VEN", "VENDITA"},   {"ZON", "ZONA"},
    };
    return pieces;
}

/// What a name of two letters may begin with when it is run together of several words.
const QHash<QString, QString>& ShortHeads() {
    static const QHash<QString, QString> heads{
        {"CD", "CODICE"}, {"DT", "DATA"}, {"GG", "GIORNI"}, {"NR", "NUMERO"}, {"QT", "QUANTITA"}};
    return heads;
}

/// The words of which one is run together, "CODCLI" of CODICE and CLIENTE, the longest pieces first; empty when it is
/// not made of known ones alone.
QStringList PiecesOf(const QString& word) {
    constexpr qsizetype shortest = 3;
    static const QSet<QString> whole(Words().cbegin(), Words().cend());
    for (qsizetype size = word.size(); size >= shortest; --size) {
        const QString front = word.left(size);
        const QString known = Words().value(front, FurtherPieces().value(front, whole.contains(front) ? front : ""));
        const QStringList behind = known.isEmpty() || size == word.size() ? QStringList() : PiecesOf(word.mid(size));
        if (!known.isEmpty() && (size == word.size() || !behind.isEmpty())) {
            return QStringList(known) + behind;
        }
    }
    return {};
}

/// The words that one stands for: itself, what it is cut from, or those that it is run together of.
QStringList WordsOf(const QString& word) {
    constexpr qsizetype head = 2;
    if (const auto known = Words().constFind(word); known != Words().constEnd()) {
        return {*known};
    }
    QStringList pieces = PiecesOf(word);
    if (pieces.isEmpty() && ShortHeads().contains(word.left(head))) {
        pieces = PiecesOf(word.mid(head));
        pieces = pieces.isEmpty() ? pieces : QStringList(ShortHeads().value(word.left(head))) + pieces;
    }
    return pieces.size() > 1 ? pieces : QStringList(word);
}

QString WrittenOut(const QString& name) { return WordsOfName(name).join(QString()); }

/// The letters and digits of a name, in upper case.
QString Core(const QString& name) {
    QString core;
    for (const QChar character : name.toUpper()) {
        if (character.isLetterOrNumber()) {
            core += character;
        }
    }
    return core;
}

} // namespace

QStringList NearNames(const QString& name, const QStringList& names) {
    const QString written = Core(name);
    const qsizetype limit = std::max<qsizetype>(1, (written.size() + 1) / 3);
    std::vector<std::pair<qsizetype, QString>> near;
    for (const QString& candidate : names) {
        const qsizetype remoteness = Remoteness(written, Core(candidate));
        if (remoteness <= limit) {
            near.emplace_back(remoteness, candidate);
        }
    }
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList result;
    for (const auto& [remoteness, candidate] : near) {
        result.append(candidate);
    }
    return result.mid(0, MostNames);
}

QStringList WordsOfName(const QString& name) {
    static const QRegularExpression words(QStringLiteral("\\p{Lu}?\\p{Ll}+|\\p{Lu}+(?!\\p{Ll})|\\d+"));
    QStringList all;
    for (auto word = words.globalMatch(name); word.hasNext();) {
        all.append(WordsOf(word.next().captured().toUpper()));
    }
    return all;
}

QList<GroundedName> GroundedNames(const QString& name, const QStringList& names) {
    QList<GroundedName> grounded;
    QSet<QString> told;
    const auto tell = [&](NameGround ground, const auto& isIt) {
        for (const QString& candidate : names) {
            if (!told.contains(candidate) && isIt(candidate)) {
                told.insert(candidate);
                grounded.append({candidate, ground});
            }
        }
    };
    tell(NameGround::Equal, [core = Core(name)](const QString& candidate) { return Core(candidate) == core; });
    tell(NameGround::WrittenOut,
         [written = WrittenOut(name)](const QString& candidate) { return WrittenOut(candidate) == written; });
    const QStringList near = NearNames(name, names);
    tell(NameGround::Similar, [&near](const QString& candidate) { return near.contains(candidate); });
    return grounded;
}

QString GroundedSuggestions(const QString& name, const QStringList& names) {
    static const QStringList texts{QStringLiteral("uguale"), QStringLiteral("abbreviato"), QStringLiteral("simile")};
    const QList<GroundedName> grounded = GroundedNames(name, names);
    QStringList grounds;
    for (qsizetype ground = 0; ground < texts.size(); ++ground) {
        QStringList found;
        for (const GroundedName& each : grounded) {
            found += static_cast<qsizetype>(each.ground) == ground ? QStringList(each.name) : QStringList();
        }
        if (!found.isEmpty()) {
            grounds.append(texts[ground] + QStringLiteral(" '") + found.join(QStringLiteral("', '")) + u'\'');
        }
    }
    return grounds.isEmpty() ? QString()
                             : QString(QStringLiteral(" (c'è: ") + grounds.join(QStringLiteral("; ")) + u')');
}

QString DidYouMean(const QString& name, const QStringList& names) {
    const QStringList near = NearNames(name, names);
    return near.isEmpty() ? QString() : QString(": forse '" + near.join("' o '") + "'?");
}
