#include "sources/CsvFile.h"

#include "sql/errors.h"

#include <csv.h>

namespace sources {

namespace {

/// No character is a blank that may be cut off around a field.
int IsSpace(unsigned char) { return 0; }

} // namespace

CsvFile::CsvFile(const QString& path, char separator, int skipped)
    : m_lines(path),
      m_parser(std::make_unique<csv_parser>()) {
    QByteArray line;
    while (m_line < skipped && m_lines.Next(line)) {
        ++m_line;
    }
    csv_init(m_parser.get(), 0);
    csv_set_delim(m_parser.get(), static_cast<unsigned char>(separator));
    csv_set_space_func(m_parser.get(), IsSpace);
}

CsvFile::~CsvFile() { csv_free(m_parser.get()); }

bool CsvFile::Next(Record& record) {
    while (m_complete.isEmpty() && !m_ended) {
        QByteArray line;
        if (m_lines.Next(line)) {
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

void CsvFile::Feed(const QByteArray& bytes) {
    ++m_line;
    if (m_open.line == 0) {
        m_open.line = m_line;
    }
    Sink sink{m_open, m_complete};
    const auto size = static_cast<size_t>(bytes.size());
    if (csv_parse(m_parser.get(), bytes.constData(), size, TakeField, TakeRecord, &sink) != size) {
        throw ImportError(
            QStringLiteral("file '%1', riga %2: %3")
                .arg(Path(), QString::number(m_line), QLatin1String(csv_strerror(csv_error(m_parser.get())))));
    }
    constexpr int rowNotBegun = 0;
    const bool isOpen = m_parser->pstate != rowNotBegun;
    if (m_complete.size() > 1 || (m_complete.size() == 1 && isOpen)) {
        Record whole{m_complete.first().line, {}, true};
        for (const Record& part : std::as_const(m_complete)) {
            whole.fields += part.fields;
        }
        m_complete = {whole};
        // What is open goes on in the next line, which no other record begins on.
        m_open = isOpen ? Record{m_line + 1, m_open.fields, true} : Record{};
    }
    const bool isBlank = WithoutEnd(bytes).isEmpty();
    if (isBlank && m_open.fields.isEmpty() && m_complete.isEmpty() && m_open.line == m_line) {
        m_open = {};
    }
}

void CsvFile::EndFile() {
    m_ended = true;
    Sink sink{m_open, m_complete};
    constexpr int fieldBegun = 2; // the library tells of a quote that is not closed only where it takes no other one
    const bool isOpen = m_parser->pstate == fieldBegun && m_parser->quoted != 0;
    if (isOpen || csv_fini(m_parser.get(), TakeField, TakeRecord, &sink) != 0) {
        throw ImportError(
            QStringLiteral("file '%1', riga %2: le virgolette che vi si aprono non si chiudono, il file è incompleto")
                .arg(Path(), QString::number(m_open.line)));
    }
}

} // namespace sources
