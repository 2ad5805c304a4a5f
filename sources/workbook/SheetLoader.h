#pragma once

#include "sources/DecimalMarks.h"
#include "sources/Oddities.h"
#include "sources/privateDatabase.h"
#include "sources/UntoldPage.h"
#include "sources/workbook/Workbook.h"
#include "sources/workbookFile.h"

namespace sources {

/// Reads a sheet into a table of a private database. What kind of values a column has is known when they have been
/// read.
class SheetLoader {
public:
    /// @param place file and sheet, for messages
    SheetLoader(const SheetTable& table, const QString& place, Workbook& workbook, int sheet,
                const ConnectionSettings& settings)
        : m_table(table),
          m_workbook(workbook),
          m_sheet(sheet),
          m_since1904(workbook.Since1904()),
          m_oddities(settings, place),
          m_untold(settings, workbook.UntoldPage().isEmpty(), place, workbook.UntoldPage()) {}

    /// Raises `ImportError`, without the names of file and sheet. @return the columns of the table
    QVector<ColumnInfo> Load(PrivateDatabase& database);

private:
    /// What a column has been seen to hold.
    struct Seen {
        qint64 texts = 0;
        qint64 textsLikeDates = 0;
        qint64 textsAmongDates = 0; ///< that are no dates, however they are written
        qint64 firstOfThem = 0;     ///< its row
        qint64 bits = 0;
        qint64 wholes = 0;
        qint64 fractions = 0;
        qint64 dates = 0;
        qint64 firstDate = 0; ///< its row
        qint64 percents = 0;
        qint64 firstPercent = 0; ///< its row
        double percent = 0;      ///< what stands there
        qint64 unreadable = 0;
        bool hasTimes = false;

        qint64 Numbers() const { return bits + wholes + fractions; }
        bool IsEmpty() const { return texts + dates + unreadable + Numbers() == 0; }
        bool IsOfDates() const { return dates > 0 && Numbers() == 0 && textsLikeDates == 0; }
        bool IsOfCodes() const { return texts + dates > 0 && fractions == 0; }
    };

    /// What a row between header and first row is.
    enum class Above {
        Captions,
        LikeCaptions, ///< of words, without a caption for each column
        InDoubt,      ///< of words, above codes of which a few have no digit, or none
        LikeData,     ///< of words, with a code like those below
        Data,
    };
    /// How many codes, up to the end of the data, have a digit.
    struct CodesBelow {
        qint64 withDigit = 0;
        qint64 ofWords = 0;
    };

    /// Reads the next row, with its cells in the columns of the table.
    bool Next(SheetReader& reader, SheetRow& row) const;
    QVector<ColumnInfo> NamedColumns(const QStringList& names);
    void Open(PrivateDatabase& database, const SheetRow& header);
    /// Adds the columns up to that one, behind those that the header has.
    void Widen(int last);
    void AddRow(const SheetRow& row);
    void AddNumber(const SheetRow& row, const SheetCell& cell);
    void AddText(const SheetRow& row, int column, const QByteArray& text);
    void AddWritten(const SheetRow& row, const SheetCell& cell);
    void AddDate(const SheetRow& row, int column, const QByteArray& text);
    void AddUnreadable(const SheetRow& row, int column, const QString& why);
    void FindColumns();
    bool IsBehindEnd(const SheetRow& row);
    /// Whether each value is the name of its column, as where somebody has put sheets together; that is noted.
    bool RepeatsHeader(const SheetRow& row);
    /// The code that a row has; null for none.
    const SheetCell* CodeIn(const SheetRow& row) const;
    /// Reads the sheet once more.
    CodesBelow LookBelow() const;
    Above KindAbove(const SheetRow& row) const;
    /// Whether a row between header and first row is one of the data. What is not read there and no row of captions is
    /// noted; in a sheet of somebody's own, which need not have captions, these as well, and what is read in doubt.
    bool IsDataAbove(const SheetRow& row);
    void SetParent(const SheetRow& row);
    void ChooseTypes();
    void NoteMixed();
    void NotePercents();
    /// Takes the formulas that give an empty text out of a row: they are no values.
    void TakeEmptyFormulas(SheetRow& row);
    void NoteEmptyFormulas();
    void NoteMerged(const QStringList& ranges);
    QString NameOf(int column) const { return m_target->Columns().at(column).name; }

    const SheetTable& m_table;
    Workbook& m_workbook;
    int m_sheet; ///< from 0
    bool m_since1904;
    Oddities m_oddities;
    UntoldPage m_untold;
    DecimalMarks m_marks{0,
                         {QStringLiteral("farne un numero nel foglio"),
                          QStringLiteral("se la colonna è di codici, scrivere in altro modo quelli che sembrano numeri "
                                         "con i decimali: gli altri restano come sono")}};
    std::unique_ptr<PrivateTable> m_target;
    std::vector<Seen> m_seen;
    QMap<int, qint64> m_emptyFormulas; ///< how many a column has
    QList<int> m_end;     ///< columns that are blank in the row behind the last; none: it is not looked for
    bool m_isOwn = false; ///< the sheet has not the names of the module
    qint64 m_next = 0;    ///< row that follows the one read last
    bool m_hasEnded = false;
    int m_level = -1;
    QList<qint64> m_above; ///< of each level the row that those of the next one belong to
};

} // namespace sources
