#pragma once

#include "adapters/contract/run/Origin.h"

/// Looking at a source: its tables and columns beside those that an origin reads. Nothing is written.
namespace inspection {

/// Why a name of the source may be the one that is meant, the surest first.
enum class Ground {
    UsedBefore, ///< a layout file, of this origin or another one, calls it so
    Equal,      ///< but for case, blanks and signs
    WrittenOut, ///< equal with words written out
    Renamed,    ///< new since the last import, and alike in more than its type to one that is gone
    Alias,      ///< another word for the same field, in Italian or English
    Values,     ///< its values look like those of the field
    Columns,    ///< of a table: it has columns of the one that is read
    Similar,
};

/// A name of the source that may be meant by a logical one.
struct Suggestion {
    QString name;
    Ground ground = Ground::Similar;
    QString reason;        ///< for the operator: "partita IVA", "5 colonne su 7"
    qsizetype columns = 0; ///< of a table: those that are read and that it has, by name or by field
};

/// A column that the origin reads.
struct Column {
    QString name; ///< logical
    bool isNecessary = false;
    QStringList feeds = {};                   ///< columns of Quadrix, as "CON_TRO.COIVA"
    QStringList procedures = {};              ///< those that read it
    QString called = {};                      ///< how the source should call it, by the layout file or as it is named
    QString inSource = {};                    ///< how the source calls it; empty: it does not have it
    bool isMarkedMissing = false;             ///< the layout file says that it is not there
    std::vector<Suggestion> suggestions = {}; ///< of a column that is missing, the surest first

    bool IsMissing() const { return inSource.isEmpty(); }
};

/// A column of a table of the source.
struct OwnColumn {
    QString name;
    QString type;           ///< in the words of the source
    QStringList values;     ///< the first different ones that are not blank
    int filled = 0;         ///< of the rows that were looked at, those where it is not blank
    bool isFurther = false; ///< an import reads it, though it is none of the columns that it asks for
};

/// A table that the origin reads.
struct Table {
    QString name;                ///< logical
    QStringList procedures = {}; ///< those that read it
    bool isFound = false;
    /// How the source calls it, owner first; where it does not have it the table that is suggested first, whose columns
    /// stand below; empty without any.
    QString inSource = {};
    qint64 rows = -1; ///< -1: they could not be counted
    int looked = 0;   ///< rows that the values come from
    std::vector<Column> columns = {};
    std::vector<OwnColumn> own = {};   ///< what the source has in it
    QVector<ColumnInfo> lastTime = {}; ///< what it had in it at the last import; empty when that is not known
    std::vector<Suggestion> suggestions = {};
    QString trouble = {}; ///< why the source does not show it; empty when it does
    /// Where a chosen file is read for several tables, and rather is another one than this: that one, or those that fit
    /// equally well. What is proposed for this table is not taken with the rest then.
    QStringList isRather = {};

    const OwnColumn* Own(const QString& column) const;
};

struct Inspection {
    QString layoutFile;    ///< path of the layout file, whether it is there or not
    QString layoutTrouble; ///< what is wrong with it; its names count for nothing then
    std::vector<Table> tables;
    QStringList others; ///< tables of the source that nothing reads
};

/// Opens the source of an origin as the session's, with all of its tables; false when the operator gave up. Raises what
/// opening it raises.
bool OpenToLook(Session& session, const contract::Origin& origin);
/// Looks at the source that is open, with the names of the layout file as it is now. Raises `SqlError` when the source
/// cannot be asked at all.
Inspection Inspect(Session& session, const contract::Origin& origin);

/// The tables of an origin, whose file is chosen for each import, that the open file is not: what the layout file says
/// of them is for other files. Empty for any other origin. Raises `SqlError` when the source cannot be asked at all.
QStringList TablesOfOtherFiles(Session& session, const contract::Origin& origin);

/// What is wrong with the layout file of an origin as it is now, for the source that is open: what an import would stop
/// at; empty when it counts, or there is none. @param leftOut tables of which the source is not asked
QString LayoutTrouble(Session& session, const contract::Origin& origin, const QStringList& leftOut = {});

/// Whether nothing is missing that is necessary, and the layout file, if there is one, counts.
bool IsComplete(const Inspection& inspection);

/// "alias: partita IVA", "uguale": the ground in the operator's words.
QString GroundText(const Suggestion& suggestion);
/// The suggestion that is taken when the operator agrees to all at once: the first one, if its ground is a name and not
/// a likeness; null without one.
const Suggestion* Proposed(const std::vector<Suggestion>& suggestions);
/// Path of the layout file of an origin.
QString LayoutPath(const Session& session, const contract::Origin& origin);

} // namespace inspection
