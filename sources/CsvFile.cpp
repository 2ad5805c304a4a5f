#include "sources/CsvFile.h"

#include "sql/errors.h"

#include <csv.h>

namespace sources {

namespace {

/// No character is a blank that may be cut off around a field.
int IsSpace(unsigned char) { return 0; }

} // namespace

CsvFile::CsvFile(const QString& path, char separator, int skipped, char quote)
    : m_lines(path),
      m_separator(separator),
      m_quote(quote),
      m_parser(std::make_unique<csv_parser>()) {
    QByteArray line;
    while (m_line < skipped && m_lines.Next(line)) {
        ++m_line;
    }
    csv_init(m_parser.get(), 0);
    csv_set_delim(m_parser.get(), static_cast<unsigned char>(separator));
    csv_set_quote(m_parser.get(), static_cast<unsigned char>(quote));
    csv_set_space_func(m_parser.get(), IsSpace);
}

CsvFile::~CsvFile() { csv_free(m_parser.get()); }

bool CsvFile::NextLine(QByteArray& line) {
    if (m_again.isEmpty()) {
        return m_lines.Next(line);
    }
    line = m_again.takeFirst();
    return true;
}

bool CsvFile::Next(Record& record) {
    while (m_complete.isEmpty() && !m_ended) {
        QByteArray line;
        if (NextLine(line)) {
            Feed(line);
        } else {
            EndFile();
        }
    }
    if (m_complete.isEmpty()) {
        return false;
    }
    record = m_complete.takeFirst();
    return true;
}

namespace {

// The library hands fields and ends of records to functions, with the reader as their last argument.
struct Sink {
    CsvFile::Record& open;
    QVector<CsvFile::Record>& complete;
};

void TakeField(void* bytes, size_t size, void* data) {
    static_cast<Sink*>(data)->open.fields.append(
        QByteArray(static_cast<const char*>(bytes), static_cast<qsizetype>(size)));
}

void TakeRecord(int /*end*/, void* data) {
    auto* sink = static_cast<Sink*>(data);
    sink->complete.append(std::exchange(sink->open, {}));
}

} // namespace

QString CsvFile::Tell(Damage damage) {
    switch (damage) {
    case Damage::Return:
        return QStringLiteral("un ritorno a capo (CR) in mezzo alla riga la spezza: toglierlo, o mettere il campo tra "
                              "virgolette");
    case Damage::Quote:
        return QStringLiteral(
            "in un campo tra virgolette ce n'è una che non lo chiude: raddoppiarla (\"\"), o togliere "
            "quelle attorno al campo");
    case Damage::None:
        break;
    }
    return {};
}

bool CsvFile::IsInQuotes() const {
    constexpr int fieldBegun = 2;
    return m_parser->quoted != 0 && m_parser->pstate == fieldBegun;
}

/// Behind a quote that closes the field, or is the first of two.
bool CsvFile::IsBehindQuote() const {
    constexpr int fieldMayHaveEnded = 3;
    return m_parser->pstate == fieldMayHaveEnded;
}

void CsvFile::Hand(QByteArrayView bytes) {
    Sink sink{m_open, m_complete};
    const auto size = static_cast<size_t>(bytes.size());
    if (csv_parse(m_parser.get(), bytes.data(), size, TakeField, TakeRecord, &sink) != size) {
        throw ImportError(
            QStringLiteral("file '%1', riga %2: %3")
                .arg(Path(), QString::number(m_line), QLatin1String(csv_strerror(csv_error(m_parser.get())))));
    }
}

/// Hands a line to the library, quote by quote: it takes a stray one for a character of the field, which would go on
/// into the next records. False at such a quote.
bool CsvFile::Parse(QByteArrayView line) {
    while (!line.isEmpty()) {
        const bool wasInQuotes = IsInQuotes();
        const qsizetype quote = line.indexOf(m_quote);
        const qsizetype end = quote < 0 ? line.size() : quote + 1;
        Hand(line.first(end));
        line = line.sliced(end);
        if (!wasInQuotes && IsInQuotes()) {
            m_opened = m_line;
            m_held.clear();
        }
        if (!IsBehindQuote()) {
            continue;
        }
        if (line.startsWith(m_quote)) {
            Hand(line.first(1));
            line = line.sliced(1);
            continue;
        }
        while (!line.isEmpty() && !EndsField(line.front()) && (line.front() == ' ' || line.front() == '\t')) {
            line = line.sliced(1);
        }
        if (!line.isEmpty() && !EndsField(line.front())) {
            return false;
        }
    }
    return true;
}

/// A line of a file without quotes.
void CsvFile::Split(const QByteArray& line) {
    const QByteArray text = WithoutEnd(line).toByteArray();
    if (!text.isEmpty()) {
        m_complete.append({m_line, text.split(m_separator), text.contains('\r') ? Damage::Return : Damage::None});
    }
}

void CsvFile::Feed(const QByteArray& line) {
    ++m_line;
    if (m_quote == NoQuote) {
        Split(line);
        return;
    }
    if (m_open.line == 0) {
        m_open.line = m_line;
    }
    if (IsInQuotes()) {
        m_held.append(line);
    }
    if (!Parse(line)) {
        GiveUp();
        return;
    }
    constexpr int rowNotBegun = 0;
    const bool isOpen = m_parser->pstate != rowNotBegun;
    if (m_complete.size() > 1 || (m_complete.size() == 1 && isOpen)) {
        Join(isOpen, Damage::Return);
    }
    const bool isBlank = WithoutEnd(line).isEmpty();
    if (isBlank && m_open.fields.isEmpty() && m_complete.isEmpty() && m_open.line == m_line) {
        m_open = {};
    }
}

/// The record with a stray quote ends with the line where its field was opened: those behind it are read for
/// themselves.
void CsvFile::GiveUp() {
    Sink sink{m_open, m_complete};
    csv_fini(m_parser.get(), TakeField, TakeRecord, &sink);
    Join(false, Damage::Quote);
    m_again = std::exchange(m_held, {}) + m_again;
    m_line = m_opened;
}

/// Makes one damaged record of those that are complete. @param isOpen whether another one has begun behind them
void CsvFile::Join(bool isOpen, Damage damage) {
    Record whole{m_complete.first().line, {}, damage};
    for (const Record& part : std::as_const(m_complete)) {
        whole.fields += part.fields;
    }
    m_complete = {whole};
    // What is open goes on in the next line, which no other record begins on.
    m_open = isOpen ? Record{m_line + 1, m_open.fields, damage} : Record{};
}

void CsvFile::EndFile() {
    m_ended = true;
    Sink sink{m_open, m_complete};
    // The library tells of a quote that is not closed only where it takes no other one.
    if (IsInQuotes() || csv_fini(m_parser.get(), TakeField, TakeRecord, &sink) != 0) {
        throw ImportError(
            QStringLiteral("file '%1', riga %2: le virgolette che vi si aprono non si chiudono, il file è incompleto")
                .arg(Path(), QString::number(m_open.line)));
    }
}

} // namespace sources
